#include "objectmodel/IdTable.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <new>
#include <unordered_map>
#include <utility>

#include "objectmodel/ClassData.h"
#include "objectmodel/HookedVector.h"
#include "objectmodel/IdSeed.h"

namespace zorvex_api
{

namespace
{

// Ids with numbers in a row stand side by side in groups of this size, so that reading a document
// touches few cache lines; the place of a group is a hash with a seed of the process, so that a
// document can't choose ids that collide.
constexpr unsigned kGroupBits = 3;
constexpr std::size_t kGroup = 1u << kGroupBits;
constexpr std::size_t kSmallest = 4 * kGroup;

constexpr std::size_t Limit(std::size_t capacity)
{
    return capacity / 4 * 3;
}

}  // namespace

/// Objects of one id in the order of entry. A document may give one id to all its objects, so that
/// none is searched for.
struct IdTable::Duplicates : public Allocator
{
    explicit Duplicates(ClassData* data) { Add(data); }

    std::size_t Count() const { return m_places.size(); }
    ClassData* First() const { return m_objects[m_first]; }
    /// False when the object is in already.
    bool Add(ClassData* data)
    {
        if (!m_places.try_emplace(data, m_objects.size()).second)
        {
            return false;
        }
        m_objects.push_back(data);
        return true;
    }
    /// False when the object isn't in.
    bool Remove(const ClassData* data) noexcept
    {
        const auto place = m_places.find(data);
        if (place == m_places.end())
        {
            return false;
        }
        m_objects[place->second] = nullptr;
        m_places.erase(place);
        while (m_first < m_objects.size() && m_objects[m_first] == nullptr)
        {
            ++m_first;
        }
        if (m_objects.size() > kGroup + 2 * Count())
        {
            CloseGaps();
        }
        return true;
    }
    template <class Visit>
    void ForEach(Visit visit) const
    {
        for (ClassData* data : m_objects)
        {
            if (data != nullptr)
            {
                visit(data);
            }
        }
    }

private:
    void CloseGaps() noexcept
    {
        std::erase(m_objects, nullptr);
        m_first = 0;
        for (std::size_t i = 0; i < m_objects.size(); ++i)
        {
            m_places.find(m_objects[i])->second = i;
        }
    }

