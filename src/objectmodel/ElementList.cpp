#include "objectmodel/ElementList.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <unordered_map>
#include <utility>

#include "objectmodel/HookedVector.h"
#include "objectmodel/ObjectCallbackBase.h"
#include "runtime/FreeList.h"

namespace zorvex_api
{

namespace
{

constexpr int kFirstCapacity = 4;

// A list gets places when searches have gone through it this many times, and never a short one.
constexpr int kLooksForPlaces = 4;
constexpr int kSmallestForPlaces = 64;

}  // namespace

/// The slot of each child of an array that many children are taken out of one by one. While there
/// are places, a child that goes leaves a gap behind: a null entry, never the first or the last.
/// Reading the list closes the gaps and ends the places.
struct ElementList::Places : public Allocator
{
    std::unordered_map<const Object*, int, std::hash<const Object*>, std::equal_to<const Object*>,
                       HookedAllocator<std::pair<const Object* const, int>>>
        slots;
    int gaps = 0;
};

void* ElementList::operator new(std::size_t)
{
    return FreeList<sizeof(ElementList)>::Take();
}

void ElementList::operator delete(void* block)
{
    FreeList<sizeof(ElementList)>::Give(block);
}

ElementList::~ElementList()
{
    Clear();
}

void ElementList::Clear()
{
    if (!IsChained())
    {
        delete std::exchange(m_places, nullptr);
        Allocator::deallocate(m_items);
        m_items = nullptr;
        m_capacity = 0;
        m_first = 0;
        m_looked = 0;
        m_count = 0;
        return;
    }
    while (m_head != nullptr)
    {
        Node* next = m_head->next;
        FreeList<sizeof(Node)>::Give(m_head);
        m_head = next;
    }
    m_tail = nullptr;
    m_count = 0;
}

void ElementList::Swap(ElementList& other) noexcept
{
    std::swap(m_items, other.m_items);  // the head of a chain stands in the same place
    std::swap(m_tail, other.m_tail);    // and its tail in that of the places
    std::swap(m_count, other.m_count);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_first, other.m_first);
    std::swap(m_looked, other.m_looked);
}

Object* ElementList::At(int index) const
{
    if (!IsChained())
    {
        CloseGaps();
        return m_items[m_first + index];
    }
    const Node* node = m_head;
    while (index-- > 0)
    {
        node = node->next;
    }
    return node->child;
}

int ElementList::EndSlot() const
{
    return m_first + m_count + (m_places != nullptr ? m_places->gaps : 0);
}

/// Makes room behind the last entry. Places hold: entries stay in their slots, or they end.
void ElementList::GrowArray()
{
    const int end = EndSlot();
    if (end > 2 * m_count)
    {
        MoveTogether();
        return;
    }
    const int capacity = end == 0 ? kFirstCapacity : end + (end + 1) / 2;
    Object** items = static_cast<Object**>(
        Allocator::allocate(static_cast<std::size_t>(capacity) * sizeof(Object*)));
    Allocator::copy(items + m_first, m_items + m_first,
                    static_cast<std::size_t>(end - m_first) * sizeof(Object*));
    Allocator::deallocate(m_items);
    m_items = items;
    m_capacity = capacity;
}

void ElementList::MoveTogether() const noexcept
{
    Object** const end = std::remove(m_items + m_first, m_items + EndSlot(), nullptr);
    Allocator::move(m_items, m_items + m_first,
                    static_cast<std::size_t>(end - m_items - m_first) * sizeof(Object*));
    m_first = 0;
    delete std::exchange(m_places, nullptr);
}

void ElementList::Append(Object* child)
{
    if (!IsChained())
    {
        if (EndSlot() == m_capacity)
        {
            GrowArray();
        }
        const int slot = EndSlot();
        if (m_places != nullptr)
        {
            m_places->slots.emplace(child, slot);
        }
        m_items[slot] = child;
        ++m_count;
        return;
    }
    Node* node = static_cast<Node*>(FreeList<sizeof(Node)>::Take());
    node->child = child;
    node->next = nullptr;
    (m_tail != nullptr ? m_tail->next : m_head) = node;
    m_tail = node;
    ++m_count;
}

