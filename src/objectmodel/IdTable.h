#pragma once

#include <cstddef>
#include <cstdint>

#include "objectmodel/Id.h"
#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

class ClassData;

/// Finds the objects of one tree by id. Stands on the root.
///
/// Holds pointers to the objects' records and reads the ids there, so an object leaves the table
/// before its id changes. Of several objects with one id the first entered is found; when it goes,
/// the next takes over.
class IdTable : public Allocator
{
public:
    IdTable() = default;
    ~IdTable();
    IdTable(const IdTable&) = delete;
    IdTable& operator=(const IdTable&) = delete;

    /// Enters an object by its current id, which must have a value. Raises the highest number. No
    /// object is entered twice.
    void Insert(ClassData* data);
    /// Takes out this object, found by its current id. Nothing happens when it isn't in.
    void Remove(ClassData* data) noexcept;
    /// The first object entered with this id, or null.
    ClassData* Find(const IdValue& id) const;
    /// Whether an object has this id. When none has, entering one with it next costs no search.
    bool Contains(const IdValue& id);
    /// Ask the memory for what `Find` of a number will need: first the place in the table, and when
    /// that has come, the object.
    void PrefetchPlace(std::uint32_t number) const
    {
        if (m_capacity != 0)
        {
            __builtin_prefetch(&m_slots[Home(number)]);
            __builtin_prefetch(&m_keys[Home(number)]);
        }
    }
    void PrefetchEntry(std::uint32_t number) const
    {
        if (m_capacity != 0)
        {
            const Slot entry = m_slots[Home(number)];  // perhaps no address: it is only asked for
            __builtin_prefetch(reinterpret_cast<const void*>(entry));
            __builtin_prefetch(reinterpret_cast<const void*>(entry + 64));
        }
    }
    /// Takes over all entries of `other`, which is left empty.
    void Absorb(IdTable& other);
    /// Makes room for `count` entries in all.
    void Reserve(std::size_t count);

    std::size_t Count() const { return m_count; }
    std::uint32_t HighestNumber() const { return m_highest; }
    void SetHighestNumber(std::uint32_t number) { m_highest = number; }
    void RaiseHighestNumber(std::uint32_t number)
    {
        if (number > m_highest)
        {
            m_highest = number;
        }
    }
    /// The highest number among the entries now in.
    std::uint32_t ComputeHighestNumber() const;

private:
    // What a slot holds: null, a tombstone, a ClassData, or (lowest bit set) several of one id.
    using Slot = std::uintptr_t;
    struct Duplicates;

    static constexpr Slot kFree = 0;
    static constexpr std::size_t kNoPlace = ~std::size_t{0};
    static constexpr Slot kTombstone = ~Slot{0};

    static bool IsLive(Slot slot) { return slot != kFree && slot != kTombstone; }
    static Duplicates* DuplicatesOf(Slot slot);
    static ClassData* First(Slot slot);

    std::size_t Home(std::uint32_t key) const;
    /// The slot of an equal id, else null. `reusable` gets where a new entry goes.
    Slot* Search(const IdValue& id, std::uint32_t key, std::size_t* reusable) const;
    void ForgetMiss() { m_missPlace = kNoPlace; }
    void Vacate(std::size_t index) noexcept;
    void Rebuild(std::size_t capacity);
    void FreeSlots();
    template <class Visit>
    void ForEach(Visit visit) const;

    Slot* m_slots = nullptr;          // from Allocator; the keys stand behind the slots
    std::uint32_t* m_keys = nullptr;  // the hash of each live slot's id
    std::size_t m_capacity = 0;       // a power of two, at least kGroup
    std::size_t m_count = 0;          // objects
    std::size_t m_used = 0;           // slots that aren't free
    std::size_t m_live = 0;           // slots with objects
    std::uint32_t m_highest = 0;
    // Where the number that Contains has just not found would stand.
    std::size_t m_missPlace = kNoPlace;
    std::uint32_t m_missNumber = 0;
};

}  // namespace zorvex_api