    HookedVector<ClassData*> m_objects;  // null: has left
    std::size_t m_first = 0;             // those before have left
    std::unordered_map<const ClassData*, std::size_t, std::hash<const ClassData*>,
                       std::equal_to<const ClassData*>,
                       HookedAllocator<std::pair<const ClassData* const, std::size_t>>>
        m_places;  // in m_objects
};

IdTable::Duplicates* IdTable::DuplicatesOf(Slot slot)
{
    return (slot & 1) != 0 ? reinterpret_cast<Duplicates*>(slot & ~Slot{1}) : nullptr;
}

ClassData* IdTable::First(Slot slot)
{
    const Duplicates* several = DuplicatesOf(slot);
    return several != nullptr ? several->First() : reinterpret_cast<ClassData*>(slot);
}

template <class Visit>
void IdTable::ForEach(Visit visit) const
{
    for (std::size_t i = 0; i < m_capacity; ++i)
    {
        if (!IsLive(m_slots[i]))
        {
            continue;
        }
        if (const Duplicates* several = DuplicatesOf(m_slots[i]))
        {
            several->ForEach(visit);
            continue;
        }
        visit(reinterpret_cast<ClassData*>(m_slots[i]));
    }
}

IdTable::~IdTable()
{
    FreeSlots();
}

void IdTable::FreeSlots()
{
    for (std::size_t i = 0; i < m_capacity; ++i)
    {
        if (IsLive(m_slots[i]))
        {
            delete DuplicatesOf(m_slots[i]);
        }
    }
    Allocator::deallocate(m_slots);
    ForgetMiss();
    m_slots = nullptr;
    m_keys = nullptr;
    m_capacity = m_count = m_used = m_live = 0;
}

std::size_t IdTable::Home(std::uint32_t key) const
{
    std::uint64_t mixed = (key >> kGroupBits) + internal::IdSeed();
    mixed *= 0x9e3779b97f4a7c15ULL;
    mixed = (mixed ^ (mixed >> 32)) * 0xd6e8feb86659fd93ULL;
    const unsigned groupBits = static_cast<unsigned>(std::countr_zero(m_capacity)) - kGroupBits;
    const std::size_t group = static_cast<std::size_t>(mixed >> (64 - groupBits));
    return group * kGroup + (key & (kGroup - 1));
}

IdTable::Slot* IdTable::Search(const IdValue& id, std::uint32_t key, std::size_t* reusable) const
{
    if (m_capacity == 0)
    {
        return nullptr;
    }
    const std::size_t mask = m_capacity - 1;
    std::size_t place = m_capacity;
    std::size_t i = Home(key);
    for (; m_slots[i] != kFree; i = (i + 1) & mask)  // Limit() keeps some slots free
    {
        if (m_slots[i] == kTombstone)
        {
            place = place == m_capacity ? i : place;
        }
        else if (m_keys[i] == key && First(m_slots[i])->id == id)
        {
            return &m_slots[i];
        }
    }
    if (reusable != nullptr)
    {
        *reusable = place != m_capacity ? place : i;
    }
    return nullptr;
}

void IdTable::Insert(ClassData* data)
{
    std::uint32_t number = 0;
    if (data->id.GetNumber(number))
    {
        RaiseHighestNumber(number);
    }
    if (m_used + 1 > Limit(m_capacity))
    {
        // Tombstones alone don't make the table larger.
        const bool full = 2 * (m_live + 1) > Limit(m_capacity);
        Rebuild(full ? std::max(kSmallest, 2 * m_capacity) : m_capacity);
    }
    const std::uint32_t key = data->id.Hash();
    std::size_t place = m_missPlace;
    const bool isNew = place != kNoPlace && key == m_missNumber && data->id.IsNumeric();
    Slot* equal = isNew ? nullptr : Search(data->id, key, &place);
    ForgetMiss();
    if (equal == nullptr)
    {
        m_used += m_slots[place] == kFree ? 1 : 0;
        m_slots[place] = reinterpret_cast<Slot>(data);
        m_keys[place] = key;
        ++m_live;
        ++m_count;
        return;
    }
    if (*equal == reinterpret_cast<Slot>(data))
    {
        return;
    }
    Duplicates* several = DuplicatesOf(*equal);
    if (several == nullptr)
    {
        several = new Duplicates(reinterpret_cast<ClassData*>(*equal));
        *equal = reinterpret_cast<Slot>(several) | 1;
    }
    m_count += several->Add(data) ? 1 : 0;
}

void IdTable::Remove(ClassData* data) noexcept
{
    ForgetMiss();
    Slot* slot = Search(data->id, data->id.Hash(), nullptr);
    if (slot == nullptr)
    {
        return;
    }
    Duplicates* several = DuplicatesOf(*slot);
    if (several == nullptr)
    {
        if (*slot == reinterpret_cast<Slot>(data))
        {
            --m_count;
            Vacate(static_cast<std::size_t>(slot - m_slots));
        }
        return;
    }
    if (!several->Remove(data))
    {
        return;
    }
    --m_count;
    if (several->Count() == 1)
    {
        *slot = reinterpret_cast<Slot>(several->First());
        delete several;
    }
}

void IdTable::Vacate(std::size_t index) noexcept
{
    --m_live;
    const std::size_t mask = m_capacity - 1;
    m_slots[index] = kTombstone;
    if (m_slots[(index + 1) & mask] != kFree)
    {
        return;
    }
    // No search goes on behind a free slot, so the tombstones before it aren't needed.
    for (; m_slots[index] == kTombstone; index = (index - 1) & mask)
    {
        m_slots[index] = kFree;
        --m_used;
    }
}

ClassData* IdTable::Find(const IdValue& id) const
{
    if (!id.HasValue() || m_count == 0)
    {
        return nullptr;
    }
    const Slot* slot = Search(id, id.Hash(), nullptr);
    return slot != nullptr ? First(*slot) : nullptr;
}

bool IdTable::Contains(const IdValue& id)
{
    if (!id.HasValue() || m_count == 0)
    {
        return false;
    }
    std::size_t place = kNoPlace;
    if (Search(id, id.Hash(), &place) != nullptr)
    {
        return true;
    }
    if (id.IsNumeric())
    {
        m_missPlace = place;
        m_missNumber = id.Hash();
    }
    return false;
}

void IdTable::Rebuild(std::size_t capacity)
{
    ForgetMiss();
    const std::size_t bytes = capacity * (sizeof(Slot) + sizeof(std::uint32_t));
    Slot* slots = static_cast<Slot*>(Allocator::allocate(bytes));
    std::fill_n(slots, capacity, kFree);
    Slot* oldSlots = std::exchange(m_slots, slots);
    const std::uint32_t* oldKeys =
        std::exchange(m_keys, reinterpret_cast<std::uint32_t*>(slots + capacity));
    const std::size_t oldCapacity = std::exchange(m_capacity, capacity);
    for (std::size_t i = 0; i < oldCapacity; ++i)
    {
        if (!IsLive(oldSlots[i]))
        {
            continue;
        }
        std::size_t place = Home(oldKeys[i]);
        while (m_slots[place] != kFree)
        {
            place = (place + 1) & (capacity - 1);
        }
        m_slots[place] = oldSlots[i];
        m_keys[place] = oldKeys[i];
    }
    m_used = m_live;
    Allocator::deallocate(oldSlots);
}

void IdTable::Reserve(std::size_t count)
{
    std::size_t capacity = std::max(kSmallest, m_capacity);
    while (Limit(capacity) < count)
    {
        capacity *= 2;
    }
    if (capacity != m_capacity)
    {
        Rebuild(capacity);
    }
}

void IdTable::Absorb(IdTable& other)
{
    RaiseHighestNumber(other.m_highest);
    ForgetMiss();
    if (m_count == 0)
    {
        std::swap(m_slots, other.m_slots);
        std::swap(m_keys, other.m_keys);
        std::swap(m_capacity, other.m_capacity);
        std::swap(m_count, other.m_count);
        std::swap(m_used, other.m_used);
        std::swap(m_live, other.m_live);
        other.FreeSlots();
        return;
    }
    Reserve(m_live + other.m_live);
    other.ForEach([this](ClassData* data) { Insert(data); });
    other.FreeSlots();
}

std::uint32_t IdTable::ComputeHighestNumber() const
{
    std::uint32_t highest = 0;
    ForEach(
        [&highest](const ClassData* data)
        {
            std::uint32_t number = 0;
            if (data->id.GetNumber(number))
            {
                highest = std::max(highest, number);
            }
        });
    return highest;
}

}  // namespace zorvex_api
