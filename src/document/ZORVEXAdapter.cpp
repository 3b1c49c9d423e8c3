#include "document/ZORVEXAdapter.h"

#include <unordered_set>

#include "document/DocumentLoad.h"
#include "document/DocumentSave.h"
#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ObjectPin.h"
#include "runtime/LocalTime.h"
#include "transport/AdapterImpl.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_adapter
{

using namespace zorvex_api;
using namespace zorvex_api::internal;

namespace
{

PluginDescriptor* g_descriptor = nullptr;  // owned by the plug-in registry

void* MakeZORVEX()
{
    return new ZORVEX;
}

void FillProperties(PluginDescriptor*, Configuration* properties)
{
    properties->Set(u"FORMAT", u"ZORVEX");
    properties->Set(u"DESCRIPTION", u"ZORVEX Format");
    properties->Set(u"FILE_EXTENSIONS", u"zorvex;xml;orbfmt");
    properties->Set(u"THREADING", u"MULTIPLE");
}

/// An attribute that is empty or "unset" gets a text.
void FillUnset(Object& document, const String& name, const String& text, bool unsetCounts)
{
    String present;
    document.GetAttributeValue(name, present);
    if (present.IsEmpty() || (unsetCounts && present == u"unset"))
    {
        document.SetAttributeValue(name, text);
    }
}

void StampDocument(Object& document)
{
    const LocalTime now = LocalTime::Now();
    FillUnset(document, u"author", u"ZORVEX Adapter", false);
    FillUnset(document, u"time", now.TimeText(), true);
    FillUnset(document, u"date", now.DateText(), true);
}

bool IsDocumentBase(Object* object)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(object->GetClassDescriptor());
    return impl != nullptr && impl->IsDocumentBase();
}

}  // namespace

ZORVEX::ZORVEX() = default;

ZORVEX::~ZORVEX()
{
    if (g_descriptor != nullptr)
    {
        g_descriptor->RemoveInstance(this);
    }
}

PluginDescriptor* ZORVEX::GetPluginDescriptor()
{
    return g_descriptor;
}

void ZORVEX::Process(PluginProcessData* data)
{
    if (data == nullptr)
    {
        return;
    }
    switch (data->m_operation)
    {
        case ZORVEX_OP_ADAPTER_IMPORT:
            return Import(*data);
        case ZORVEX_OP_ADAPTER_EXPORT:
            return Export(*data);
        case ZORVEX_OP_ADAPTER_GET:
            return Get(*data);
        case ZORVEX_OP_ADAPTER_LOAD:
            return Load(*data);
        case ZORVEX_OP_ADAPTER_SAVE:
            return Save(*data);
        case ZORVEX_OP_ADAPTER_LOCATE:
            return Locate(*data);
        case ZORVEX_OP_ADAPTER_DESTROY:
            return Destroy(*data);
        case ZORVEX_OP_ADAPTER_RESET:
            return;
        case ZORVEX_OP_ADAPTER_CLONE:
            if (auto** clone = GetSlot<Adapter*>(*data, kCloneSlot))
            {
                *clone = new ZORVEX;
            }
            return;
        default:
            Adapter::Process(data);
    }
}

void ZORVEX::Import(PluginProcessData& data)
{
    auto* handles = GetSlot<Array<Handle>>(data, kHandlesSlot);
    if (handles == nullptr)
    {
        return;
    }
    auto* options = GetSlot<Configuration>(data, kOptionsSlot);
    auto* resolver = GetSlot<URIResolver>(data, kResolverSlot);
    if (resolver == nullptr)
    {
        resolver = FindStoredResolver(options);
    }
    Pointer pointer;
    ConstructPointer(pointer);
    Array<Handle> found;
    if (resolver != nullptr && resolver->FindObjects(pointer, found) != 0)
    {
        handles->Add(found.GetSize(), found.GetData());
        return;
    }
    PluginProcessData load;
    load.m_operation = ZORVEX_OP_ADAPTER_LOAD;
    load.Set(kResultSlot, GetSlot<Result>(data, kResultSlot));
    load.Set(kOptionsSlot, options);
    load.Set(kHandlesSlot, handles);
    load.Set(kResolverSlot, resolver);
    ProcessLocked(this, load);
}

void ZORVEX::Load(PluginProcessData& data)
{
    if (GetContext().IsEmpty() || GetSlot<Array<Handle>>(data, kHandlesSlot) == nullptr)
    {
        return;  // no document is named, or nobody takes it
    }
    DocumentLoad load(*this, data);
    load.Run();
}

void ZORVEX::Save(PluginProcessData& data)
{
    auto* handles = GetSlot<Array<Handle>>(data, kHandlesSlot);
    if (handles == nullptr || handles->GetSize() == 0 || (*handles)[0].GetObject() == nullptr)
    {
        return;
    }
    DocumentSave save(*this, (*handles)[0].GetObject(), data);
    save.Run();
}

