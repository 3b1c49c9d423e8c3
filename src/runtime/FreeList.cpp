#include "runtime/FreeList.h"

#include <cstdint>
#include <mutex>
#include <new>

#include "runtime/SessionState.h"
#include "zorvex_api/Allocator.h"

namespace zorvex_api
{
namespace internal
{

/// A piece of memory of Allocator; the blocks follow the header.
struct BlockPool::Chunk
{
    Chunk* next;
    size_t bytes;
};

namespace
{

constexpr size_t kFirstChunk = 4 * 1024;
constexpr size_t kLargestChunk = 256 * 1024;
constexpr size_t kChunkHeader = 16;  // keeps the blocks aligned

std::mutex g_lock;  // guards all pools; taken once per batch
BlockPool* g_pools = nullptr;
size_t g_totalBytes = 0;

void*& NextOf(void* block)
{
    return *static_cast<void**>(block);
}

}  // namespace

/// Knows the lists that this thread keeps, and hands them back at its end.
class ThreadBlocks
{
public:
    struct Entry
    {
        BlockPool* pool;
        BlockPool::Local* local;
        Entry* next;
    };

    ~ThreadBlocks()
    {
        FlushAll();
        while (m_first != nullptr)
        {
            Entry* const entry = m_first;
            m_first = entry->next;
            delete entry;
        }
        s_ended = true;
    }

    void Know(BlockPool& pool, BlockPool::Local& local)
    {
        for (Entry* entry = m_first; entry != nullptr; entry = entry->next)
        {
            if (entry->local == &local)
            {
                return;
            }
        }
        m_first = new Entry{&pool, &local, m_first};
    }

    void FlushAll()
    {
        for (Entry* entry = m_first; entry != nullptr; entry = entry->next)
        {
            entry->pool->Flush(*entry->local);
        }
    }

    static ThreadBlocks& OfThread()
    {
        static thread_local ThreadBlocks blocks;
        return blocks;
    }

    /// True once this thread's lists have been handed back: nothing may be kept any more.
    static bool Ended() { return s_ended; }

private:
    Entry* m_first = nullptr;
    static inline thread_local bool s_ended = false;
};

/// Adds a chunk of growing size to the free blocks.
void BlockPool::Grow()
{
    size_t bytes = m_total * m_blockSize;  // as much again as there is
    bytes = bytes < kFirstChunk ? kFirstChunk : bytes;
    bytes = bytes > kLargestChunk ? kLargestChunk : bytes;
    const size_t count = bytes / m_blockSize != 0 ? bytes / m_blockSize : 1;
    bytes = kChunkHeader + count * m_blockSize;

    auto* const memory = static_cast<char*>(Allocator::allocate(bytes));
    m_chunks = ::new (memory) Chunk{m_chunks, bytes};
    for (size_t i = count; i-- > 0;)  // so that blocks are taken in the order of addresses
    {
        void* const block = memory + kChunkHeader + i * m_blockSize;
        NextOf(block) = m_free;
        m_free = block;
    }
    m_freeCount += count;
    m_total += count;
    g_totalBytes += bytes;
    if (!m_listed)
    {
        m_listed = true;
        m_nextPool = g_pools;
        g_pools = this;
    }
}

void* BlockPool::Refill(Local& local)
{
    const bool keep = SessionState::Active() && !ThreadBlocks::Ended();
    if (keep)
    {
        ThreadBlocks::OfThread().Know(*this, local);
    }
    const std::lock_guard<std::mutex> lock(g_lock);
    if (m_free == nullptr)
    {
        Grow();
    }
    void* const block = m_free;
    m_free = NextOf(block);
    --m_freeCount;
    if (!keep || m_free == nullptr)
    {
        return block;
    }
    // A batch for this thread: cut the list behind its last block.
    local.head = m_free;
    void* last = m_free;
    int count = 1;
    while (count < kBatch && NextOf(last) != nullptr)
    {
        last = NextOf(last);
        ++count;
    }
    m_free = NextOf(last);
    NextOf(last) = nullptr;
    local.count = count;
    m_freeCount -= static_cast<size_t>(count);
    return block;
}

void BlockPool::GiveBack(Local& local, void* block)
{
    if (!SessionState::Active() || ThreadBlocks::Ended())
    {
        // Nobody will clean up after this: hand everything back at once.
        NextOf(block) = local.head;
        local.head = block;
        ++local.count;
        Flush(local);
        return;
    }
    ThreadBlocks::OfThread().Know(*this, local);
    if (local.count >= 2 * kBatch)
    {
        Flush(local);
    }
    NextOf(block) = local.head;
    local.head = block;
    ++local.count;
}

void BlockPool::Flush(Local& local)
{
    const std::lock_guard<std::mutex> lock(g_lock);
    ReturnAll(local);
    if (!SessionState::Active())
    {
        ReleaseIfUnused();
    }
}

void BlockPool::ReturnAll(Local& local)
{
    while (local.head != nullptr)
    {
        void* const block = local.head;
        local.head = NextOf(block);
        NextOf(block) = m_free;
        m_free = block;
        ++m_freeCount;
    }
    local.count = 0;
}

void BlockPool::ReleaseIfUnused()
{
    if (m_freeCount != m_total)
    {
        return;
    }
    while (m_chunks != nullptr)
    {
        Chunk* const chunk = m_chunks;
        m_chunks = chunk->next;
        g_totalBytes -= chunk->bytes;
        Allocator::deallocate(chunk);
    }
    m_free = nullptr;
    m_freeCount = 0;
    m_total = 0;
}

void BlockPool::ReleaseUnused()
{
    if (!ThreadBlocks::Ended())
    {
        ThreadBlocks::OfThread().FlushAll();
    }
    const std::lock_guard<std::mutex> lock(g_lock);
    for (BlockPool* pool = g_pools; pool != nullptr; pool = pool->m_nextPool)
    {
        pool->ReleaseIfUnused();
    }
}

size_t BlockPool::TotalBytes()
{
    const std::lock_guard<std::mutex> lock(g_lock);
    return g_totalBytes;
}

void* ForwardedTake(size_t size)
{
    return Allocator::allocate(size);
}
void ForwardedGive(void* block)
{
    Allocator::deallocate(block);
}

}  // namespace internal
}  // namespace zorvex_api
