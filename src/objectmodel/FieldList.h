#pragma once

#include <atomic>
#include <cstdint>
#include <iterator>
#include <span>

#include "objectmodel/HookedVector.h"
#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

class FieldDescriptor;

using FieldSpan = std::span<FieldDescriptor* const>;

/// Fields that one class declares, in an order. Grows in place while others read it.
///
/// Changed under the registry's write lock. A change that needs a new block gives the old one to
/// the caller, who keeps it as long as readers may be in it. Doesn't own the fields.
class FieldList
{
public:
    FieldList() = default;
    ~FieldList() { Allocator::deallocate(m_block.load(std::memory_order_relaxed)); }
    FieldList(const FieldList&) = delete;
    FieldList& operator=(const FieldList&) = delete;

    FieldSpan Fields() const
    {
        const Block* block = m_block.load(std::memory_order_acquire);
        return block != nullptr
                   ? FieldSpan(block->items, block->count.load(std::memory_order_acquire))
                   : FieldSpan();
    }
    /// Gives the block that was replaced, null if none was.
    [[nodiscard]] void* Append(FieldDescriptor* field);
    [[nodiscard]] void* Replace(FieldSpan fields);

private:
    struct Block
    {
        std::uint32_t capacity;
        std::atomic<std::uint32_t> count;
        FieldDescriptor* items[1];
    };

    static Block* MakeBlock(FieldSpan fields);

    std::atomic<Block*> m_block{nullptr};  // owned
};

/// The fields of a class and its bases, one level after the other. As good as the layout it is
/// from.
class FieldRange
{
public:
    class Iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = FieldDescriptor*;
        using difference_type = std::ptrdiff_t;
        using pointer = FieldDescriptor* const*;
        using reference = FieldDescriptor* const&;

        Iterator() = default;
        Iterator(const FieldSpan* level, const FieldSpan* end) : m_level(level), m_end(end)
        {
            SkipEmpty();
        }
        reference operator*() const { return (*m_level)[m_at]; }
        Iterator& operator++()
        {
            if (++m_at == m_level->size())
            {
                ++m_level;
                m_at = 0;
                SkipEmpty();
            }
            return *this;
        }
        Iterator operator++(int)
        {
            Iterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const Iterator& a, const Iterator& b)
        {
            return a.m_level == b.m_level && a.m_at == b.m_at;
        }

    private:
        void SkipEmpty()
        {
            while (m_level != m_end && m_level->empty())
            {
                ++m_level;
            }
        }

        const FieldSpan* m_level = nullptr;
        const FieldSpan* m_end = nullptr;
        std::size_t m_at = 0;
    };
    using iterator = Iterator;
    using const_iterator = Iterator;
    using value_type = FieldDescriptor*;

    FieldRange() = default;
    FieldRange(std::span<const FieldSpan> levels, std::size_t size) : m_levels(levels), m_size(size)
    {
    }

    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    /// Costs a step for each level.
    FieldDescriptor* operator[](std::size_t index) const
    {
        const FieldSpan* level = m_levels.data();
        while (index >= level->size())
        {
            index -= level->size();
            ++level;
        }
        return (*level)[index];
    }
    Iterator begin() const { return {m_levels.data(), m_levels.data() + m_levels.size()}; }
    Iterator end() const
    {
        return {m_levels.data() + m_levels.size(), m_levels.data() + m_levels.size()};
    }

private:
    std::span<const FieldSpan> m_levels;
    std::size_t m_size = 0;
};

}  // namespace zorvex_api
