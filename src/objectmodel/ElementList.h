#pragma once

#include "zorvex_api/Allocator.h"

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
    explicit ElementList(bool chained);
    ~ElementList();
    ElementList(const ElementList&) = delete;
    ElementList& operator=(const ElementList&) = delete;

    int Count() const { return m_count; }
    bool IsChained() const { return m_chained; }
    /// By index from 0, in range. Constant time for an array.
    Object* At(int index) const;
    void Append(Object* child);
    /// Takes out the first entry equal to `child`, keeping the order; false when it isn't in.
    bool Remove(const Object* child);
    bool Contains(const Object* child) const;
    void Clear();

    /// An array goes to the call-back at once, a chained list child by child until it answers 0.
    void ForEach(ObjectCallbackBase& callback) const;

    /// Calls visit(Object*) for each child in order until it returns false; children may be appended
    /// meanwhile, and the current one removed.
    template <class Visit>
    bool Walk(Visit&& visit) const
    {
        for (int i = 0; i < m_count; ++i)
        {
            Object* child = At(i);
            if (!visit(child))
            {
                return false;
            }
            if (i < m_count && At(i) != child)
            {
                --i;
            }
        }
        return true;
    }

private:
    struct Node;

    union
    {
        Object** m_items;  // array form
        Node* m_head;      // chained form
    };
    Node* m_tail = nullptr;  // chained form
    int m_count = 0;
    int m_capacity = 0;
    bool m_chained = false;
};

}  // namespace zorvex_api
