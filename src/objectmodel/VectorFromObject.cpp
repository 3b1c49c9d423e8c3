#include <string>

#include "runtime/NamespaceUris.h"
#include "runtime/Text.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Vector.h"

namespace zorvex_api
{

Vector::Vector(Object* object) : Vector()
{
    if (object == nullptr)
    {
        return;
    }
    const std::u16string className = std::u16string(uris::kMain) + u":VectorField";
    if (object->Is(ToString(className)))
    {
        object->GetContent(*this);
    }
}

}  // namespace zorvex_api
