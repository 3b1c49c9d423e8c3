#include "zorvex_api/PluginProcessData.h"

#include <array>

namespace zorvex_api
{

namespace
{

constexpr int kNumberedSlots = 17;  // 0 to 16
constexpr int kSlots = 19;          // and the two behind them: -1 and -2

/// Index in the record, -1 for a number that isn't a slot.
int SlotIndex(int slot)
{
    if (slot >= 0 && slot < kNumberedSlots)
    {
        return slot;
    }
    if (slot == -1 || slot == -2)
    {
        return kNumberedSlots - 1 - slot;
    }
    return -1;
}

}  // namespace

struct PluginProcessDataImpl : public Allocator
{
    std::array<void*, kSlots> slots{};
};

PluginProcessData::PluginProcessData() : m_impl(new PluginProcessDataImpl), m_operation(0) {}

PluginProcessData::~PluginProcessData()
{
    delete m_impl;
}

void PluginProcessData::Set(int slot, void* value)
{
    const int index = SlotIndex(slot);
    if (index >= 0)
    {
        m_impl->slots[static_cast<std::size_t>(index)] = value;
    }
}

void PluginProcessData::Get(int slot, void*& value) const
{
    const int index = SlotIndex(slot);
    if (index >= 0)
    {
        value = m_impl->slots[static_cast<std::size_t>(index)];
    }
}

}  // namespace zorvex_api