void ZORVEX::Export(PluginProcessData& data)
{
    auto* handles = GetSlot<Array<Handle>>(data, kHandlesSlot);
    if (handles == nullptr || handles->GetSize() == 0)
    {
        return;
    }
    for (int i = 0; i < handles->GetSize(); ++i)
    {
        Object* object = (*handles)[i].GetObject();
        Object* root = object != nullptr ? object->GetRoot() : nullptr;
        if (root != nullptr && IsDocumentBase(root))
        {
            StampDocument(*root);
        }
    }
    PluginProcessData save;
    save.m_operation = ZORVEX_OP_ADAPTER_SAVE;
    save.Set(kResultSlot, GetSlot<Result>(data, kResultSlot));
    save.Set(kOptionsSlot, GetSlot<Configuration>(data, kOptionsSlot));
    save.Set(kHandlesSlot, handles);
    ProcessLocked(this, save);
}

void ZORVEX::Get(PluginProcessData& data)
{
    const auto* mode = GetSlot<unsigned int>(data, kModeSlot);
    if (mode == nullptr || (*mode & ZORVEX_ADAPTER_GET_MODE_HANDLE) == 0)
    {
        if (auto* result = GetSlot<Result>(data, kResultSlot))
        {
            result->AddError(522,
                             u"ZORVEX Adapter: can only \"GET\" Handles "
                             u"(ZORVEX_ADAPTER_GET_MODE_HANDLE).");
        }
        return;
    }
    Array<Handle> candidates;
    for (Adapter* member = this; member != nullptr; member = member->GetNext())
    {
        if (void* handle = member->GetImplementation()->handle)
        {
            candidates.Add(Handle(static_cast<Object*>(handle)));
        }
    }
    String locator = GetNext() != nullptr ? GetNext()->GetContext() : String();
    PluginProcessData locate;
    locate.m_operation = ZORVEX_OP_ADAPTER_LOCATE;
    locate.Set(kResultSlot, GetSlot<Result>(data, kResultSlot));
    locate.Set(kOptionsSlot, GetSlot<Configuration>(data, kOptionsSlot));
    locate.Set(kHandlesSlot, &candidates);
    locate.Set(kLocatedSlot, GetSlot<Array<Handle>>(data, kHandlesSlot));
    locate.Set(kLocatorSlot, &locator);
    ProcessLocked(this, locate);
}

/// The root of each candidate, or what the locator's id names in its tree.
void ZORVEX::Locate(const PluginProcessData& data)
{
    auto* candidates = GetSlot<Array<Handle>>(data, kHandlesSlot);
    auto* located = GetSlot<Array<Handle>>(data, kLocatedSlot);
    if (candidates == nullptr || located == nullptr)
    {
        return;
    }
    String locator;
    if (const auto* wide = GetSlot<unsigned short>(data, kWideLocatorSlot))
    {
        locator = String(wide);
    }
    else if (const auto* text = GetSlot<String>(data, kLocatorSlot))
    {
        locator = *text;
    }
    TextView id = View(locator);
    constexpr TextView kIdPrefix = u"id=";
    if (id.starts_with(kIdPrefix))
    {
        id.remove_prefix(kIdPrefix.size());
    }
    for (int i = 0; i < candidates->GetSize(); ++i)
    {
        Object* object = (*candidates)[i].GetObject();
        if (object == nullptr)
        {
            continue;
        }
        const ObjectPin pin(object);
        Object* found = id.empty() ? pin->Root()->object : pin->ResolveId(IdValue(id));
        if (found != nullptr)
        {
            located->Add(Handle(found));
        }
    }
}

void ZORVEX::Destroy(const PluginProcessData& data)
{
    auto* handles = GetSlot<Array<Handle>>(data, kHandlesSlot);
    std::unordered_set<Object*> gone;  // LOCATE gives a root once for each of its candidates
    for (int i = 0; handles != nullptr && i < handles->GetSize(); ++i)
    {
        Object* object = (*handles)[i].GetObject();
        if (object != nullptr && gone.insert(object).second && object->GetOwner() == nullptr)
        {
            delete object;
        }
    }
}

}  // namespace zorvex_adapter

namespace zorvex_api::internal
{

int InitZORVEXAdapter(void* descriptor)
{
    if (descriptor == nullptr)
    {
        return 0;
    }
    using zorvex_adapter::g_descriptor;
    g_descriptor = static_cast<PluginDescriptor*>(descriptor);
    g_descriptor->SetType(kAdapterPlugin);
    g_descriptor->SetName(u"ZORVEX");
    g_descriptor->SetBase(Adapter::GetStaticPluginDescriptor());
    g_descriptor->SetInstanceFunction(&zorvex_adapter::MakeZORVEX);
    g_descriptor->SetPropertiesFunction(&zorvex_adapter::FillProperties);
    return 1;
}

}  // namespace zorvex_api::internal
