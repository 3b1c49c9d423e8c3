#include "objectmodel/FieldIndex.h"

#include <bit>

#include "objectmodel/FieldDescriptor.h"

namespace zorvex_api
{

namespace
{

/// Room for twice the entries of `numberOfFields` fields with two names each.
std::uint32_t SlotsFor(std::uint32_t numberOfFields)
{
    return std::bit_ceil(numberOfFields * 3 + 8);
}

}  // namespace

FieldIndex::FieldIndex(std::uint32_t numberOfFields)
    : m_mask(SlotsFor(numberOfFields) - 1), m_slots(m_mask + 1)
{
}

void FieldIndex::Insert(const FieldDescriptor& field, std::uint32_t position)
{
    Insert(field.NameHash(), position);
    if (field.XmlNameHash() != field.NameHash())
    {
        Insert(field.XmlNameHash(), position);
    }
}

void FieldIndex::Insert(std::uint32_t hash, std::uint32_t position)
{
    std::uint32_t at = hash & m_mask;
    while (m_slots[at].load(std::memory_order_relaxed) != 0)
    {
        at = (at + 1) & m_mask;
    }
    m_slots[at].store(static_cast<std::uint64_t>(hash) << 32 | (position + 1),
                      std::memory_order_release);
    ++m_used;
}

}  // namespace zorvex_api
