#include "objectmodel/FieldList.h"

#include <algorithm>
#include <new>

namespace zorvex_api
{

FieldList::Block* FieldList::MakeBlock(FieldSpan fields)
{
    const size_t capacity = std::max<size_t>(4, fields.size() + fields.size() / 2);
    void* memory = Allocator::allocate(sizeof(Block) + (capacity - 1) * sizeof(FieldDescriptor*));
    auto* const block = new (memory) Block;
    block->capacity = static_cast<std::uint32_t>(capacity);
    std::copy(fields.begin(), fields.end(), block->items);
    block->count.store(static_cast<std::uint32_t>(fields.size()), std::memory_order_relaxed);
    return block;
}

void* FieldList::Replace(FieldSpan fields)
{
    return m_block.exchange(MakeBlock(fields), std::memory_order_acq_rel);
}

void* FieldList::Append(FieldDescriptor* field)
{
    Block* block = m_block.load(std::memory_order_relaxed);
    const std::uint32_t count = block != nullptr ? block->count.load(std::memory_order_relaxed) : 0;
    void* replaced = nullptr;
    if (block == nullptr || count == block->capacity)
    {
        replaced = Replace(Fields());
        block = m_block.load(std::memory_order_relaxed);
    }
    block->items[count] = field;
    block->count.store(count + 1, std::memory_order_release);
    return replaced;
}

}  // namespace zorvex_api
