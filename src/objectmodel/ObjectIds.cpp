#include "objectmodel/ClassData.h"
#include "objectmodel/ObjectPin.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

String Object::GetId() const
{
    return ObjectPin(this)->id.ToString();
}

int Object::SetId(const String& id)
{
    return ObjectPin(this)->SetId(IdValue(View(id)), false) ? 1 : 0;
}

Object* Object::ResolveId(const String& id) const
{
    return ObjectPin(this)->ResolveId(IdValue(View(id)));
}

}  // namespace zorvex_api
