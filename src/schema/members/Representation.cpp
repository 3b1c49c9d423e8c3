#include "zorvex60/Representation.h"

#include "schema/members/ExternalRefMembers.h"

namespace zorvex60
{

namespace internal = zorvex_api::internal;

Result Representation::SetExternalRef(const Handle& target)
{
    return SetAttributeValue(u"location", zorvex_api::Reference(target));
}

Result Representation::SetExternalRef(const Array<Handle>& targets)
{
    return SetAttributeValue(u"location", zorvex_api::Reference(targets));
}

Result Representation::GetExternalRef(Array<Handle>& targets) const
{
    return internal::GetExternalRef(*this, targets);
}

Result Representation::ResolveExternalRef(Array<Handle>& targets, Configuration* configuration)
{
    return internal::ResolveExternalRef(*this, targets, configuration);
}

Result Representation::DeleteExternalRef()
{
    return typed::Unset(*this, u"location");
}

String Representation::GetExternalRefURI() const
{
    return typed::GetString(*this, u"location");
}

int Representation::HasExternalRefURI() const
{
    return typed::Has(*this, u"location");
}

Result Representation::SetExternalRefURI(const String& uri)
{
    return typed::Set(*this, u"location", uri);
}

int Representation::GetExternalRefLoad() const
{
    return typed::GetInt(*this, u"load");
}

void Representation::SetExternalRefLoad(int load)
{
    typed::Set(*this, u"load", load);
}

void Representation::AddHandle(void* data)
{
    internal::AddExternalHandle(*this, data);
}

void Representation::SetHandles(int count, void** data)
{
    internal::SetExternalHandles(*this, count, data);
}

void* Representation::GetHandle(int index) const
{
    return internal::GetExternalHandle(*this, index);
}

int Representation::NumberOfHandles() const
{
    return internal::CountExternalHandles(*this);
}

void Representation::DetachHandles(Array<Handle>& handles)
{
    internal::DetachExternalHandles(*this, handles);
}

Result Representation::SetInternalRep(InternalRep* element)
{
    if (NumberOfInternalReps() > 0)
    {
        return Result(2,
                      "Cannot add child of type: InternalRep to parent of type: Representation.");
    }
    return AddInternalRep(element);
}

}  // namespace zorvex60
