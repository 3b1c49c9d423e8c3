#include "objectmodel/ClassNameTable.h"

#include <bit>
#include <new>

namespace zorvex_api
{

namespace
{

constexpr std::uint32_t kFirstSlots = 1024;

class Hasher
{
public:
    void Add(TextView text)
    {
        for (const char16_t unit : text)
        {
            m_hash = (m_hash ^ unit) * 0x01000193u;
        }
    }
    std::uint32_t Value() const
    {
        std::uint32_t h = m_hash ^ (m_hash >> 15);
        h *= 0x2c1b3c6du;
        return h ^ (h >> 13);
    }

private:
    std::uint32_t m_hash = 0x811c9dc5u;
};

}  // namespace

void ClassNameKey::Set(TextView newText, ClassDescriptorImpl* newOwner)
{
    text = newText;
    hash = ClassNameQuery(text).hash;
    owner = newOwner;
}

ClassNameQuery::ClassNameQuery(TextView wholeName) : local(wholeName)
{
    Hasher hasher;
    hasher.Add(local);
    hash = hasher.Value();
}

ClassNameQuery::ClassNameQuery(TextView namespaceUri, TextView localName)
    : space(namespaceUri), local(localName)
{
    Hasher hasher;
    if (!space.empty())
    {
        hasher.Add(space);
        hasher.Add(u":");
    }
    hasher.Add(local);
    hash = hasher.Value();
}

bool ClassNameQuery::Equals(TextView text) const
{
    if (space.empty())
    {
        return text == local;
    }
    return text.size() == space.size() + 1 + local.size() && text[space.size()] == u':' &&
           text.ends_with(local) && text.starts_with(space);
}

const ClassNameKey* ClassNameTable::Freed()
{
    static const ClassNameKey freed;
    return &freed;
}

ClassNameTable::Block* ClassNameTable::MakeBlock(std::uint32_t slots)
{
    void* memory =
        Allocator::allocate(sizeof(Block) + sizeof(std::atomic<const ClassNameKey*>) * (slots - 1));
    auto* const block = static_cast<Block*>(memory);
    block->mask = slots - 1;
    for (std::uint32_t i = 0; i < slots; ++i)
    {
        new (&block->slots[i]) std::atomic<const ClassNameKey*>(nullptr);
    }
    return block;
}

void ClassNameTable::Place(Block& block, const ClassNameKey& key)
{
    // Never into a freed slot: classes of one name keep their order.
    std::uint32_t at = key.hash & block.mask;
    while (block.slots[at].load(std::memory_order_relaxed) != nullptr)
    {
        at = (at + 1) & block.mask;
    }
    block.slots[at].store(&key, std::memory_order_release);
}

void ClassNameTable::Insert(const ClassNameKey& key)
{
    const Block* block = m_block.load(std::memory_order_relaxed);
    if (block == nullptr || (m_count + m_freed + 1) * 2 > block->mask + 1)
    {
        Rebuild();
    }
    Place(*m_block.load(std::memory_order_relaxed), key);
    ++m_count;
}

bool ClassNameTable::Remove(const ClassNameKey& key)
{
    Block* block = m_block.load(std::memory_order_relaxed);
    if (block == nullptr)
    {
        return false;
    }
    for (std::uint32_t at = key.hash & block->mask;; at = (at + 1) & block->mask)
    {
        const ClassNameKey* present = block->slots[at].load(std::memory_order_relaxed);
        if (present == nullptr)
        {
            return false;
        }
        if (present == &key)
        {
            block->slots[at].store(Freed(), std::memory_order_release);
            break;
        }
    }
    ++m_freed;
    if (--m_count == 0)
    {
        FreeBlocks();
    }
    return true;
}

void ClassNameTable::Rebuild()
{
    Block* const old = m_block.load(std::memory_order_relaxed);
    const std::uint32_t wanted = std::bit_ceil((m_count + 1) * 4);
    Block* const fresh = MakeBlock(wanted > kFirstSlots ? wanted : kFirstSlots);
    if (old != nullptr)
    {
        // From behind a free slot on, so that the keys of a wrapped run keep their order.
        std::uint32_t start = 0;
        while (old->slots[start].load(std::memory_order_relaxed) != nullptr)
        {
            ++start;
        }
        for (std::uint32_t i = 0; i <= old->mask; ++i)
        {
            const ClassNameKey* key =
                old->slots[(start + i) & old->mask].load(std::memory_order_relaxed);
            if (key != nullptr && key != Freed())
            {
                Place(*fresh, *key);
            }
        }
    }
    m_freed = 0;
    m_block.store(fresh, std::memory_order_release);
    if (old != nullptr && m_readers == Readers::Free)
    {
        m_replaced.push_back(old);
    }
    else
    {
        Allocator::deallocate(old);
    }
}

void ClassNameTable::FreeBlocks()
{
    for (Block* block : m_replaced)
    {
        Allocator::deallocate(block);
    }
    HookedVector<Block*>().swap(m_replaced);
    Allocator::deallocate(m_block.exchange(nullptr, std::memory_order_acq_rel));
    m_freed = 0;
}

ClassDescriptorImpl* ClassNameTable::Find(const ClassNameQuery& query) const
{
    ClassDescriptorImpl* found = nullptr;
    ForEach(query,
            [&](ClassDescriptorImpl& owner)
            {
                found = &owner;
                return true;
            });
    return found;
}

}  // namespace zorvex_api
