#include "objectmodel/ElementCache.h"

#include "objectmodel/ClassRegistry.h"
#include "objectmodel/NameMatch.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

namespace
{
constexpr std::uint32_t kSlots = 128;
constexpr std::uint32_t kProbes = 8;
}  // namespace

/// Immutable once published. A stale one is replaced, and kept for readers that still look at it.
struct ElementCache::Slot : public Allocator
{
    std::uint32_t hash;
    std::uint32_t names;  // names generation in which it was found
    String name;
    String namespaceUri;
    Entry entry;
    Slot* replaced;
};

struct ElementCache::Table : public Allocator
{
    std::atomic<Slot*> slots[kSlots] = {};
    std::atomic<std::uint32_t> replacements{0};
};

ElementCache::~ElementCache()
{
    Table* table = m_table.load(std::memory_order_relaxed);
    if (table == nullptr)
    {
        return;
    }
    for (std::atomic<Slot*>& place : table->slots)
    {
        Slot* slot = place.load(std::memory_order_relaxed);
        while (slot != nullptr)
        {
            Slot* const next = slot->replaced;
            delete slot;
            slot = next;
        }
    }
    delete table;
}

bool ElementCache::Find(TextView name, TextView namespaceUri, Entry& out) const
{
    const Table* table = m_table.load(std::memory_order_acquire);
    if (table == nullptr)
    {
        return false;
    }
    const std::uint32_t hash = name_match::Hash(name);
    for (std::uint32_t probe = 0; probe < kProbes; ++probe)
    {
        const Slot* slot = table->slots[(hash + probe) % kSlots].load(std::memory_order_acquire);
        if (slot == nullptr)
        {
            return false;
        }
        if (slot->hash == hash && View(slot->name) == name &&
            View(slot->namespaceUri) == namespaceUri)
        {
            out = slot->entry;
            return slot->names == ClassRegistry::NamesGeneration();
        }
    }
    return false;
}

void ElementCache::Remember(TextView name, TextView namespaceUri, const Entry& entry)
{
    // Each change of the set of classes makes entries stale; a document that keeps changing it may
    // not fill memory with the replaced ones.
    constexpr std::uint32_t kMaxReplacements = 1024;

    Table* table = m_table.load(std::memory_order_acquire);
    if (table == nullptr)
    {
        Table* const fresh = new Table;
        if (m_table.compare_exchange_strong(table, fresh, std::memory_order_acq_rel))
        {
            table = fresh;
        }
        else
        {
            delete fresh;
        }
    }

    const std::uint32_t hash = name_match::Hash(name);
    const std::uint32_t names = ClassRegistry::NamesGeneration();
    for (std::uint32_t probe = 0; probe < kProbes; ++probe)
    {
        std::atomic<Slot*>& place = table->slots[(hash + probe) % kSlots];
        Slot* present = place.load(std::memory_order_acquire);
        const bool same = present != nullptr && present->hash == hash &&
                          View(present->name) == name &&
                          View(present->namespaceUri) == namespaceUri;
        if (present != nullptr && !same)
        {
            continue;
        }
        if (same &&
            (present->names == names ||
             table->replacements.fetch_add(1, std::memory_order_relaxed) >= kMaxReplacements))
        {
            return;
        }
        Slot* const fresh = new Slot;
        fresh->hash = hash;
        fresh->names = names;
        fresh->name = ToString(name);
        fresh->namespaceUri = ToString(namespaceUri);
        fresh->entry = entry;
        fresh->replaced = present;
        if (!place.compare_exchange_strong(present, fresh, std::memory_order_acq_rel))
        {
            delete fresh;  // another thread was quicker; the next look-up tries again
        }
        return;
    }
}

}  // namespace zorvex_api
