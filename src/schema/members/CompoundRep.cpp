#include "zorvex60/CompoundRep.h"

#include "schema/members/ExternalRefMembers.h"

namespace zorvex60
{

namespace internal = zorvex_api::internal;

Result CompoundRep::SetExternalRef(const Handle& target)
{
    return SetAttributeValue(u"location", zorvex_api::Reference(target));
}

Result CompoundRep::SetExternalRef(const Array<Handle>& targets)
{
    return SetAttributeValue(u"location", zorvex_api::Reference(targets));
}

Result CompoundRep::GetExternalRef(Array<Handle>& targets) const
{
    return internal::GetExternalRef(*this, targets);
}

Result CompoundRep::ResolveExternalRef(Array<Handle>& targets, Configuration* configuration)
{
    return internal::ResolveExternalRef(*this, targets, configuration);
}

Result CompoundRep::DeleteExternalRef()
{
    return typed::Unset(*this, u"location");
}

String CompoundRep::GetExternalRefURI() const
{
    return typed::GetString(*this, u"location");
}

int CompoundRep::HasExternalRefURI() const
{
    return typed::Has(*this, u"location");
}

Result CompoundRep::SetExternalRefURI(const String& uri)
{
    return typed::Set(*this, u"location", uri);
}

int CompoundRep::GetExternalRefLoad() const
{
    return typed::GetInt(*this, u"load");
}

void CompoundRep::SetExternalRefLoad(int load)
{
    typed::Set(*this, u"load", load);
}

void CompoundRep::AddHandle(void* data)
{
    internal::AddExternalHandle(*this, data);
}

void CompoundRep::SetHandles(int count, void** data)
{
    internal::SetExternalHandles(*this, count, data);
}

void* CompoundRep::GetHandle(int index) const
{
    return internal::GetExternalHandle(*this, index);
}

int CompoundRep::NumberOfHandles() const
{
    return internal::CountExternalHandles(*this);
}

void CompoundRep::DetachHandles(Array<Handle>& handles)
{
    internal::DetachExternalHandles(*this, handles);
}

}  // namespace zorvex60
