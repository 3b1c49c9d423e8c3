#pragma once

#include <cstddef>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"

namespace zorvex_api
{

class Object;
class ObjectCallbackBase;

/// The children of a multiple element field, in order: an array, or a chained list when the owner
/// has the flag for it. Owns the list's memory, not the children.
class ElementList : public Allocator
{
public:
    /// `chained` is fixed for the list's life.
    explicit ElementList(bool chained) : m_capacity(chained ? kChained : 0) {}
    ~ElementList();
    ElementList(const ElementList&) = delete;
    ElementList& operator=(const ElementList&) = delete;

    int Count() const { return m_count; }
    bool IsChained() const { return m_capacity == kChained; }
    /// By index from 0, in range. Constant time for an array.
    Object* At(int index) const;
    void Append(Object* child);
    /// Takes out the entry of `child`, keeping the order; false when it isn't in. Taking many out
    /// of an array one by one, in whatever order, costs little each: see Places.
    bool Remove(const Object* child);
    bool Contains(const Object* child) const;
    /// Takes out the last child; null when the list is empty. Not in constant time when chained.
    Object* TakeLast();
    /// Takes out all children that `test` accepts, in one pass, and appends them to `taken`.
    template <class Test>
    void Extract(Test test, Array<Object*>& taken)
    {
        ElementList rest(IsChained());
        Walk(
            [&](Object* child)
            {
                if (test(child))
                {
                    taken.Add(child);
                }
                else
                {
                    rest.Append(child);
                }
                return true;
            });
        Swap(rest);
    }
    void Clear();

    /// An array goes to the call-back at once, a chained list child by child until it answers 0.
    void ForEach(ObjectCallbackBase& callback) const;

    /// Calls visit(Object*) for each child in order until it returns false; children may be
    /// appended meanwhile, and the current one removed.
    template <class Visit>
    bool Walk(Visit&& visit) const
    {
        return IsChained() ? WalkChain(visit) : WalkArray(visit);
    }

    static void* operator new(std::size_t size);
    static void operator delete(void* block);

private:
    static constexpr int kChained = -1;

    struct Node
    {
        Object* child;
        Node* next;
    };
    struct Places;

    template <class Visit>
    bool WalkArray(Visit& visit) const
    {
        CloseGaps();
        for (int i = 0; i < m_count; ++i)
        {
            Object* child = m_items[m_first + i];
            if (!visit(child))
            {
                return false;
            }
            CloseGaps();
            if (i < m_count && m_items[m_first + i] != child)
            {
                --i;
            }
        }
        return true;
    }
    template <class Visit>
    bool WalkChain(Visit& visit) const
    {
        Node* before = nullptr;
        Node* node = m_head;
        while (node != nullptr)
        {
            if (!visit(node->child))
            {
                return false;
            }
            Node* here = before != nullptr ? before->next : m_head;
            if (here == node)
            {
                before = node;
                here = node->next;
            }
            node = here;
        }
        return true;
    }
    void Swap(ElementList& other) noexcept;
    void GrowArray();
    bool RemoveFromArray(const Object* child);
    bool RemoveFromChain(const Object* child);
    /// Slot of `child`, looked for from both ends at once; -1 when it isn't in.
    int FindInArray(const Object* child) const;
    /// The slot behind the last entry.
    int EndSlot() const;
    void NoteSearch(int looked) noexcept;
    void MakePlaces();
    void Vacate(int slot);
    /// Before an array is read: its entries stand side by side afterwards.
    void CloseGaps() const
    {
        if (m_places != nullptr)
        {
            MoveTogether();
        }
    }
    void MoveTogether() const noexcept;

    union
    {
        Object** m_items = nullptr;  // array form; entries from m_first on
        Node* m_head;                // chained form
    };
    union
    {
        mutable Places* m_places = nullptr;  // array form; owned, mostly null
        Node* m_tail;                        // chained form
    };
    int m_count = 0;
    int m_capacity;           // kChained in chained form
    mutable int m_first = 0;  // array form: room left by children removed from the front
    int m_looked = 0;         // array form: entries that removals went through in their searches
};

}  // namespace zorvex_api
