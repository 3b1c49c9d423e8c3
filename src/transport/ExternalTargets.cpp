#include "objectmodel/ClassData.h"
#include "objectmodel/ExternalRep.h"
#include "transport/DocumentUses.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"

/// What a URI reference leads to, and how it lets go of it.

namespace zorvex_api
{

namespace
{

using namespace internal;

/// The roots of things of another format, destroyed by the adapter of that format.
void DestroyForeignTargets(const String& format, Array<Handle>& targets)
{
    int isNew = 0;
    Adapter* adapter = FindAdapter(format, nullptr, isNew);
    if (adapter == nullptr)
    {
        return;
    }
    Array<Handle> roots;
    String everything;
    PluginProcessData locate;
    locate.m_operation = ZORVEX_OP_ADAPTER_LOCATE;
    locate.Set(kHandlesSlot, &targets);
    locate.Set(kLocatedSlot, &roots);
    locate.Set(kLocatorSlot, &everything);
    ProcessLocked(adapter, locate);
    PluginProcessData destroy;
    destroy.m_operation = ZORVEX_OP_ADAPTER_DESTROY;
    destroy.Set(kHandlesSlot, &roots);
    ProcessLocked(adapter, destroy);
    if (isNew != 0)
    {
        ReleaseInstance(kAdapterPlugin, adapter);
    }
}

/// A reference into a document that references brought in keeps that document alive.
void HoldDocumentOf(ExternalRep& reference, const Handle& handle)
{
    ClassData* object = ClassData::Of(handle.GetObject());
    if (object == nullptr || reference.owner == nullptr)
    {
        return;
    }
    ClassData* root = object->Root();
    if ((root->stateFlags & ClassData::kPulledInRoot) != 0 && root != reference.owner->Root())
    {
        DocumentUses::Get().Add(reference, root->object);
    }
}

}  // namespace

void ExternalRep::SetTargets(const Array<Handle>& newTargets)
{
    const bool wasCounted = (flags & kCounted) != 0;
    if (!wasCounted)
    {
        ReleaseTargets();
    }
    DocumentUses::Get().LeaveArrayTargets(*this);
    ClearTarget();
    if (newTargets.GetSize() == 0)
    {
        return;
    }
    const Handle& first = newTargets.GetAt(0);
    if (newTargets.GetSize() == 1 && first.IsObject() != 0)
    {
        LinkTarget(first.GetObject());
        HoldDocumentOf(*this, first);
        if (FormatText().empty())
        {
            StoreFormat(u"ZORVEX");
        }
        return;
    }
    handles = new Array<Handle>(newTargets);
    flags |= kHandles;
    for (const Handle& handle : *handles)
    {
        if (Object* object = handle.GetObject())
        {
            DocumentUses::Get().AddArrayTarget(*this, object);
            HoldDocumentOf(*this, handle);
        }
    }
    if (FormatText().empty())
    {
        StoreFormat(View(first.GetFormat()));
    }
}

void ExternalRep::CountUses()
{
    Array<Handle> targets;
    GetTargets(targets);
    const ClassData* ownRoot = owner->Root();
    for (const Handle& handle : targets)
    {
        ClassData* data = ClassData::Of(handle.GetObject());
        ClassData* root = data != nullptr ? data->Root() : nullptr;
        if (root != nullptr && root != ownRoot)
        {
            DocumentUses::Get().Add(*this, root->object);
        }
    }
}

void ExternalRep::GetTargets(Array<Handle>& out) const
{
    if ((flags & kHandles) != 0)
    {
        out.Add(handles->GetSize(), handles->GetData());
    }
    else if (target != nullptr)
    {
        out.Add(Handle(target));
    }
}

void ExternalRep::MoveTargets(Array<Handle>& out)
{
    GetTargets(out);
    if ((flags & kHandles) != 0)
    {
        DocumentUses::Get().Drop(*this);  // while the array tells which objects know of it
        DocumentUses::Get().LeaveArrayTargets(*this);
        // The receiver has the things of other formats now: nothing is destroyed.
        handles->RemoveAll();
    }
    ClearTarget();
}

void ExternalRep::ReleaseTargets()
{
    if ((flags & (kHandles | kCounted)) == 0)
    {
        return;
    }
    if ((flags & kHandles) != 0)
    {
        Array<Handle> foreign;
        for (const Handle& handle : *handles)
        {
            if (handle.IsObject() == 0)
            {
                foreign.Add(handle);
            }
        }
        DocumentUses::Get().Drop(*this);
        ClearTarget();
        if (foreign.GetSize() > 0)
        {
            DestroyForeignTargets(ToString(FormatText()), foreign);
        }
        return;
    }
    DocumentUses::Get().Drop(*this);
}

}  // namespace zorvex_api
