#include "transport/DocumentUses.h"

#include <algorithm>

#include "objectmodel/ClassData.h"
#include "objectmodel/EndOfObject.h"
#include "runtime/MutexLock.h"

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
        m_held[&reference].push_back(root);
    }
    data.stateFlags |= ClassData::kUseCounted;
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
    {
        const MutexLock lock(kReferenceMutex);
        LeaveArrayTargets(reference);
        reference.flags &= ~ExternalRep::kCounted;
        const auto held = m_held.find(&reference);
        if (held == m_held.end())
        {
            return;
        }
        const std::vector<Object*> roots = std::move(held->second);
        m_held.erase(held);
        for (Object* root : roots)
        {
            m_holders[root].erase(&reference);
        }
        unheld = TakeUnheld(roots);
    }
    for (Object* root : unheld)
    {
        DeleteUnheldRoot(root);
    }
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
        if (!ending && data.owner == nullptr && IsPulledIn(data) && !IsHeld(root))
        {
            // Whatever else would delete it while this list waits finds it an application's root.
            data.stateFlags &= ~ClassData::kPulledInRoot;
            unheld.push_back(root);
        }
    }
    return unheld;
}

/// Whether a root of the application, or one that was never pulled in, leads to this one.
bool DocumentUses::IsHeld(Object* root) const
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
            if (holder == nullptr || !seen.insert(holder->object).second)
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
            auto& held = m_held[reference];
            held.erase(std::remove(held.begin(), held.end(), object), held.end());
            if (held.empty())
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
