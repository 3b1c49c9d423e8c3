#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

/// A growing array of values.
///
/// Every slot up to the capacity is a live T: value-initialised when the buffer is made, and left
/// as it is when the size shrinks, so that growing over it again shows the old value. Arguments
/// may refer to elements of the array itself.
template <class T>
class ZORVEX_API Array : public Allocator
{
    static_assert(alignof(T) <= alignof(std::max_align_t), "the allocator aligns to max_align_t");

public:
    Array() noexcept : m_data(nullptr), m_size(0), m_capacity(0) {}
    /// An empty array with room for `capacity` elements.
    explicit Array(int capacity) : Array()
    {
        if (capacity > 0)
        {
            Reallocate(capacity);
        }
    }
    Array(int count, const T* items) : Array() { AppendItems(count, items); }
    Array(const Array& other) : Array() { AppendItems(other.m_size, other.m_data); }
    Array(Array&& other) noexcept
        : m_data(other.m_data), m_size(other.m_size), m_capacity(other.m_capacity)
    {
        other.m_data = nullptr;
        other.m_size = 0;
        other.m_capacity = 0;
    }

    virtual ~Array() { Free(m_data, m_capacity); }

    /// Appends `count` elements. Nothing happens for a count below 1 or null `items`.
    /// Returns the new size.
    virtual int Add(int count, const T* items)
    {
        AppendItems(count, items);
        return m_size;
    }

    /// Appends one element. Returns the new size.
    virtual int Add(const T& item)
    {
        if (m_size < m_capacity)
        {
            m_data[m_size] = item;
            return ++m_size;
        }
        T copy(item);  // `item` may stand in the buffer that goes
        SetSizeEx(m_size + 1, 1);
        m_data[m_size - 1] = std::move(copy);
        return m_size;
    }

    /// An element, with no range check.
    virtual T& operator[](int index) { return m_data[index]; }
    virtual const T& operator[](int index) const { return m_data[index]; }
    virtual const T& GetAt(int index) const { return m_data[index]; }
    /// Stores a copy into a slot, with no range check.
    virtual void SetAt(int index, const T& item) { m_data[index] = item; }

    const Array& operator=(const Array& other)
    {
        if (this != &other)
        {
            RemoveAll();
            AppendItems(other.m_size, other.m_data);
        }
        return *this;
    }

    const Array& operator=(Array&& other) noexcept
    {
        if (this != &other)
        {
            Free(m_data, m_capacity);
            m_data = std::exchange(other.m_data, nullptr);
            m_size = std::exchange(other.m_size, 0);
            m_capacity = std::exchange(other.m_capacity, 0);
        }
        return *this;
    }

    int GetSize() const { return m_size; }
    /// The capacity.
    int GetMaxSize() const { return m_capacity; }
    T* GetData() { return m_data; }
    const T* GetData() const { return m_data; }

    /// Puts an element before `index`; the size as index appends. Ignored for any other index
    /// outside the array.
    void InsertAt(int index, const T& item)
    {
        if (index < 0 || index > m_size)
        {
            return;
        }
        T copy(item);  // `item` may stand in the buffer that goes
        SetSizeEx(m_size + 1, 1);
        for (int i = m_size - 1; i > index; --i)
        {
            m_data[i] = std::move(m_data[i - 1]);
        }
        m_data[index] = std::move(copy);
    }

    /// Takes an element out; later ones move down. Ignored for an index outside the array.
    void RemoveAt(int index)
    {
        if (index < 0 || index >= m_size)
        {
            return;
        }
        --m_size;
        for (int i = index; i < m_size; ++i)
        {
            m_data[i] = std::move(m_data[i + 1]);
        }
        m_data[m_size] = T();
    }

    /// Resets all elements and sets the size to 0. The capacity stays.
    void RemoveAll()
    {
        for (int i = 0; i < m_size; ++i)
        {
            m_data[i] = T();
        }
        m_size = 0;
    }

    /// Index of the first equal element, or -1.
    int Lookup(const T& item) const
    {
        for (int i = 0; i < m_size; ++i)
        {
            if (m_data[i] == item)
            {
                return i;
            }
        }
        return -1;
    }

    /// Reverses the order of the elements.
    void Reverse()
    {
        for (int low = 0, high = m_size - 1; low < high; ++low, --high)
        {
            T held(std::move(m_data[low]));
            m_data[low] = std::move(m_data[high]);
            m_data[high] = std::move(held);
        }
    }

    void SetSize(int size) { SetSizeEx(size, 1); }

    /// Sets the size. Past the capacity the buffer grows: to `size` itself when `grow` is 0 or
    /// `size` is 1, else to twice `size`. A negative size does nothing.
    void SetSizeEx(int size, int grow)
    {
        if (size < 0 || size == m_size)
        {
            return;
        }
        if (size > m_capacity)
        {
            const bool exact = grow == 0 || size == 1 || size > kMaxDoubled;
            Reallocate(exact ? size : 2 * size);
        }
        m_size = size;
    }

    T* begin() { return m_data; }
    T* end() { return m_data + m_size; }
    const T* begin() const { return m_data; }
    const T* end() const { return m_data + m_size; }

private:
    static constexpr int kMaxDoubled = 0x3fffffff;  // twice as much still is an int

    void AppendItems(int count, const T* items)
    {
        if (count < 1 || items == nullptr)
        {
            return;
        }
        if (items >= m_data && items < m_data + m_capacity)
        {
            Array copy(count);  // own elements: keep them while the buffer changes
            copy.AppendItems(count, items);
            AppendItems(count, copy.m_data);
            return;
        }
        const int first = m_size;
        SetSizeEx(m_size + count, 1);
        for (int i = 0; i < count; ++i)
        {
            m_data[first + i] = items[i];
        }
    }

    void Reallocate(int capacity)
    {
        T* data = Make(capacity);
        for (int i = 0; i < m_size; ++i)
        {
            data[i] = std::move(m_data[i]);
        }
        Free(m_data, m_capacity);
        m_data = data;
        m_capacity = capacity;
    }

    static T* Make(int capacity)
    {
        T* data = static_cast<T*>(Allocator::allocate(sizeof(T) * static_cast<size_t>(capacity)));
        int made = 0;
        try
        {
            for (; made < capacity; ++made)
            {
                ::new (static_cast<void*>(data + made)) T();
            }
        }
        catch (...)
        {
            Free(data, made);
            throw;
        }
        return data;
    }

    static void Free(T* data, int count)
    {
        if (data == nullptr)
        {
            return;
        }
        if (!std::is_trivially_destructible<T>::value)
        {
            for (int i = 0; i < count; ++i)
            {
                data[i].~T();
            }
        }
        Allocator::deallocate(data);
    }

    T* m_data;  // owned; m_capacity live elements
    int m_size;
    int m_capacity;
};

}  // namespace zorvex_api
