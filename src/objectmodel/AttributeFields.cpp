#include "objectmodel/AttributeStore.h"

#include <climits>

#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ExternalRep.h"

/// Which field a name means, and whether it has a value.

namespace zorvex_api::attribute_store
{

namespace
{

bool EndsAsReference(TextView name)
{
    return name.ends_with(u"Ref") || name.ends_with(u"Refs");
}

/// A field of type 11 stands for the built-in one of the attribute that its name says.
FieldDescriptor* AsAttribute(FieldDescriptor* field, TextView name)
{
    if (field->Type() != zorvexFieldExternalReference)
    {
        return field;
    }
    const bool isLoad = name == u"load" || (name != u"location" && field->NameView() == u"load");
    return FieldDescriptor::BuiltIn(isLoad ? FieldDescriptor::kLoad : FieldDescriptor::kLocation);
}

bool NamesId(TextView name)
{
    if (name == u"id" || name == u"Id")
    {
        return true;
    }
    const name_match::QualifiedText qualified(name);
    return qualified.isQualified && (qualified.name == u"id" || qualified.name == u"Id");
}

/// The set field of exactly that name: few fields are set, so that looking at them costs less than
/// the class's index. Of very many only the first are looked at: names of attributes don't repeat,
/// so that the class finds the others.
FieldData* FindExactSetField(const ClassData& owner, TextView name, int mask)
{
    constexpr int kMost = 64;
    int steps = (mask & field_kind::kElement) == 0 ? kMost : INT_MAX;
    for (FieldData* data = owner.fields; data != nullptr && steps > 0; data = data->next, --steps)
    {
        const FieldDescriptor& field = *data->descriptor;
        if (field.NameView() == name && (field.Kind() & mask) != 0)
        {
            return data;
        }
    }
    return nullptr;
}

/// The near match among the set fields. A name with a reference ending takes the first hit; another
/// takes the second only when the first is a reference and that one isn't.
FieldData* FindSetField(const ClassData& owner, TextView name, int mask)
{
    const bool wantsReference = EndsAsReference(name);
    FieldData* first = nullptr;
    for (FieldData* data = owner.fields; data != nullptr; data = data->next)
    {
        const FieldDescriptor& field = *data->descriptor;
        if ((field.Kind() & mask) == 0 || !field.Matches(name, mask))
        {
            continue;
        }
        if (wantsReference)
        {
            return data;
        }
        if (first != nullptr)
        {
            const bool second = EndsAsReference(first->descriptor->NameView()) &&
                                !EndsAsReference(field.NameView());
            return second ? data : first;
        }
        first = data;
    }
    return first;
}

}  // namespace

Part PartOf(const FieldDescriptor& field)
{
    if (field.IsBuiltIn())
    {
        if (&field == FieldDescriptor::BuiltIn(FieldDescriptor::kId))
        {
            return Part::Id;
        }
        return &field == FieldDescriptor::BuiltIn(FieldDescriptor::kLoad) ? Part::Load
                                                                          : Part::Location;
    }
    if (field.Type() == zorvexFieldExternalReference)
    {
        return field.NameView() == u"load" ? Part::Load : Part::Location;
    }
    return Part::Value;
}

FieldDescriptor* FindField(ClassData& owner, TextView name, FieldData*& data)
{
    return FindField(owner, name, field_kind::kAttributeOrContent, data);
}

FieldDescriptor* FindField(ClassData& owner, TextView name, int mask, FieldData*& data)
{
    data = nullptr;
    ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(owner.GetClassDescriptor());
    if (descriptor == nullptr || name.empty())
    {
        return nullptr;
    }
    data = FindExactSetField(owner, name, mask);
    if (data != nullptr)
    {
        return AsAttribute(data->descriptor, name);
    }
    FieldDescriptor* field = descriptor->Layout().FindField(name, mask);
    if (field != nullptr && field->NameView() == name)
    {
        data = owner.FindField(field);
        return AsAttribute(field, name);
    }
    if ((mask & field_kind::kAttribute) != 0 && NamesId(name) && descriptor->IsIdObject() &&
        !descriptor->IsDocumentBase())
    {
        return FieldDescriptor::BuiltIn(FieldDescriptor::kId);
    }
    if (FieldData* near = FindSetField(owner, name, mask))
    {
        data = near;
        return AsAttribute(near->descriptor, name);
    }
    if (field == nullptr)
    {
        return nullptr;
    }
    data = owner.FindField(field);
    return AsAttribute(field, name);
}

bool HasValue(const ClassData& owner, const FieldDescriptor& field, const FieldData* data,
              bool checkDefault)
{
    const Part part = PartOf(field);
    if (part == Part::Id)
    {
        return owner.id.HasValue();
    }
    const bool isSet = data != nullptr && data->IsSet();
    if (part == Part::Load)
    {
        return isSet && (data->External()->flags & ExternalRep::kLoad) != 0;
    }
    if (part == Part::Location)
    {
        return isSet && (data->External()->HasText() || data->External()->HasTarget());
    }
    return isSet ? data->HasValue(owner, checkDefault)
                 : checkDefault && !field.IsElement() && field.HasDefault();
}

}  // namespace zorvex_api::attribute_store
