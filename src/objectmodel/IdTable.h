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

    /// Enters an object by its current id, which must have a value. Raises the highest number.
    void Insert(ClassData* data);
    /// Takes out this object, found by its current id. Nothing happens when it isn't in.
    void Remove(ClassData* data);
    /// The first object entered with this id, or null.
    ClassData* Find(const IdValue& id) const;
    /// Takes over all entries of `other`, which is left empty.
    void Absorb(IdTable& other);

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
    void Rebuild(std::size_t capacity);
    void Place(ClassData* data);

    ClassData** m_slots = nullptr;  // from Allocator; null free, all ones tombstone
    std::size_t m_capacity = 0;     // a power of two
    std::size_t m_count = 0;        // live entries
    std::size_t m_used = 0;         // live entries and tombstones
    std::uint32_t m_highest = 0;
};

}  // namespace zorvex_api
