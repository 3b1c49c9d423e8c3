#pragma once

/// Free lists of fixed-size blocks over Allocator.

#include <cstddef>

namespace zorvex_api
{

namespace internal
{

/// Under AddressSanitizer blocks come one by one from Allocator, so that it sees their lives.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kFreeListsForward = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kFreeListsForward = true;
#else
inline constexpr bool kFreeListsForward = false;
#endif
#else
inline constexpr bool kFreeListsForward = false;
#endif

void* ForwardedTake(size_t size);
void ForwardedGive(void* block);

/// Blocks of one size, carved from larger ones of Allocator. Each thread keeps a few at hand, so
/// that taking and giving rarely locks. A block may be given back on any thread.
class BlockPool
{
public:
    /// What a thread keeps at hand: a list of blocks that were given back, the next pointer in the
    /// block itself, and a row of blocks that nobody has touched yet.
    struct Local
    {
        void* head = nullptr;
        int count = 0;  // of the list
        char* fresh = nullptr;
        char* freshEnd = nullptr;
    };

    constexpr explicit BlockPool(size_t blockSize) : m_blockSize(blockSize) {}
    BlockPool(const BlockPool&) = delete;
    BlockPool& operator=(const BlockPool&) = delete;

    void* Take(Local& local)
    {
        if constexpr (kFreeListsForward)
        {
            return ForwardedTake(m_blockSize);
        }
        if (void* const block = local.head)
        {
            local.head = *static_cast<void**>(block);
            --local.count;
            return block;
        }
        if (local.fresh != local.freshEnd)
        {
            void* const block = local.fresh;
            local.fresh += m_blockSize;
            return block;
        }
        return Refill(local);
    }
    void Give(Local& local, void* block)
    {
        if constexpr (kFreeListsForward)
        {
            ForwardedGive(block);
            return;
        }
        if ((local.count > 0 || local.freshEnd != nullptr) && local.count < 2 * kBatch)
        {
            *static_cast<void**>(block) = local.head;
            local.head = block;
            ++local.count;
            return;
        }
        GiveBack(local, block);
    }
    void Flush(Local& local);

    /// Hands the memory of all pools without a block in use back to Allocator, with what threads
    /// keep at hand: no other thread may be using a pool.
    static void ReleaseUnused();
    /// Bytes that all pools hold, in use or free.
    static size_t TotalBytes();

private:
    friend class ThreadBlocks;

    static constexpr int kBatch = 64;

    struct Chunk;

    void* Refill(Local& local);
    void GiveBack(Local& local, void* block);
    void Grow();
    void* TakeListed(Local& local, bool keep);
    void* TakeFresh(Local& local, bool keep);
    void ReleaseIfUnused();
    void ReturnAll(Local& local);
    void ListFresh(char* begin, const char* end);

    size_t m_blockSize;
    Chunk* m_chunks = nullptr;  // all below guarded by the pools' lock
    void* m_free = nullptr;
    char* m_fresh = nullptr;  // the row of the newest chunk that is still whole
    char* m_freshEnd = nullptr;
    size_t m_freeCount = 0;  // of the list and the row
    size_t m_total = 0;      // blocks in all chunks
    BlockPool* m_nextPool = nullptr;
    bool m_listed = false;
};

}  // namespace internal

/// Uninitialised blocks of `Size` bytes, aligned for pointers and doubles.
///
///     void* place = FreeList<sizeof(Record)>::Take();
///     FreeList<sizeof(Record)>::Give(place);
template <size_t Size>
class FreeList
{
public:
    static void* Take() { return s_pool.Take(t_local); }
    static void Give(void* block) { s_pool.Give(t_local, block); }

private:
    static constexpr size_t kBlockSize =
        (Size + 7) / 8 * 8 < sizeof(void*) ? sizeof(void*) : (Size + 7) / 8 * 8;
    static inline constinit internal::BlockPool s_pool{kBlockSize};
    static inline constinit thread_local internal::BlockPool::Local t_local{};
};

/// Blocks of small sizes that are known at run time alone, from free lists; larger ones come from
/// Allocator. Whoever gives a block back knows its size.
class SmallBlocks
{
public:
    static void* Take(size_t bytes)
    {
        const size_t index = Index(bytes);
        return index < kClasses ? s_pools[index].Take(t_locals[index])
                                : internal::ForwardedTake(bytes);
    }
    static void Give(void* block, size_t bytes)
    {
        const size_t index = Index(bytes);
        if (index < kClasses)
        {
            s_pools[index].Give(t_locals[index], block);
            return;
        }
        internal::ForwardedGive(block);
    }

private:
    static constexpr size_t kClasses = 16;  // 8 to 128 bytes
    static size_t Index(size_t bytes) { return bytes != 0 ? (bytes - 1) / 8 : 0; }

    static internal::BlockPool s_pools[kClasses];
    static thread_local constinit internal::BlockPool::Local t_locals[kClasses];
};

}  // namespace zorvex_api
