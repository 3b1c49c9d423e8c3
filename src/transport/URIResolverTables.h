#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Pointer.h"

namespace zorvex_api
{

/// What a resolver remembers: which handles stand for which pointers, and back.
///
/// Hashed by canonical text and by handle; whatever comes out in a list is ordered by canonical
/// text, and by registration within one pointer. Mutex 0 guards the tables of all resolvers.
struct URIResolverImpl : public Allocator
{
    URIResolverImpl() = default;
    URIResolverImpl(const URIResolverImpl&) = delete;
    URIResolverImpl& operator=(const URIResolverImpl&) = delete;
    ~URIResolverImpl();

    void Register(const Handle& handle, const Pointer& pointer);
    int Find(const Pointer& pointer, Array<Handle>& handles) const;
    int FindPointer(const Handle& handle, Pointer& pointer) const;
    int Replace(const Handle& old, const Handle& replacement);
    /// Takes all handles with this data out that `handle` equals.
    void Remove(const Handle& handle) noexcept;
    /// Takes an object out that dies.
    void RemoveObject(void* object) noexcept;

private:
    /// One pointer and the handles that stand for it, by order of registration.
    struct Entry
    {
        std::u16string text;
        std::u16string absolutePath;
        std::map<std::uint64_t, Handle> handles;
    };
    struct Place
    {
        Entry* entry;
        std::uint64_t order;
    };
    /// One handle, its first pointer and all places where it stands.
    struct Known
    {
        Handle handle;
        Pointer first;
        std::vector<Place> places;
    };
    using KnownByData = std::unordered_multimap<void*, Known>;

    Entry& NeedEntry(const Pointer& pointer);
    KnownByData::iterator FindKnown(const Handle& handle);
    KnownByData::const_iterator FindKnown(const Handle& handle) const;
    KnownByData::iterator NeedKnown(const Handle& handle, const Pointer& pointer);
    void Erase(KnownByData::iterator known) noexcept;
    void EraseHandle(const Place& place) noexcept;

    std::unordered_map<std::u16string, Entry> m_byText;
    // Entries of one absolute path, by canonical text.
    std::unordered_map<std::u16string, std::map<std::u16string, Entry*>> m_byPath;
    KnownByData m_byData;
    std::uint64_t m_nextOrder = 0;
};

}  // namespace zorvex_api
