#include "document/DocumentLoad.h"

#include <algorithm>
#include <array>

#include "document/DocumentReader.h"
#include "objectmodel/ClassData.h"
#include "objectmodel/ExternalRep.h"
#include "objectmodel/IdTable.h"
#include "objectmodel/ObjectPin.h"
#include "runtime/PagingHooks.h"
#include "transport/AdapterImpl.h"
#include "transport/DocumentPointer.h"
#include "transport/LoadText.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/Stream.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_adapter
{

using namespace zorvex_api;
using namespace zorvex_api::internal;

namespace
{

constexpr std::size_t kBatch = 32;

/// The reference that was read, null when it is no longer there.
ExternalRep* ReferenceOf(const ReferenceData& reference)
{
    const FieldData* stored = ClassData::Of(reference.object)->FindField(reference.field);
    if (stored == nullptr || !stored->IsSet())
    {
        return nullptr;
    }
    if (reference.field->Type() != zorvexFieldMultipleURI)
    {
        return stored->External();
    }
    return reference.index < stored->Externals()->GetSize()
               ? (*stored->Externals())[reference.index]
               : nullptr;
}

void Link(ExternalRep& rep, Object* target)
{
    rep.LinkTarget(target);
    rep.flags |= rep.format == nullptr ? ExternalRep::kZorvexFormat : 0;
}

}  // namespace

DocumentLoad::DocumentLoad(Adapter& adapter, const PluginProcessData& data)
    : m_adapter(adapter),
      m_result(GetSlot<Result>(data, kResultSlot) != nullptr ? *GetSlot<Result>(data, kResultSlot)
                                                             : m_unheard),
      m_options(GetSlot<Configuration>(data, kOptionsSlot)),
      m_resolver(GetSlot<URIResolver>(data, kResolverSlot)),
      m_handles(*GetSlot<Array<Handle>>(data, kHandlesSlot))
{
    if (m_resolver == nullptr)
    {
        m_resolver = FindStoredResolver(m_options);
    }
}

DocumentLoad::~DocumentLoad()
{
    delete m_stream;
    for (int i = m_handedOut; i < m_objects.GetSize(); ++i)
    {
        delete m_objects[i];
    }
}

void DocumentLoad::Run()
{
    try
    {
        RunSteps();
    }
    catch (...)
    {
        m_result.AddError(4, String(u"ZORVEX Adapter: Exception whilst loading stream ") +
                                 m_adapter.GetContext());
    }
    delete m_stream;
    m_stream = nullptr;
}

void DocumentLoad::RunSteps()
{
    m_stream = OpenStream();
    if (m_stream == nullptr)
    {
        return;
    }
    m_adapter.ConstructPointer(m_pointer);
    try
    {
        Parse();
    }
    catch (...)
    {
        HandOut();  // what was built is the caller's
        throw;
    }
    HandOut();
    ResolveReferences();
    ReportEnd();
    MarkRoots();
}

/// The stream of the adapter below, or null with the reason in the Result.
Stream* DocumentLoad::OpenStream()
{
    Result opened;
    Stream* stream = nullptr;
    unsigned int mode = kGetStreamOrHandles;
    PluginProcessData get;
    get.m_operation = ZORVEX_OP_ADAPTER_GET;
    get.Set(kResultSlot, &opened);
    get.Set(kOptionsSlot, m_options);
    get.Set(kHandlesSlot, &m_handles);
    get.Set(kResolverSlot, m_resolver);
    get.Set(kStreamOutSlot, &stream);
    get.Set(kModeSlot, &mode);
    const int handlesBefore = m_handles.GetSize();
    if (m_adapter.GetPrevious() != nullptr)
    {
        ProcessLocked(m_adapter.GetPrevious(), get);
    }
    m_result.Merge(opened);
    if (opened.Ok() != 0 && stream != nullptr)
    {
        return stream;
    }
    delete stream;
    if (opened.Ok() != 0 && m_handles.GetSize() == handlesBefore)
    {
        Pointer pointer;
        m_adapter.ConstructPointer(pointer);
        m_result.AddError(
            4, String::Format("Unable to load: \"%s\"", ToUtf8(pointer.GetString()).c_str()));
    }
    return nullptr;
}

void DocumentLoad::Parse()
{
    const Adapter* below = m_adapter.GetPrevious();
    String path = below != nullptr ? below->GetContext() : String();
    if (path.IsEmpty() == 0 && path.EndsWith(u"/") == 0)
    {
        path += u"/";
    }
    path += m_adapter.GetContext();
    ParseStream(path, m_stream, m_options, m_objects, &m_references, m_result, 0, nullptr,
                IsLoadText(m_stream));
    delete m_stream;
    m_stream = nullptr;
}

void DocumentLoad::HandOut()
{
    const bool isForReference = m_adapter.GetImplementation()->handle != nullptr;
    for (int i = 0; i < m_objects.GetSize(); ++i)
    {
        if (isForReference)
        {
            // Before its own references are followed: what they lead to may hold it in turn.
            ClassData::Of(m_objects[i])->stateFlags |= ClassData::kPulledInRoot;
        }
        const Handle handle(m_objects[i]);
        RememberDocumentPointer(m_objects[i], m_pointer);
        if (m_resolver != nullptr && !HasStreamElement(m_pointer))
        {
            m_resolver->RegisterObject(handle, m_pointer);
        }
        m_roots.Add(handle);
        m_handles.Add(handle);
        ++m_handedOut;
    }
}

void DocumentLoad::ResolveReferences()
{
    std::array<ReferenceData, kBatch> batch;
    for (std::size_t i = 0; i < m_references.size(); i += kBatch)
    {
        const std::size_t count = std::min(kBatch, m_references.size() - i);
        std::copy_n(m_references.begin() + static_cast<std::ptrdiff_t>(i), count, batch.begin());
        // Asked for anew: following a reference runs code of the application.
        const IdTable* table = OnlyTable();
        if (table != nullptr && LinkBatch(batch.data(), count, *table))
        {
            continue;
        }
        for (std::size_t k = 0; k < count; ++k)
        {
            ResolveReference(batch[k]);
        }
    }
}

/// The ids of the only root; null when there is none or another way is needed.
const IdTable* DocumentLoad::OnlyTable() const
{
    const ClassData* root =
        m_roots.GetSize() == 1 ? ClassData::Of(m_roots.GetAt(0).GetObject()) : nullptr;
    return root != nullptr && root->owner == nullptr && !PagingHooks::IsActive() ? root->idTable
                                                                                 : nullptr;
}

/// Links references that are all of the common kind, "#id12" of this document; false, with nothing
/// done, when one is of another kind. They and their targets lie all over the memory, so that what
/// costs is waiting for it: each step is done for all of them, asking for what the next one needs.
bool DocumentLoad::LinkBatch(const ReferenceData* references, std::size_t count,
                             const IdTable& table)
{
    std::array<ExternalRep*, kBatch> reps;
    std::array<ClassData*, kBatch> targets;
    for (std::size_t i = 0; i < count; ++i)
    {
        __builtin_prefetch(references[i].object);
        __builtin_prefetch(reinterpret_cast<const char*>(references[i].object) + 64);
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        reps[i] = ReferenceOf(references[i]);
        __builtin_prefetch(reps[i]);
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        if (reps[i] != nullptr && (reps[i]->flags & ExternalRep::kNumericText) == 0)
        {
            return false;
        }
        if (reps[i] != nullptr)
        {
            table.PrefetchPlace(reps[i]->number);
        }
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        if (reps[i] != nullptr)
        {
            table.PrefetchEntry(reps[i]->number);
        }
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        targets[i] = reps[i] != nullptr ? table.Find(IdValue(reps[i]->number)) : nullptr;
        __builtin_prefetch(targets[i] != nullptr ? targets[i]->incoming : nullptr, 1);
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        if (targets[i] != nullptr && !reps[i]->HasTarget())
        {
            Link(*reps[i], targets[i]->object);
        }
    }
    return true;
}

void DocumentLoad::ResolveReference(const ReferenceData& reference)
{
    const ObjectPin pin(reference.object);
    ExternalRep* rep = ReferenceOf(reference);
    if (rep == nullptr || rep->HasTarget())
    {
        return;
    }
    if ((rep->flags & ExternalRep::kNumericText) == 0)
    {
        rep->ResolveAfterParse(reference.object, &m_adapter, m_options, m_resolver, reference.field,
                               1, m_result, m_roots);
        return;
    }
    const IdValue wanted(rep->number);
    for (int i = 0; i < m_roots.GetSize(); ++i)
    {
        if (Object* found = ClassData::Of(m_roots[i].GetObject())->ResolveId(wanted))
        {
            Link(*rep, found);
            return;
        }
    }
}

void DocumentLoad::ReportEnd()
{
    if (m_objects.GetSize() == 0)
    {
        m_result.AddError(4, u"No suitable root element found");
    }
    else if (m_result.Ok() == 0)
    {
        m_result.AddError(518, WARNING,
                          String(u"Errors parsing \"") + m_pointer.GetString() + String(u"\""));
    }
}

/// Each root's document network is to be found anew.
void DocumentLoad::MarkRoots()
{
    for (int i = 0; i < m_roots.GetSize(); ++i)
    {
        ClassData& root = *ClassData::Of(m_roots[i].GetObject())->Root();
        if ((root.stateFlags & ClassData::kParserOwned) == 0)
        {
            root.stateFlags |= ClassData::kNetworkStale;
        }
    }
}

}  // namespace zorvex_adapter
