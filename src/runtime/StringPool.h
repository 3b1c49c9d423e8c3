#pragma once

/// The table behind StringData, and the layout of a stored text.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zorvex_api::internal
{

/// Stands in front of every stored text, so that its length is known without counting.
struct OwnedHeader
{
    uint32_t bytes;  // without the terminator
};

/// Stands in front of a pooled text; ends with what OwnedHeader has.
struct PooledHeader
{
    uint32_t hash;
    uint32_t uses;
    uint32_t bytes;
};

/// The number of bytes of a stored text, pooled or owned. Not for null.
inline uint32_t StoredBytes(const void* word)
{
    uint32_t bytes;
    std::memcpy(&bytes, static_cast<const char*>(word) - sizeof(uint32_t), sizeof bytes);
    return bytes;
}

inline std::string_view StoredView(const void* word)
{
    return std::string_view(static_cast<const char*>(word), StoredBytes(word));
}

/// A block for a stored text: header, room for the bytes, two zero bytes as terminator of either
/// form. Returns the address of the text.
void* NewStored(size_t headerSize, size_t bytes);
void FreeStored(size_t headerSize, const void* word);

/// An open-addressing table with linear probing. Removing moves later entries back, so that no
/// marks of freed slots fill it. The hash is seeded: a document can't aim for collisions.
///
/// The table itself comes from the C library, since it can outlive the session; the texts come
/// from Allocator. The caller holds the lock of the pool.
class StringPool
{
public:
    bool Exists() const { return m_slots != nullptr; }
    size_t GetOccupied() const { return m_occupied; }

    const void* Acquire(std::string_view bytes);
    void AddUse(const void* word);
    void Release(const void* word);
    /// Frees the table; it must be empty.
    void Free();

private:
    struct Slot
    {
        char* text;  // null: free
        uint32_t hash;
    };

    void Grow();
    void Put(Slot slot);
    void RemoveAt(size_t place);
    size_t Find(const void* word) const;

    Slot* m_slots = nullptr;
    size_t m_capacity = 0;  // power of 2
    size_t m_occupied = 0;
    uint64_t m_seed = 0;
};

}  // namespace zorvex_api::internal
