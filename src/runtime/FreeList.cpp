#include "runtime/FreeList.h"

#include <sys/mman.h>

#include <algorithm>
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
constexpr size_t kDoubling = 256 * 1024;  // chunks of this size and more grow by a sixteenth
constexpr size_t kLargestChunk = 16 * 1024 * 1024;
constexpr size_t kHugePage = 2 * 1024 * 1024;
constexpr size_t kChunkHeader = 16;  // keeps the blocks aligned

std::mutex g_lock;  // guards all pools; taken once per batch
BlockPool* g_pools = nullptr;
size_t g_totalBytes = 0;

/// As much again as there is while that is little, so that few chunks are needed; a sixteenth of it
/// later, so that little is taken that isn't needed.
size_t NextChunkSize(size_t present)
{
    const size_t bytes = present < kDoubling ? present : std::max(kDoubling, present / 16);
    return std::clamp(bytes, kFirstChunk, kLargestChunk);
}

/// A document's records lie all over its chunks: with large pages the processor finds them with
/// fewer looks at the page tables, and the system hands them out in fewer steps.
void AskForHugePages([[maybe_unused]] char* memory, [[maybe_unused]] size_t bytes)
{
#if defined(MADV_HUGEPAGE)
    const uintptr_t begin =
        (reinterpret_cast<uintptr_t>(memory) + kHugePage - 1) & ~(kHugePage - 1);
    const uintptr_t end = (reinterpret_cast<uintptr_t>(memory) + bytes) & ~(kHugePage - 1);
    if (begin < end)
    {
        // No answer is needed: a system without them goes on with small ones.
        static_cast<void>(madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE));
    }
#endif
}

void*& NextOf(void* block)
{
    return *static_cast<void**>(block);
}

}  // namespace

/// Knows the lists that this thread keeps, and hands them back at its end. The end of a session
/// reaches those of all threads, so that nothing of its memory waits in a thread that goes on.
class ThreadBlocks
{
public:
    struct Entry
    {
        BlockPool* pool;
        BlockPool::Local* local;
        Entry* next;
    };

    ThreadBlocks()
    {
        const std::lock_guard<std::mutex> lock(g_lock);
        m_next = s_first;
        if (m_next != nullptr)
        {
            m_next->m_previous = this;
        }
        s_first = this;
    }
    ThreadBlocks(const ThreadBlocks&) = delete;
    ThreadBlocks& operator=(const ThreadBlocks&) = delete;
    ~ThreadBlocks()
    {
        FlushAll();
        Leave();
        while (m_firstEntry != nullptr)
        {
            Entry* const entry = m_firstEntry;
            m_firstEntry = entry->next;
            delete entry;
        }
        s_ended = true;
    }

    void Know(BlockPool& pool, BlockPool::Local& local)
    {
        for (Entry* entry = m_firstEntry; entry != nullptr; entry = entry->next)
        {
            if (entry->local == &local)
            {
                return;
            }
        }
        m_firstEntry = new Entry{&pool, &local, m_firstEntry};
    }

    void FlushAll()
    {
        for (Entry* entry = m_firstEntry; entry != nullptr; entry = entry->next)
        {
            entry->pool->Flush(*entry->local);
        }
    }

    /// Under the pools' lock, while no other thread uses a pool.
    static void ReturnAllOfAllThreads()
    {
        for (ThreadBlocks* thread = s_first; thread != nullptr; thread = thread->m_next)
        {
            for (Entry* entry = thread->m_firstEntry; entry != nullptr; entry = entry->next)
            {
                entry->pool->ReturnAll(*entry->local);
            }
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
    void Leave()
    {
        const std::lock_guard<std::mutex> lock(g_lock);
        (m_previous != nullptr ? m_previous->m_next : s_first) = m_next;
        if (m_next != nullptr)
        {
            m_next->m_previous = m_previous;
        }
    }

    Entry* m_firstEntry = nullptr;
    ThreadBlocks* m_previous = nullptr;
    ThreadBlocks* m_next = nullptr;
    static inline ThreadBlocks* s_first = nullptr;  // of all threads; guarded by the pools' lock
    static inline thread_local bool s_ended = false;
};

/// Adds a chunk of growing size. Its blocks are a row until they are used, so that memory is
/// touched only when it is needed. There must be no row left.
void BlockPool::Grow()
{
    const size_t count = NextChunkSize(m_total * m_blockSize) / m_blockSize + 1;
    const size_t bytes = kChunkHeader + count * m_blockSize;

    auto* const memory = static_cast<char*>(Allocator::allocate(bytes));
    AskForHugePages(memory, bytes);
    m_chunks = ::new (memory) Chunk{m_chunks, bytes};
    m_fresh = memory + kChunkHeader;
    m_freshEnd = m_fresh + count * m_blockSize;
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
    return m_free != nullptr ? TakeListed(local, keep) : TakeFresh(local, keep);
}

/// One block of the list, and with `keep` a batch more for the thread.
void* BlockPool::TakeListed(Local& local, bool keep)
{
    void* const block = m_free;
    m_free = NextOf(block);
    --m_freeCount;
    if (!keep || m_free == nullptr)
    {
        return block;
    }
    // Cut the list behind the last block of the batch.
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

/// One block of the row, and with `keep` a piece of the row for the thread.
void* BlockPool::TakeFresh(Local& local, bool keep)
{
    if (m_fresh == m_freshEnd)
    {
        Grow();
    }
    char* const block = m_fresh;
    size_t count = 1;
    if (keep)
    {
        const size_t left = static_cast<size_t>(m_freshEnd - m_fresh) / m_blockSize;
        count = left < kBatch ? left : kBatch;
        local.fresh = block + m_blockSize;
        local.freshEnd = block + count * m_blockSize;
    }
    m_fresh += count * m_blockSize;
    m_freeCount -= count;
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
    ListFresh(local.fresh, local.freshEnd);
    local.fresh = local.freshEnd = nullptr;
}

/// Puts a thread's piece of a row on the list, so that it is taken in the order of addresses.
void BlockPool::ListFresh(char* begin, const char* end)
{
    const size_t count = static_cast<size_t>(end - begin) / m_blockSize;
    for (size_t i = count; i-- > 0;)
    {
        void* const block = begin + i * m_blockSize;
        NextOf(block) = m_free;
        m_free = block;
    }
    m_freeCount += count;
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
    m_fresh = m_freshEnd = nullptr;
    m_freeCount = 0;
    m_total = 0;
}

void BlockPool::ReleaseUnused()
{
    const std::lock_guard<std::mutex> lock(g_lock);
    ThreadBlocks::ReturnAllOfAllThreads();
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

constinit internal::BlockPool SmallBlocks::s_pools[kClasses] = {
    internal::BlockPool(8),   internal::BlockPool(16),  internal::BlockPool(24),
    internal::BlockPool(32),  internal::BlockPool(40),  internal::BlockPool(48),
    internal::BlockPool(56),  internal::BlockPool(64),  internal::BlockPool(72),
    internal::BlockPool(80),  internal::BlockPool(88),  internal::BlockPool(96),
    internal::BlockPool(104), internal::BlockPool(112), internal::BlockPool(120),
    internal::BlockPool(128)};
thread_local constinit internal::BlockPool::Local SmallBlocks::t_locals[kClasses] = {};

}  // namespace zorvex_api
