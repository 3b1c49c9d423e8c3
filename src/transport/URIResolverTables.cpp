#include "transport/URIResolverTables.h"

#include <algorithm>

#include "objectmodel/ClassData.h"
#include "runtime/MutexLock.h"
#include "runtime/Text.h"
#include "transport/URIResolverRegistry.h"

namespace zorvex_api
{

namespace
{

/// Which resolvers know an object, so that its end costs what it is registered for. Guarded by
/// mutex 0.
using Holders = std::unordered_multimap<void*, URIResolverImpl*>;

Holders& AllHolders()
{
    static auto* const holders = new Holders;  // resolvers may end after static objects
    return *holders;
}

void AddHolder(void* data, URIResolverImpl* tables)
{
    AllHolders().emplace(data, tables);
}

void RemoveHolder(void* data, URIResolverImpl* tables) noexcept
{
    const auto [first, last] = AllHolders().equal_range(data);
    const auto found = std::find_if(
        first, last, [tables](const Holders::value_type& entry) { return entry.second == tables; });
    if (found != last)
    {
        AllHolders().erase(found);
    }
}

/// Lets the end of the object know that resolvers have to be told.
void MarkRegistered(const Handle& handle)
{
    if (Object* object = handle.GetObject())
    {
        ClassData::Of(object)->stateFlags |= ClassData::kRegistered;
    }
}

}  // namespace

URIResolverImpl::~URIResolverImpl()
{
    const MutexLock lock(kMutexResolver);
    for (const auto& known : m_byData)
    {
        RemoveHolder(known.first, this);
    }
}

void URIResolverImpl::Register(const Handle& handle, const Pointer& pointer)
{
    const MutexLock lock(kMutexResolver);
    Known& known = NeedKnown(handle, pointer)->second;
    Entry& entry = NeedEntry(pointer);
    const bool present =
        std::any_of(known.places.begin(), known.places.end(),
                    [&entry](const Place& place) { return place.entry == &entry; });
    if (!present)
    {
        known.places.push_back({&entry, m_nextOrder});
        entry.handles.emplace(m_nextOrder++, handle);
    }
}

int URIResolverImpl::Find(const Pointer& pointer, Array<Handle>& handles) const
{
    const MutexLock lock(kMutexResolver);
    handles.RemoveAll();
    if (pointer.GetAdapterCount() > 0)
    {
        const auto found = m_byText.find(std::u16string(View(pointer.GetString())));
        if (found == m_byText.end())
        {
            return 0;
        }
        const bool all = pointer.GetFormat() == u"QB";
        for (const auto& [order, handle] : found->second.handles)
        {
            handles.Add(handle);
            if (!all)
            {
                break;
            }
        }
        return 1;
    }
    const auto path = m_byPath.find(std::u16string(View(pointer.GetAbsolutePath())));
    if (path != m_byPath.end())
    {
        for (const auto& [text, entry] : path->second)
        {
            for (const auto& [order, handle] : entry->handles)
            {
                handles.Add(handle);
            }
        }
    }
    return 1;
}

int URIResolverImpl::FindPointer(const Handle& handle, Pointer& pointer) const
{
    const MutexLock lock(kMutexResolver);
    const auto known = FindKnown(handle);
    if (known == m_byData.end())
    {
        return 0;
    }
    pointer = known->second.first;
    return 1;
}

int URIResolverImpl::Replace(const Handle& old, const Handle& replacement)
{
    const MutexLock lock(kMutexResolver);
    const auto known = FindKnown(old);
    if (known == m_byData.end() || old == replacement)
    {
        return 0;
    }
    Known& target = NeedKnown(replacement, known->second.first)->second;
    // The new entry may have moved the table; what it holds stays in place.
    const auto source = FindKnown(old);
    for (const Place& place : source->second.places)
    {
        const bool present =
            std::any_of(target.places.begin(), target.places.end(),
                        [&place](const Place& other) { return other.entry == place.entry; });
        if (present)
        {
            EraseHandle(place);
        }
        else
        {
            place.entry->handles.at(place.order) = replacement;
            target.places.push_back(place);
        }
    }
    source->second.places.clear();
    Erase(source);
    return 1;
}

void URIResolverImpl::Remove(const Handle& handle) noexcept
{
    const MutexLock lock(kMutexResolver);
    const auto known = FindKnown(handle);
    if (known != m_byData.end())
    {
        Erase(known);
    }
}

void URIResolverImpl::RemoveObject(void* object) noexcept
{
    for (auto known = m_byData.find(object); known != m_byData.end(); known = m_byData.find(object))
    {
        Erase(known);
    }
}

URIResolverImpl::Entry& URIResolverImpl::NeedEntry(const Pointer& pointer)
{
    const std::u16string text(View(pointer.GetString()));
    const auto [position, added] = m_byText.try_emplace(text);
    Entry& entry = position->second;
    if (added)
    {
        entry.text = text;
        entry.absolutePath = View(pointer.GetAbsolutePath());
        m_byPath[entry.absolutePath].emplace(text, &entry);
    }
    return entry;
}

URIResolverImpl::KnownByData::iterator URIResolverImpl::FindKnown(const Handle& handle)
{
    const auto [first, last] = m_byData.equal_range(handle.GetData());
    const auto found = std::find_if(first, last,
                                    [&handle](const KnownByData::value_type& known)
                                    { return known.second.handle == handle; });
    return found != last ? found : m_byData.end();
}

URIResolverImpl::KnownByData::const_iterator URIResolverImpl::FindKnown(const Handle& handle) const
{
    return const_cast<URIResolverImpl*>(this)->FindKnown(handle);
}

URIResolverImpl::KnownByData::iterator URIResolverImpl::NeedKnown(const Handle& handle,
                                                                  const Pointer& pointer)
{
    const auto known = FindKnown(handle);
    if (known != m_byData.end())
    {
        return known;
    }
    // An object that ends asks its holders until it has none: each of them has to know it.
    const auto added = m_byData.emplace(handle.GetData(), Known{handle, pointer, {}});
    try
    {
        AddHolder(handle.GetData(), this);
    }
    catch (...)
    {
        m_byData.erase(added);
        throw;
    }
    MarkRegistered(handle);
    return added;
}

void URIResolverImpl::Erase(KnownByData::iterator known) noexcept
{
    for (const Place& place : known->second.places)
    {
        EraseHandle(place);
    }
    RemoveHolder(known->first, this);
    m_byData.erase(known);
}

/// An entry without handles goes as well.
void URIResolverImpl::EraseHandle(const Place& place) noexcept
{
    Entry& entry = *place.entry;
    entry.handles.erase(place.order);
    if (!entry.handles.empty())
    {
        return;
    }
    const auto path = m_byPath.find(entry.absolutePath);
    path->second.erase(entry.text);
    if (path->second.empty())
    {
        m_byPath.erase(path);
    }
    m_byText.erase(m_byText.find(entry.text));
}

namespace internal
{

void ForgetObject(void* object) noexcept
{
    const MutexLock lock(kMutexResolver);
    Holders& holders = AllHolders();
    for (auto holder = holders.find(object); holder != holders.end(); holder = holders.find(object))
    {
        holder->second->RemoveObject(object);
    }
}

}  // namespace internal
}  // namespace zorvex_api
