#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"

namespace zorvex_api
{

/// Keys with values, in the order of insertion, and a sorted index beside them for look-up.
///
/// K needs `operator==` and `operator<`. Adding a key that is there already makes a second entry:
/// remove the first to replace it. A look-up costs a binary search, an insertion a move of the
/// index.
template <class K, class V>
class ZORVEX_API Map : public Allocator
{
public:
    Map() : m_lastKey() {}
    explicit Map(int capacity)
        : m_lastKey(), m_keys(capacity), m_values(capacity), m_order(capacity)
    {
    }
    Map(const Map&) = default;
    virtual ~Map() {}

    Map& operator=(const Map&) = default;

    void Add(const K& key, const V& value)
    {
        m_lastKey = key;
        int position = 0;
        Search(m_lastKey, position);
        const int index = m_keys.GetSize();
        m_keys.Add(m_lastKey);
        m_values.Add(value);
        m_order.InsertAt(position, index);
    }

    int GetSize() const { return m_keys.GetSize(); }
    /// The keys and values in the order of insertion, with no range check.
    const K& GetKey(int index) const { return m_keys.GetAt(index); }
    const V& GetValue(int index) const { return m_values.GetAt(index); }
    /// The key most recently passed to `Add`, even when it is gone again.
    const K& GetLastKey() const { return m_lastKey; }

    /// 1 and `out` set if the key is found, else 0.
    int Lookup(const K& key, V& out) const
    {
        const int index = LookupIndex(key);
        if (index < 0)
        {
            return 0;
        }
        out = m_values.GetAt(index);
        return 1;
    }

    /// The index for `GetKey` and `GetValue`, or -1.
    int LookupIndex(const K& key) const
    {
        int position = 0;
        return Search(key, position) ? m_order.GetAt(position) : -1;
    }

    /// Takes an entry out; the indices of later entries drop by one.
    void Remove(const K& key)
    {
        int position = 0;
        if (!Search(key, position))
        {
            return;
        }
        const int index = m_order.GetAt(position);
        m_keys.RemoveAt(index);
        m_values.RemoveAt(index);
        m_order.RemoveAt(position);
        for (int& entry : m_order)
        {
            entry -= entry > index ? 1 : 0;
        }
    }

    void RemoveAll()
    {
        m_keys.RemoveAll();
        m_values.RemoveAll();
        m_order.RemoveAll();
    }

private:
    /// Finds the place of `key` in the sorted index: its own, or where it belongs.
    bool Search(const K& key, int& position) const
    {
        int low = 0;
        int high = m_order.GetSize() - 1;
        while (low <= high)
        {
            const int middle = low + (high - low) / 2;
            const K& candidate = m_keys.GetAt(m_order.GetAt(middle));
            if (candidate == key)
            {
                position = middle;
                return true;
            }
            if (candidate < key)
            {
                low = middle + 1;
            }
            else
            {
                high = middle - 1;
            }
        }
        position = low;
        return false;
    }

    K m_lastKey;
    Array<K> m_keys;     // in order of insertion
    Array<V> m_values;   // parallel to m_keys
    Array<int> m_order;  // indices into m_keys, sorted by key; Search relies on it
};

}  // namespace zorvex_api
