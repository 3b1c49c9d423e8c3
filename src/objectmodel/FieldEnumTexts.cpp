#include "objectmodel/FieldEnumTexts.h"

#include <bit>

#include "objectmodel/NameMatch.h"

namespace zorvex_api
{

EnumTexts::EnumTexts(EnumTexts* before, const char* const* values) : m_before(before)
{
    if (before != nullptr)
    {
        m_texts = before->m_texts;
    }
    for (; values != nullptr && *values != nullptr; ++values)
    {
        m_texts.push_back(FromUtf8(*values));
    }

    // An index is kept in 16 bits: what a longer list has beyond that isn't indexed, and so isn't
    // allowed.
    const size_t indexed = m_texts.size() < 0xffff ? m_texts.size() : 0xffff;
    m_slots.resize(std::bit_ceil(indexed * 2 + 1));
    const size_t mask = m_slots.size() - 1;
    for (size_t i = 0; i < indexed; ++i)
    {
        size_t at = name_match::Hash(View(m_texts[i])) & mask;
        while (m_slots[at] != 0)
        {
            at = (at + 1) & mask;
        }
        m_slots[at] = static_cast<std::uint16_t>(i + 1);
    }
}

EnumTexts::~EnumTexts()
{
    while (m_before != nullptr)
    {
        EnumTexts* const before = m_before;
        m_before = before->m_before;
        before->m_before = nullptr;
        delete before;
    }
}

const String* EnumTexts::Find(TextView text) const
{
    const size_t mask = m_slots.size() - 1;
    for (size_t at = name_match::Hash(text) & mask; m_slots[at] != 0; at = (at + 1) & mask)
    {
        const String& candidate = m_texts[m_slots[at] - 1u];
        if (View(candidate) == text)
        {
            return &candidate;
        }
    }
    return nullptr;
}

}  // namespace zorvex_api
