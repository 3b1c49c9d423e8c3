#include "objectmodel/FieldEnumTexts.h"

#include <bit>
#include <functional>

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

bool EnumTexts::Holds(const void* text) const
{
    for (const EnumTexts* texts = this; texts != nullptr; texts = texts->m_before)
    {
        const String* const first = texts->m_texts.data();
        const String* const end = first + texts->m_texts.size();
        const auto* place = static_cast<const String*>(text);
        if (!std::less<>()(place, first) && std::less<>()(place, end))
        {
            return true;
        }
        for (const String* candidate = first; candidate != end; ++candidate)
        {
            if (candidate->GetData() == text && text != nullptr)
            {
                return true;
            }
        }
    }
    return false;
}

}  // namespace zorvex_api
