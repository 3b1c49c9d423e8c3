#include "objectmodel/ClassLayout.h"

#include "objectmodel/ClassDescriptorImpl.h"

namespace zorvex_api
{

namespace
{

std::uint32_t CountFields(std::span<const ClassDescriptorImpl* const> chain)
{
    size_t count = 0;
    for (const ClassDescriptorImpl* level : chain)
    {
        count += level->Fields().size();
    }
    return static_cast<std::uint32_t>(count);
}

bool IsNamed(const FieldDescriptor& field, const HookedVector<TextView>& names)
{
    for (const TextView name : names)
    {
        if (field.NameView() == name)
        {
            return true;
        }
    }
    return false;
}

}  // namespace

ClassLayout::ClassLayout(std::span<const ClassDescriptorImpl* const> chain,
                         std::uint32_t generation)
    : m_generation(generation), m_index(CountFields(chain))
{
    const std::uint32_t count = CountFields(chain);
    m_derivedFirst.reserve(count);
    m_baseFirst.reserve(count);
    for (const ClassDescriptorImpl* level : chain)
    {
        for (FieldDescriptor* field : level->Fields())
        {
            m_index.Insert(*field, static_cast<std::uint32_t>(m_derivedFirst.size()));
            m_derivedFirst.push_back(field);
            Note(field);
        }
    }
    for (size_t level = chain.size(); level-- > 0;)
    {
        const FieldSpan own = chain[level]->Fields();
        m_baseFirst.insert(m_baseFirst.end(), own.begin(), own.end());
    }
    CollectRequired(chain);
}

void ClassLayout::Note(FieldDescriptor* field)
{
    if (field->IsElement())
    {
        m_elementFields.push_back(field);
        if (m_wildcard == nullptr && field->IsWildcard())
        {
            m_wildcard = field;
        }
        return;
    }
    if (field->IsReference())
    {
        m_referenceFields.push_back(field);
    }
    if (m_content == nullptr && field->IsContent())
    {
        m_content = field;
    }
    if (m_externalReference == nullptr && field->Type() == zorvexFieldExternalReference)
    {
        m_externalReference = field;
    }
}

void ClassLayout::CollectRequired(std::span<const ClassDescriptorImpl* const> chain)
{
    HookedVector<TextView> optional;
    for (const ClassDescriptorImpl* level : chain)
    {
        for (FieldDescriptor* field : level->Fields())
        {
            if (field->IsRequired() && !field->IsElement() && !IsNamed(*field, optional))
            {
                m_requiredFields.push_back(field);
            }
        }
        for (const String& name : level->OptionalAttributes())
        {
            optional.push_back(View(name));
        }
    }
}

FieldDescriptor* ClassLayout::FindField(const FieldQuery& query, bool exactOnly) const
{
    FieldDescriptor* found = Scope().FindExact(query);
    if (found != nullptr || exactOnly)
    {
        return found;
    }
    if (m_externalReference != nullptr && (query.mask & field_kind::kAttribute) != 0 &&
        query.IsLoadOrLocation())
    {
        return m_externalReference;
    }
    return Scope().FindNear(query);
}

FieldDescriptor* ClassLayout::FindAttribute(TextView xmlName) const
{
    constexpr int kMask = field_kind::kAttributeOrContent;
    FieldDescriptor* found = Scope().FindXmlName(xmlName, name_match::Hash(xmlName), kMask);
    return found != nullptr ? found : FindField(xmlName, kMask);
}

FieldDescriptor* ClassLayout::FindElement(TextView name) const
{
    FieldDescriptor* found = nullptr;
    Scope().ForHash(name_match::Hash(name),
                    [&](FieldDescriptor* field, std::uint32_t)
                    {
                        if ((field->IsElement() || field->Type() == zorvexFieldContentElement) &&
                            field->NameView() == name)
                        {
                            found = field;
                        }
                        return found != nullptr;
                    });
    return found;
}

}  // namespace zorvex_api
