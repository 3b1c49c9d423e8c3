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

/// What the adapter of a format has to keep so that its things stay: their roots.
Array<Handle> LocateForeignRoots(const String& format, Array<Handle>& things)
{
    Array<Handle> roots;
    int isNew = 0;
    Adapter* adapter = FindAdapter(format, nullptr, isNew);
    if (adapter == nullptr)
    {
        return roots;
    }
    Result unheard;  // an adapter without this operation keeps nothing
    String everything;
    PluginProcessData locate;
    locate.m_operation = ZORVEX_OP_ADAPTER_LOCATE;
    locate.Set(kResultSlot, &unheard);
    locate.Set(kHandlesSlot, &things);
    locate.Set(kLocatedSlot, &roots);
    locate.Set(kLocatorSlot, &everything);
    ProcessLocked(adapter, locate);
    if (isNew != 0)
    {
        ReleaseInstance(kAdapterPlugin, adapter);
    }
    return roots;
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
    Array<Handle> foreign;
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
        else if (data == nullptr && handle.GetData() != nullptr)
        {
            foreign.Add(handle);
        }
    }
    if (foreign.GetSize() == 0)
    {
        return;
    }
    for (const Handle& root : LocateForeignRoots(foreign[0].GetFormat(), foreign))
    {
        DocumentUses::Get().AddForeign(*this, root);
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
        DocumentUses::Get().LeaveForeign(*this);  // the receiver has them now
        DocumentUses::Get().LeaveArrayTargets(*this);
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
    DocumentUses::Get().Drop(*this);
    if ((flags & kHandles) != 0)
    {
        ClearTarget();
    }
}

}  // namespace zorvex_api
