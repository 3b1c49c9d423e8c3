#include "runtime/HookBlocks.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>

namespace zorvex_api::internal
{

namespace
{

struct Entry
{
    void* block;  // null: free
    DeAllocatorBase* owner;
};

/// An open-addressing table with linear probing; removing moves later entries back, so that there
/// are no marks for freed places.
class Shard
{
public:
    void Add(uint64_t hash, void* block, DeAllocatorBase* owner)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_count * 2 >= m_capacity)
        {
            Grow();
        }
        Put(hash, Entry{block, owner});
        ++m_count;
    }

    DeAllocatorBase* Remove(uint64_t hash, void* block);

private:
    void Put(uint64_t hash, Entry entry)
    {
        size_t place = hash & (m_capacity - 1);
        while (m_entries[place].block != nullptr)
        {
            place = (place + 1) & (m_capacity - 1);
        }
        m_entries[place] = entry;
    }

    void Grow();

    std::mutex m_mutex;
    Entry* m_entries = nullptr;  // from the C library: the hooks must not see it
    size_t m_capacity = 0;       // power of 2
    size_t m_count = 0;
};

uint64_t Hash(const void* block)
{
    uint64_t value = reinterpret_cast<uintptr_t>(block) >> 4;
    value *= 0x9e3779b97f4a7c15ULL;
    return value ^ (value >> 32);
}

constexpr int kShardBits = 6;
Shard g_shards[1 << kShardBits];
std::atomic<bool> g_anyEver{false};
thread_local int t_unhooked = 0;

Shard& ShardOf(uint64_t hash)
{
    return g_shards[hash >> (64 - kShardBits)];
}

void Shard::Grow()
{
    const size_t oldCapacity = m_capacity;
    Entry* const old = m_entries;
    const size_t capacity = oldCapacity == 0 ? 256 : oldCapacity * 2;
    auto* entries = static_cast<Entry*>(std::calloc(capacity, sizeof(Entry)));
    if (entries == nullptr)
    {
        throw std::bad_alloc();
    }
    m_entries = entries;
    m_capacity = capacity;
    for (size_t i = 0; i < oldCapacity; ++i)
    {
        if (old[i].block != nullptr)
        {
            Put(Hash(old[i].block), old[i]);
        }
    }
    std::free(old);
}

DeAllocatorBase* Shard::Remove(uint64_t hash, void* block)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_capacity == 0)
    {
        return nullptr;
    }
    const size_t mask = m_capacity - 1;
    size_t place = hash & mask;
    while (m_entries[place].block != block)
    {
        if (m_entries[place].block == nullptr)
        {
            return nullptr;
        }
        place = (place + 1) & mask;
    }
    DeAllocatorBase* const owner = m_entries[place].owner;
    size_t hole = place;
    for (size_t next = (hole + 1) & mask; m_entries[next].block != nullptr;
         next = (next + 1) & mask)
    {
        const size_t home = Hash(m_entries[next].block) & mask;
        if (((next - home) & mask) >= ((next - hole) & mask))
        {
            m_entries[hole] = m_entries[next];
            hole = next;
        }
    }
    m_entries[hole] = Entry{nullptr, nullptr};
    --m_count;
    return owner;
}

}  // namespace

void HookBlocks::Add(void* block, DeAllocatorBase* owner)
{
    g_anyEver.store(true, std::memory_order_relaxed);
    const uint64_t hash = Hash(block);
    ShardOf(hash).Add(hash, block, owner);
}

DeAllocatorBase* HookBlocks::Remove(void* block)
{
    const uint64_t hash = Hash(block);
    return ShardOf(hash).Remove(hash, block);
}

bool HookBlocks::AnyEver()
{
    return g_anyEver.load(std::memory_order_relaxed);
}

UnhookedScope::UnhookedScope()
{
    ++t_unhooked;
}
UnhookedScope::~UnhookedScope()
{
    --t_unhooked;
}
bool UnhookedScope::IsActive()
{
    return t_unhooked != 0;
}

}  // namespace zorvex_api::internal
