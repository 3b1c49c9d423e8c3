#include "transport/DocumentUses.h"

#include "objectmodel/ClassData.h"
#include "objectmodel/EndOfObject.h"
#include "runtime/MutexLock.h"
#include "transport/URIResolverRegistry.h"

namespace zorvex_api::internal
{

namespace
{

constexpr int kReferenceMutex = 2;

/// The root of the reference's owner, null when any object on the way up is ending.
ClassData* LivingRoot(const ExternalRep& reference)
{
    ClassData* data = reference.owner;
    while (data != nullptr)
    {
        if ((data->stateFlags & ClassData::kDestructing) != 0)
        {
            return nullptr;
        }
        if (data->owner == nullptr)
        {
            return data;
        }
        data = ClassData::Of(data->owner);
    }
    return nullptr;
}

/// Runs in destructors: an adapter that throws here has no one to tell.
void DestroyThing(Handle& thing) noexcept
{
    ForgetObject(thing.GetData());
    try
    {
        thing.Destroy();
    }
    catch (...)
    {
    }
}

bool IsPulledIn(const ClassData& root)
{
    return (root.stateFlags & ClassData::kPulledInRoot) != 0;
}

}  // namespace

DocumentUses& DocumentUses::Get()
{
    static DocumentUses* uses = new DocumentUses;  // objects may die after static destruction began
    return *uses;
}

void DocumentUses::Add(ExternalRep& reference, Object* root)
{
    ClassData& data = *ClassData::Of(root);
    if (!IsPulledIn(data))
    {
        return;
    }
    const MutexLock lock(kReferenceMutex);
    if (m_holders[root].insert(&reference).second)
    {
        m_held[&reference].roots.push_back(root);
    }
    data.stateFlags |= ClassData::kUseCounted;
    reference.flags |= ExternalRep::kCounted;
}

void DocumentUses::AddForeign(ExternalRep& reference, const Handle& thing)
{
    const MutexLock lock(kReferenceMutex);
    const ForeignKey key(thing.GetData(), View(thing.GetFormat()));
    const auto place = m_foreignHolders.try_emplace(key).first;
    if (place->second.insert(&reference).second)
    {
        m_held[&reference].things.push_back(place);
    }
    reference.flags |= ExternalRep::kCounted;
}

void DocumentUses::AddArrayTarget(ExternalRep& reference, Object* object)
{
    const MutexLock lock(kReferenceMutex);
    m_arrayHolders[object].insert(&reference);
    ClassData::Of(object)->stateFlags |= ClassData::kUseCounted;
}

void DocumentUses::LeaveArrayTargets(ExternalRep& reference)
{
    if ((reference.flags & ExternalRep::kHandles) == 0)
    {
        return;
    }
    const MutexLock lock(kReferenceMutex);
    for (const Handle& handle : *reference.handles)
    {
        const auto found = m_arrayHolders.find(handle.GetObject());
        if (found != m_arrayHolders.end())
        {
            found->second.erase(&reference);
            if (found->second.empty())
            {
                m_arrayHolders.erase(found);
            }
        }
    }
}

void DocumentUses::Drop(ExternalRep& reference)
{
    std::vector<Object*> unheld;
    std::vector<Handle> things;
    {
        const MutexLock lock(kReferenceMutex);
        LeaveArrayTargets(reference);
        reference.flags &= ~ExternalRep::kCounted;
        const auto place = m_held.find(&reference);
        if (place == m_held.end())
        {
            return;
        }
        const Held held = std::move(place->second);
        m_held.erase(place);
        for (Object* root : held.roots)
        {
            m_holders[root].erase(&reference);
        }
        unheld = TakeUnheld(held.roots);
        things = LetGo(reference, held.things);
    }
    for (Object* root : unheld)
    {
        DeleteUnheldRoot(root);
    }
    for (Handle& thing : things)
    {
        DestroyThing(thing);
    }
}

void DocumentUses::LeaveForeign(ExternalRep& reference)
{
    const MutexLock lock(kReferenceMutex);
    const auto place = m_held.find(&reference);
    if (place != m_held.end())
    {
        LetGo(reference, std::exchange(place->second.things, {}));
    }
}

/// Takes the reference off the things; gives those that it was the last to hold.
std::vector<Handle> DocumentUses::LetGo(ExternalRep& reference,
                                        const std::vector<ForeignThings::iterator>& things)
{
    std::vector<Handle> last;
    for (const ForeignThings::iterator& thing : things)
    {
        thing->second.erase(&reference);
        if (thing->second.empty())
        {
            last.emplace_back(thing->first.first, ToString(thing->first.second));
            m_foreignHolders.erase(thing);
        }
    }
    return last;
}

/// The candidates that nobody holds, with all pulled-in roots that are then held by nobody either
/// left to their own references.
std::vector<Object*> DocumentUses::TakeUnheld(const std::vector<Object*>& candidates) const
{
    std::vector<Object*> unheld;
    for (Object* root : candidates)
    {
        ClassData& data = *ClassData::Of(root);
        const bool ending = (data.stateFlags & ClassData::kDestructing) != 0;
        if (!ending && data.owner == nullptr && IsPulledIn(data) && !MayBeHeld(root))
        {
            // Whatever else would delete it while this list waits finds it an application's root.
            data.stateFlags &= ~ClassData::kPulledInRoot;
            unheld.push_back(root);
        }
    }
    return unheld;
}

/// Whether a root of the application, or one that was never pulled in, leads to this one; also
/// while a dying tree still does: the last reference of that tree to go asks again, so that the
/// end of a tree with many references looks at each of them once.
bool DocumentUses::MayBeHeld(Object* root) const
{
    std::unordered_set<const Object*> seen{root};
    std::vector<Object*> open{root};
    while (!open.empty())
    {
        const auto holders = m_holders.find(open.back());
        open.pop_back();
        if (holders == m_holders.end())
        {
            continue;
        }
        for (const ExternalRep* reference : holders->second)
        {
            ClassData* holder = LivingRoot(*reference);
            if (holder == nullptr)
            {
                return true;
            }
            if (!seen.insert(holder->object).second)
            {
                continue;
            }
            if (!IsPulledIn(*holder))
            {
                return true;
            }
            open.push_back(holder->object);
        }
    }
    return false;
}

void DocumentUses::Forget(Object* object) noexcept
{
    const MutexLock lock(kReferenceMutex);
    const auto holders = m_holders.find(object);
    if (holders != m_holders.end())
    {
        for (ExternalRep* reference : holders->second)
        {
            Held& held = m_held[reference];
            std::erase(held.roots, object);
            if (held.roots.empty() && held.things.empty())
            {
                m_held.erase(reference);
                reference->flags &= ~ExternalRep::kCounted;
            }
        }
        m_holders.erase(holders);
    }
    const auto arrays = m_arrayHolders.find(object);
    if (arrays == m_arrayHolders.end())
    {
        return;
    }
    const References references = std::move(arrays->second);
    m_arrayHolders.erase(arrays);
    for (ExternalRep* reference : references)
    {
        Array<Handle>& targets = *reference->handles;
        for (int i = targets.GetSize() - 1; i >= 0; --i)
        {
            if (targets[i].GetObject() == object)
            {
                targets.RemoveAt(i);
            }
        }
    }
}

}  // namespace zorvex_api::internal
