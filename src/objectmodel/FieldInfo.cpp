#include "zorvex_api/FieldInfo.h"

#include "objectmodel/FieldDescriptor.h"

namespace zorvex_api
{

FieldInfo::FieldInfo() : m_descriptor(nullptr) {}
FieldInfo::FieldInfo(FieldDescriptor* descriptor) : m_descriptor(descriptor) {}

const String& FieldInfo::GetName() const
{
    return m_descriptor != nullptr ? m_descriptor->Name() : String::EmptyString();
}

int FieldInfo::GetType() const
{
    return m_descriptor != nullptr ? m_descriptor->Type() : 0;
}

short FieldInfo::GetClass() const
{
    return m_descriptor != nullptr ? m_descriptor->ClassValue() : class_value::kUnset;
}

const String& FieldInfo::GetClassString() const
{
    if (m_descriptor == nullptr)
    {
        return String::EmptyString();
    }
    const String& name = m_descriptor->ClassName();
    return name.IsEmpty() ? m_descriptor->ClassList() : name;
}

const String& FieldInfo::GetDefaultValue() const
{
    return m_descriptor != nullptr ? m_descriptor->DefaultValue() : String::EmptyString();
}

int FieldInfo::HasDefaultValue() const
{
    return !GetDefaultValue().IsEmpty();
}

int FieldInfo::GetArrayLength() const
{
    return IsArray() ? m_descriptor->Length() : 0;
}
int FieldInfo::IsArray() const
{
    return m_descriptor != nullptr && m_descriptor->IsArray();
}

int FieldInfo::IsVariableLengthArray() const
{
    return m_descriptor != nullptr && m_descriptor->IsVariableLength();
}

int FieldInfo::IsAttribute() const
{
    return m_descriptor != nullptr && m_descriptor->IsAttribute();
}
int FieldInfo::IsElement() const
{
    return m_descriptor != nullptr && m_descriptor->IsElement();
}
int FieldInfo::IsContent() const
{
    return m_descriptor != nullptr && m_descriptor->IsContent();
}
int FieldInfo::IsReference() const
{
    return m_descriptor != nullptr && m_descriptor->IsReference();
}
int FieldInfo::IsEnum() const
{
    return m_descriptor != nullptr && m_descriptor->IsEnum();
}
int FieldInfo::IsRequired() const
{
    return m_descriptor != nullptr && m_descriptor->IsRequired();
}

int FieldInfo::IsDeprecated() const
{
    return m_descriptor != nullptr && m_descriptor->IsDeprecated();
}

int FieldInfo::GetEnumerationValues(Array<String>& values) const
{
    if (!IsEnum())
    {
        return 0;
    }
    const int count = m_descriptor->NumberOfAllowedValues();
    for (int i = 0; i < count; ++i)
    {
        values.Add(m_descriptor->AllowedValue(i));
    }
    return 1;
}

FieldDescriptor* FieldInfo::GetDescriptor() const
{
    return m_descriptor;
}

}  // namespace zorvex_api
