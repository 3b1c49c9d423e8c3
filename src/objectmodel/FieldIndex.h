#pragma once

#include <atomic>
#include <cstdint>

#include "objectmodel/HookedVector.h"
#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

class FieldDescriptor;

/// Positions of fields by name hash: open addressing, insertion only, read without a lock.
///
/// Fields of one hash come back in the order of insertion. The table has a fixed size; its owner
/// makes a bigger one when there is no more room.
class FieldIndex : public Allocator
{
public:
    explicit FieldIndex(std::uint32_t numberOfFields);

    /// Whether one more field fits; at least a third of the slots stays free.
    bool HasRoom() const { return (m_used + 2) * 3 <= (m_mask + 1) * 2; }
    /// Enters the field under its name and, when that differs, its XML name. There must be room.
    void Insert(const FieldDescriptor& field, std::uint32_t position);

    /// Calls `visit(position)` for each entry of the hash until it gives true.
    template <class Visit>
    void ForEach(std::uint32_t hash, Visit visit) const
    {
        for (std::uint32_t at = hash & m_mask;; at = (at + 1) & m_mask)
        {
            const std::uint64_t slot = m_slots[at].load(std::memory_order_acquire);
            if (slot == 0)
            {
                return;
            }
            if (static_cast<std::uint32_t>(slot >> 32) == hash &&
                visit(static_cast<std::uint32_t>(slot) - 1))
            {
                return;
            }
        }
    }

private:
    void Insert(std::uint32_t hash, std::uint32_t position);

    std::uint32_t m_mask;
    std::uint32_t m_used = 0;
    HookedVector<std::atomic<std::uint64_t>> m_slots;  // hash << 32 | position + 1; 0 is free
};

}  // namespace zorvex_api