int ElementList::FindInArray(const Object* child) const
{
    if (m_places != nullptr)
    {
        const auto place = m_places->slots.find(child);
        return place != m_places->slots.end() ? place->second : -1;
    }
    for (int low = m_first, high = EndSlot() - 1; low <= high; ++low, --high)
    {
        if (m_items[low] == child)
        {
            return low;
        }
        if (m_items[high] == child)
        {
            return high;
        }
    }
    return -1;
}

bool ElementList::RemoveFromArray(const Object* child)
{
    const int slot = FindInArray(child);
    if (slot < 0)
    {
        return false;
    }
    if (m_places != nullptr)
    {
        Vacate(slot);
        return true;
    }
    --m_count;
    if (slot == m_first)
    {
        ++m_first;
        return true;
    }
    const int behind = EndSlot() - slot;
    Allocator::move(m_items + slot, m_items + slot + 1,
                    static_cast<std::size_t>(behind) * sizeof(Object*));
    NoteSearch(std::min(slot - m_first, behind));
    return true;
}

void ElementList::NoteSearch(int looked) noexcept
{
    m_looked += looked;
    if (m_looked / kLooksForPlaces < m_count)
    {
        return;
    }
    m_looked = 0;
    if (m_count < kSmallestForPlaces)
    {
        return;
    }
    try
    {
        MakePlaces();
    }
    catch (const std::bad_alloc&)
    {
        // Without memory for places the list is searched as before.
    }
}

void ElementList::MakePlaces()
{
    auto places = std::make_unique<Places>();
    places->slots.reserve(static_cast<std::size_t>(m_count));
    for (int slot = m_first; slot < EndSlot(); ++slot)
    {
        places->slots.emplace(m_items[slot], slot);
    }
    m_places = places.release();
}

void ElementList::Vacate(int slot)
{
    m_places->slots.erase(m_items[slot]);
    m_items[slot] = nullptr;
    --m_count;
    int& gaps = ++m_places->gaps;
    for (; gaps > 0 && m_items[m_first] == nullptr; --gaps)
    {
        ++m_first;
    }
    while (gaps > 0 && m_items[EndSlot() - 1] == nullptr)
    {
        --gaps;
    }
}

bool ElementList::RemoveFromChain(const Object* child)
{
    Node* before = nullptr;
    Node* node = m_head;
    while (node != nullptr && node->child != child)
    {
        before = node;
        node = node->next;
    }
    if (node == nullptr)
    {
        return false;
    }
    (before != nullptr ? before->next : m_head) = node->next;
    if (m_tail == node)
    {
        m_tail = before;
    }
    FreeList<sizeof(Node)>::Give(node);
    --m_count;
    return true;
}

bool ElementList::Remove(const Object* child)
{
    return IsChained() ? RemoveFromChain(child) : RemoveFromArray(child);
}

bool ElementList::Contains(const Object* child) const
{
    if (!IsChained())
    {
        return FindInArray(child) >= 0;
    }
    return !Walk([child](const Object* entry) { return entry != child; });
}

Object* ElementList::TakeLast()
{
    if (m_count == 0)
    {
        return nullptr;
    }
    Object* last = IsChained() ? m_tail->child : At(m_count - 1);
    if (IsChained())
    {
        RemoveFromChain(last);
        return last;
    }
    --m_count;
    return last;
}

void ElementList::ForEach(ObjectCallbackBase& callback) const
{
    if (!IsChained())
    {
        CloseGaps();
        callback.Process(m_items + m_first, m_count);
        return;
    }
    Walk([&callback](Object* child) { return callback.Process(child) != 0; });
}

}  // namespace zorvex_api
