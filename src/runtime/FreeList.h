#pragma once

/// Free lists of fixed-size blocks over Allocator.

#include <cstddef>

namespace zorvex_api
{

namespace internal
{

/// Blocks of one size, carved from larger ones of Allocator. Each thread keeps a few at hand, so
/// that taking and giving rarely locks. A block may be given back on any thread.
class BlockPool
{
public:
    /// One list of free blocks of a thread. The next pointer stands in the block itself.
    struct Local
    {
        void* head = nullptr;
        int count = 0;
    };

    constexpr explicit BlockPool(size_t blockSize) : m_blockSize(blockSize) {}
    BlockPool(const BlockPool&) = delete;
    BlockPool& operator=(const BlockPool&) = delete;

    void* Refill(Local& local);
    void GiveBack(Local& local, void* block);
    void Flush(Local& local);

    /// Hands the memory of all pools without a block in use back to Allocator. Blocks that this
    /// thread keeps at hand count as free, those of other threads as in use.
    static void ReleaseUnused();
    /// Bytes that all pools hold, in use or free.
    static size_t TotalBytes();

    static constexpr int kBatch = 64;

private:
    struct Chunk;

    void Grow();
    void ReleaseIfUnused();
    void ReturnAll(Local& local);

    size_t m_blockSize;
    Chunk* m_chunks = nullptr;  // all below guarded by the pools' lock
    void* m_free = nullptr;
    size_t m_freeCount = 0;
    size_t m_total = 0;  // blocks in all chunks
    BlockPool* m_nextPool = nullptr;
    bool m_listed = false;
};

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

}  // namespace internal

/// Uninitialised blocks of `Size` bytes, aligned for pointers and doubles.
///
///     void* place = FreeList<sizeof(Record)>::Take();
///     FreeList<sizeof(Record)>::Give(place);
template <size_t Size>
class FreeList
{
public:
    static void* Take()
    {
        if constexpr (internal::kFreeListsForward)
        {
            return internal::ForwardedTake(kBlockSize);
        }
        internal::BlockPool::Local& local = t_local;
        if (local.head == nullptr)
        {
            return s_pool.Refill(local);
        }
        void* block = local.head;
        local.head = *static_cast<void**>(block);
        --local.count;
        return block;
    }

    static void Give(void* block)
    {
        if constexpr (internal::kFreeListsForward)
        {
            internal::ForwardedGive(block);
            return;
        }
        internal::BlockPool::Local& local = t_local;
        if (local.count > 0 && local.count < 2 * internal::BlockPool::kBatch)
        {
            *static_cast<void**>(block) = local.head;
            local.head = block;
            ++local.count;
            return;
        }
        s_pool.GiveBack(local, block);
    }

private:
    static constexpr size_t kBlockSize =
        (Size + 7) / 8 * 8 < sizeof(void*) ? sizeof(void*) : (Size + 7) / 8 * 8;
    static inline constinit internal::BlockPool s_pool{kBlockSize};
    static inline constinit thread_local internal::BlockPool::Local t_local{};
};

}  // namespace zorvex_api
