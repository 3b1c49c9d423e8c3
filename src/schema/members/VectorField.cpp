#include "zorvex60/VectorField.h"

namespace zorvex60
{

VectorField::VectorField(const Vector& value) : VectorField()
{
    SetContent(value);
}

VectorField::VectorField(const Vector& value, Object* owner) : VectorField(owner)
{
    SetContent(value);
}

}  // namespace zorvex60
