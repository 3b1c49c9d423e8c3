#include "Fields.h"

#include <algorithm>

#include "Text.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Reference.h"

using zorvex_api::Array;
using zorvex_api::ClassDescriptor;
using zorvex_api::FieldInfo;
using zorvex_api::Handle;
using zorvex_api::Object;
using zorvex_api::Reference;
using zorvex_api::String;

namespace zorvex_cli
{
namespace
{

Target TargetOf(const Reference& reference, const Object& object)
{
    const Handle& handle = reference.GetHandle();
    if (!handle.GetData())
    {
        return Target::None;
    }
    const Object* target = handle.GetObject();
    return target && target->GetRoot() == object.GetRoot() ? Target::Local : Target::External;
}

}  // namespace

const char* TypeName(const FieldInfo& field)
{
    if (field.IsEnum())
    {
        return "enum";
    }
    switch (field.GetType())
    {
        case zorvex_api::zorvexFieldLogical:
            return "logical";
        case zorvex_api::zorvexFieldInt:
            return "int";
        case zorvex_api::zorvexFieldDouble:
            return "double";
        case zorvex_api::zorvexFieldString:
            return "string";
        case zorvex_api::zorvexFieldSingleReference:
            return "single_reference";
        case zorvex_api::zorvexFieldMultipleReference:
            return "multiple_reference";
        case zorvex_api::zorvexFieldSingleElement:
            return "single_element";
        case zorvex_api::zorvexFieldMultipleElement:
            return "multiple_element";
        case zorvex_api::zorvexFieldSingleURI:
            return "single_uri";
        case zorvex_api::zorvexFieldMultipleURI:
            return "multiple_uri";
        case zorvex_api::zorvexFieldExternalReference:
            return "external_reference";
        case zorvex_api::zorvexFieldInternal:
            return "internal";
        case zorvex_api::zorvexFieldContentElement:
            return "content_element";
        case zorvex_api::zorvexFieldMatrix:
            return "matrix";
        case zorvex_api::zorvexFieldVector:
            return "vector";
        default:
            return "unset";
    }
}

std::vector<FieldInfo> FieldsInOrder(const ClassDescriptor& descriptor, unsigned int kinds)
{
    std::vector<const ClassDescriptor*> chain;
    for (const ClassDescriptor* one = &descriptor; one; one = one->GetBaseClass())
    {
        chain.push_back(one);
    }

    std::vector<FieldInfo> fields;
    for (auto one = chain.rbegin(); one != chain.rend(); ++one)
    {
        Array<FieldInfo> own;
        (*one)->GetFields(own, kinds, 0);
        for (int i = 0; i < own.GetSize(); ++i)
        {
            const auto same = [&own, i](const FieldInfo& field)
            { return field.GetDescriptor() == own[i].GetDescriptor(); };
            // "id" and the two parts of an external reference stand in several classes.
            if (std::none_of(fields.begin(), fields.end(), same))
            {
                fields.push_back(own[i]);
            }
        }
    }
    return fields;
}

const std::vector<FieldInfo>& ReferenceReader::ReferenceFields(ClassDescriptor* descriptor)
{
    const auto known = m_fields.find(descriptor);
    if (known != m_fields.end())
    {
        return known->second;
    }
    std::vector<FieldInfo> fields = FieldsInOrder(*descriptor, kAttributes);
    fields.erase(std::remove_if(fields.begin(), fields.end(),
                                [](const FieldInfo& field) { return !field.IsReference(); }),
                 fields.end());
    return m_fields.emplace(descriptor, std::move(fields)).first->second;
}

std::vector<ReferenceValue> ReferenceReader::Read(Object& object)
{
    std::vector<ReferenceValue> values;
    ClassDescriptor* descriptor = object.GetClassDescriptor();
    if (!descriptor)
    {
        return values;
    }
    for (const FieldInfo& field : ReferenceFields(descriptor))
    {
        int hasValue = 0;
        object.HasAttributeValue(field.GetName(), hasValue);
        Array<Reference> references;
        if (!hasValue || !object.GetAttributeValue(field.GetName(), references).Ok())
        {
            continue;
        }
        const bool isId = field.GetType() == zorvex_api::zorvexFieldSingleReference ||
                          field.GetType() == zorvex_api::zorvexFieldMultipleReference;
        for (int i = 0; i < references.GetSize(); ++i)
        {
            ReferenceValue value;
            value.field = ToUtf8(field.GetName());
            value.text = ToUtf8(references[i].GetString());
            value.target = TargetOf(references[i], object);
            value.isLocalText = isId || value.text.compare(0, 1, "#") == 0;
            if (!value.text.empty() || value.target != Target::None)
            {
                values.push_back(std::move(value));
            }
        }
    }
    return values;
}

}  // namespace zorvex_cli
