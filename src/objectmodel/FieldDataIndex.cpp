#include "objectmodel/FieldDataIndex.h"

#include <cstdint>

#include "objectmodel/FieldData.h"

namespace zorvex_api
{

namespace
{

constexpr std::size_t kFirstSlots = 256;

}  // namespace

FieldDataIndex::FieldDataIndex(FieldData* list) : m_slots(kFirstSlots)
{
    for (FieldData* record = list; record != nullptr; record = record->next)
    {
        Insert(record);
    }
}

FieldData* FieldDataIndex::Find(const FieldDescriptor* descriptor) const
{
    return m_slots[SlotOf(descriptor)];
}

void FieldDataIndex::Insert(FieldData* record)
{
    if ((m_used + 1) * 2 > m_slots.size())
    {
        Grow();
    }
    Place(record);
}

/// The slot of the descriptor's record, or the free one where it belongs.
std::size_t FieldDataIndex::SlotOf(const FieldDescriptor* descriptor) const
{
    // The low bits of an address are those of its alignment.
    const std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(descriptor) * 0x9e3779b97f4a7c15u;
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = static_cast<std::size_t>(mixed >> 32) & mask;
    while (m_slots[at] != nullptr && m_slots[at]->descriptor != descriptor)
    {
        at = (at + 1) & mask;
    }
    return at;
}

void FieldDataIndex::Place(FieldData* record)
{
    m_slots[SlotOf(record->descriptor)] = record;
    ++m_used;
}

void FieldDataIndex::Grow()
{
    HookedVector<FieldData*> old(m_slots.size() * 2);
    old.swap(m_slots);
    m_used = 0;
    for (FieldData* record : old)
    {
        if (record != nullptr)
        {
            Place(record);
        }
    }
}

}  // namespace zorvex_api
