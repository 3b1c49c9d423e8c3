#include <optional>

#include "objectmodel/AttributeMessages.h"
#include "objectmodel/AttributeStore.h"
#include "objectmodel/ObjectPin.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/ConfigurationRef.h"
#include "zorvex_api/Object.h"

/// Following references.

namespace zorvex_api
{

Result Object::ResolveAttributeValue(const String& name, Array<Reference>& values,
                                     Configuration* configuration)
{
    const ObjectPin pin(this);
    values.RemoveAll();
    FieldData* data = nullptr;
    FieldDescriptor* field =
        attribute_store::FindField(*pin, View(name), field_kind::kAttribute, data);
    if (field == nullptr)
    {
        return attribute_message::NotAllowed(View(name), *pin);
    }
    if (data == nullptr)
    {
        const bool isId = attribute_store::PartOf(*field) == attribute_store::Part::Id;
        return isId && pin->id.HasValue() ? attribute_message::UnexpectedType()
                                          : attribute_message::NotSetWarning(View(name));
    }
    std::optional<ConfigurationRef> active;
    if (configuration != nullptr)
    {
        active.emplace(configuration);
    }
    return attribute_store::GetReferences(*pin, *field, *data, attribute_store::Follow::Anywhere,
                                          configuration, values);
}

Result Object::ResolveAttributeValue(const String& name, Reference& value,
                                     Configuration* configuration)
{
    Array<Reference> references;
    Result result = ResolveAttributeValue(name, references, configuration);
    if (references.GetSize() > 0)
    {
        value = references[0];
    }
    return result;
}

Result Object::ResolveAttributeValue(const String& name, const Configuration& configuration,
                                     Reference& value)
{
    return ResolveAttributeValue(name, value, const_cast<Configuration*>(&configuration));
}

Result Object::ResolveAttributeValue(const String& name, const Configuration& configuration,
                                     Array<Reference>& values)
{
    return ResolveAttributeValue(name, values, const_cast<Configuration*>(&configuration));
}

Result Object::ResolveAttribute(const String& name, Array<Handle>& handles)
{
    handles.RemoveAll();
    Array<Reference> references;
    Result result = ResolveAttributeValue(name, references, nullptr);
    for (const Reference& reference : references)
    {
        const Handle& handle = reference.GetHandle();
        if (handle.GetData() != nullptr || !handle.GetFormat().IsEmpty())
        {
            handles.Add(handle);
        }
    }
    if (handles.GetSize() == 0 && result.NumberOfErrors() == 0)
    {
        result.AddError(
            2, String::Format("Unable to resolve attribute: \"%s\".", ToUtf8(name).c_str()));
    }
    return result;
}

}  // namespace zorvex_api
