#pragma once

#include <atomic>
#include <cstdint>

#include "objectmodel/HookedVector.h"
#include "runtime/Text.h"
#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

class ClassDescriptorImpl;

/// Entry of a class in a name table: part of the class, so it lives as long.
struct ClassNameKey
{
    TextView text;  // owned by the class
    std::uint32_t hash = 0;
    ClassDescriptorImpl* owner = nullptr;

    void Set(TextView newText, ClassDescriptorImpl* newOwner);
};

/// A name, given whole or as a namespace and a local name with ":" between them, with its hash.
struct ClassNameQuery
{
    explicit ClassNameQuery(TextView wholeName);
    /// An empty namespace: just the local name.
    ClassNameQuery(TextView namespaceUri, TextView localName);

    bool Equals(TextView text) const;

    TextView space;
    TextView local;
    std::uint32_t hash;
};

/// Classes by a name: open addressing over keys that belong to the classes.
///
/// Changed under the registry's write lock. Rebuilt from the live keys when it gets full, the marks
/// that removed keys leave included. Can be read without a lock: then the blocks that a rebuild
/// replaced stay until the table is empty, since a reader may still be in one.
class ClassNameTable
{
public:
    enum class Readers
    {
        Free,
        Locked
    };
    explicit ClassNameTable(Readers readers) : m_readers(readers) {}
    ClassNameTable(const ClassNameTable&) = delete;
    ClassNameTable& operator=(const ClassNameTable&) = delete;

    void Insert(const ClassNameKey& key);
    /// False when the key isn't there.
    bool Remove(const ClassNameKey& key);
    std::uint32_t Count() const { return m_count; }

    ClassDescriptorImpl* Find(const ClassNameQuery& query) const;
    /// Calls `visit(class)` for each class of the name, in the order of entering, until it gives
    /// true.
    template <class Visit>
    void ForEach(const ClassNameQuery& query, Visit visit) const
    {
        const Block* block = m_block.load(std::memory_order_acquire);
        if (block == nullptr)
        {
            return;
        }
        for (std::uint32_t at = query.hash & block->mask;; at = (at + 1) & block->mask)
        {
            const ClassNameKey* key = block->slots[at].load(std::memory_order_acquire);
            if (key == nullptr)
            {
                return;
            }
            if (key != Freed() && key->hash == query.hash && query.Equals(key->text) &&
                visit(*key->owner))
            {
                return;
            }
        }
    }

private:
    struct Block
    {
        std::uint32_t mask;
        std::atomic<const ClassNameKey*> slots[1];
    };

    static const ClassNameKey* Freed();
    static Block* MakeBlock(std::uint32_t slots);
    static void Place(Block& block, const ClassNameKey& key);
    void Rebuild();
    void FreeBlocks();

    const Readers m_readers;
    std::atomic<Block*> m_block{nullptr};  // owned
    HookedVector<Block*> m_replaced;       // owned
    std::uint32_t m_count = 0;
    std::uint32_t m_freed = 0;
};

}  // namespace zorvex_api
