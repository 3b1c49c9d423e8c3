#include "objectmodel/ElementList.h"

#include <utility>

#include "objectmodel/ObjectCallbackBase.h"
#include "runtime/FreeList.h"

namespace zorvex_api
{

namespace
{

constexpr int kFirstCapacity = 4;

}  // namespace

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
    if (!m_chained)
    {
        Allocator::deallocate(m_items);
        m_items = nullptr;
        m_capacity = 0;
        m_first = 0;
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
    std::swap(m_tail, other.m_tail);
    std::swap(m_count, other.m_count);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_first, other.m_first);
    std::swap(m_chained, other.m_chained);
}

Object* ElementList::At(int index) const
{
    if (!m_chained)
    {
        return m_items[m_first + index];
    }
    const Node* node = m_head;
    while (index-- > 0)
    {
        node = node->next;
    }
    return node->child;
}

void ElementList::GrowArray()
{
    const std::size_t bytes = static_cast<std::size_t>(m_count) * sizeof(Object*);
    if (m_first > m_count)
    {
        Allocator::move(m_items, m_items + m_first, bytes);
        m_first = 0;
        return;
    }
    const int capacity = m_count == 0 ? kFirstCapacity : m_count + (m_count + 1) / 2;
    Object** items = static_cast<Object**>(
        Allocator::allocate(static_cast<std::size_t>(capacity) * sizeof(Object*)));
    Allocator::copy(items, m_items + m_first, bytes);
    Allocator::deallocate(m_items);
    m_items = items;
    m_capacity = capacity;
    m_first = 0;
}

void ElementList::Append(Object* child)
{
    if (!m_chained)
    {
        if (m_first + m_count == m_capacity)
        {
            GrowArray();
        }
        m_items[m_first + m_count++] = child;
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
    for (int low = m_first, high = m_first + m_count - 1; low <= high; ++low, --high)
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
    const int index = FindInArray(child);
    if (index < 0)
    {
        return false;
    }
    --m_count;
    if (index == m_first)
    {
        ++m_first;
        return true;
    }
    const int behind = m_first + m_count - index;
    Allocator::move(m_items + index, m_items + index + 1,
                    static_cast<std::size_t>(behind) * sizeof(Object*));
    return true;
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
    return m_chained ? RemoveFromChain(child) : RemoveFromArray(child);
}

bool ElementList::Contains(const Object* child) const
{
    if (!m_chained)
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
    Object* last = m_chained ? m_tail->child : m_items[m_first + m_count - 1];
    if (m_chained)
    {
        RemoveFromChain(last);
        return last;
    }
    --m_count;
    return last;
}

void ElementList::ForEach(ObjectCallbackBase& callback) const
{
    if (!m_chained)
    {
        callback.Process(m_items + m_first, m_count);
        return;
    }
    Walk([&callback](Object* child) { return callback.Process(child) != 0; });
}

}  // namespace zorvex_api
