#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ElementList.h"
#include "objectmodel/FieldDescriptor.h"
#include "objectmodel/ObjectCallbackBase.h"
#include "objectmodel/TreeMessages.h"

namespace zorvex_api
{

namespace
{

bool EndsInRef(TextView name)
{
    return name.ends_with(u"Ref") || name.ends_with(u"Refs");
}

/// Picks out the set element fields that a name means: those of exactly that name when the class
/// has such a field, set or not, else those that the name match accepts.
class NamedElementFields
{
public:
    NamedElementFields(const ClassDescriptorImpl* impl, TextView name)
        : m_name(name), m_exact(HasFieldNamed(impl, name))
    {
    }

    /// The first one from `data` on, or null.
    FieldData* Next(FieldData* data) const
    {
        while (data != nullptr && !Means(*data))
        {
            data = data->next;
        }
        return data;
    }

private:
    /// A class-qualified name finds a field too, but isn't the field's name.
    static bool HasFieldNamed(const ClassDescriptorImpl* impl, TextView name)
    {
        const FieldDescriptor* field =
            impl == nullptr ? nullptr : impl->FindField(name, field_kind::kElement, true, true);
        return field != nullptr && field->NameView() == name;
    }

    bool Means(const FieldData& data) const
    {
        const FieldDescriptor& field = *data.descriptor;
        if (!data.IsSet() || !field.IsElement())
        {
            return false;
        }
        return m_exact ? field.NameView() == m_name : field.Matches(m_name, field_kind::kElement);
    }

    TextView m_name;
    bool m_exact;
};

/// Of two near matches the second counts, unless that is a reference.
FieldData* ChooseSetField(const NamedElementFields& named, FieldData* fields, TextView name)
{
    FieldData* first = named.Next(fields);
    if (first == nullptr || EndsInRef(name))
    {
        return first;
    }
    FieldData* second = named.Next(first->next);
    const bool takesSecond = second != nullptr && !EndsInRef(second->descriptor->NameView());
    return takesSecond ? second : first;
}

}  // namespace

FieldData* ClassData::FindSetElementField(TextView fieldName)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(GetClassDescriptor());
    return NamedElementFields(impl, fieldName).Next(fields);
}

Result ClassData::ElementsByField(TextView fieldName, ObjectCallbackBase* callback)
{
    if (callback == nullptr)
    {
        return Result(19, tree_message::NullCallback());
    }
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(GetClassDescriptor());
    const FieldData* data = ChooseSetField(NamedElementFields(impl, fieldName), fields, fieldName);
    if (data == nullptr)
    {
        const bool allowed =
            impl != nullptr && impl->FindField(fieldName, field_kind::kElement) != nullptr;
        return allowed ? Result() : Result(2, tree_message::NotElementField(fieldName, impl));
    }
    if (data->descriptor->Type() == zorvexFieldMultipleElement)
    {
        data->Elements()->ForEach(*callback);
    }
    else if (Object* child = data->Element())
    {
        callback->Process(child);
    }
    return Result();
}

// --- names ------------------------------------------------------------------------------------

const String& ClassData::ChildElementName(ClassData* child, const String** prefix)
{
    if (prefix != nullptr)
    {
        *prefix = &String::EmptyString();
    }
    if (child == nullptr)
    {
        return String::EmptyString();
    }
    const FieldDescriptor* field = child->owner == object ? child->holdingField : nullptr;
    const ClassDescriptorImpl* childClass = ClassDescriptorImpl::Of(child->GetClassDescriptor());
    if (field == nullptr || childClass == nullptr)
    {
        return child->elementName != nullptr ? *child->elementName : String::EmptyString();
    }
    const ClassDescriptorImpl* fieldClass = ClassDescriptorImpl::Of(field->Class());
    const bool standsIn =
        fieldClass != nullptr && fieldClass != childClass && childClass->IsSubClass(fieldClass);
    const bool hasOwnName = !standsIn && !field->XmlNameView().empty();
    if (prefix != nullptr)
    {
        const String& classPrefix = childClass->NamespacePrefix();
        *prefix = hasOwnName && classPrefix.IsEmpty() ? &field->Prefix() : &classPrefix;
    }
    if (child->elementName == nullptr)
    {
        child->elementName = hasOwnName ? &field->XmlName() : &childClass->OutputName();
    }
    return *child->elementName;
}

}  // namespace zorvex_api
