#include "document/STREAMAdapter.h"

#include "runtime/Text.h"
#include "transport/BuiltInPlugins.h"
#include "transport/LiveStreams.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/Stream.h"

namespace zorvex_adapter
{

using namespace zorvex_api;
using internal::GetSlot;

namespace
{

PluginDescriptor* g_descriptor = nullptr;  // owned by its LinkNode

void* MakeInstance()
{
    return static_cast<Adapter*>(new STREAM);
}

void SetProperties(PluginDescriptor*, Configuration* properties)
{
    properties->Set(u"FORMAT", u"STREAM");
    properties->Set(u"DESCRIPTION", u"Internal STREAM Support");
    properties->Set(u"THREADING", u"MULTIPLE");
}

void GiveStream(const Adapter* above, const PluginProcessData& data)
{
    auto** out = GetSlot<Stream*>(data, internal::kStreamOutSlot);
    if (above == nullptr || out == nullptr)
    {
        return;
    }
    if (Stream* stream = FindLiveStream(View(above->GetContext())))
    {
        *out = stream;
    }
}

void LoadStream(Adapter* below, const PluginProcessData& data)
{
    auto* handles = GetSlot<Array<Handle>>(data, internal::kHandlesSlot);
    if (below == nullptr || handles == nullptr)
    {
        return;
    }
    Result got;
    Stream* stream = nullptr;
    unsigned int mode = internal::kGetStreamToRead;
    PluginProcessData request;
    request.m_operation = ZORVEX_OP_ADAPTER_GET;
    request.Set(internal::kResultSlot, &got);
    request.Set(internal::kOptionsSlot, GetSlot<void>(data, internal::kOptionsSlot));
    request.Set(internal::kModeSlot, &mode);
    request.Set(internal::kStreamOutSlot, static_cast<void*>(&stream));
    request.Set(internal::kResolverSlot, GetSlot<void>(data, internal::kResolverSlot));
    internal::ProcessLocked(below, request);
    if (got.Ok() != 0 && stream != nullptr)
    {
        handles->Add(Handle(stream, u"STREAM"));
        return;
    }
    delete stream;
    if (auto* result = GetSlot<Result>(data, internal::kResultSlot))
    {
        result->Merge(got);
    }
}

/// Deletes those that are live: who was handed a stream may have deleted it already.
void DestroyStreams(const PluginProcessData& data)
{
    const auto* handles = GetSlot<Array<Handle>>(data, internal::kHandlesSlot);
    for (int i = 0; handles != nullptr && i < handles->GetSize(); ++i)
    {
        const Handle& handle = handles->GetAt(i);
        if (handle.IsObject() == 0)
        {
            delete FindLiveStream(handle.GetData());
        }
    }
}

}  // namespace

PluginDescriptor* STREAM::GetPluginDescriptor()
{
    if (g_descriptor == nullptr)
    {
        PluginDescriptor::RegisterAll();
    }
    return g_descriptor;
}

void STREAM::Process(PluginProcessData* data)
{
    if (data == nullptr)
    {
        return;
    }
    switch (data->m_operation)
    {
        case ZORVEX_OP_ADAPTER_GET:
            GiveStream(GetNext(), *data);
            break;
        case ZORVEX_OP_ADAPTER_LOAD:
            LoadStream(GetPrevious(), *data);
            break;
        case ZORVEX_OP_ADAPTER_DESTROY:
            DestroyStreams(*data);
            break;
        case ZORVEX_OP_ADAPTER_RESET:
            break;
        case ZORVEX_OP_ADAPTER_CLONE:
            if (auto** clone = GetSlot<Adapter*>(*data, internal::kCloneSlot))
            {
                *clone = new STREAM;
            }
            break;
        default:
            Adapter::Process(data);
            break;
    }
}

}  // namespace zorvex_adapter

namespace zorvex_api::internal
{

int InitSTREAMAdapter(void* descriptor)
{
    if (descriptor == nullptr)
    {
        return 0;
    }
    auto* plugin = static_cast<PluginDescriptor*>(descriptor);
    zorvex_adapter::g_descriptor = plugin;
    plugin->SetType(kAdapterPlugin);
    plugin->SetName(u"STREAM");
    plugin->SetBase(Adapter::GetStaticPluginDescriptor());
    plugin->SetInstanceFunction(&zorvex_adapter::MakeInstance);
    plugin->SetPropertiesFunction(&zorvex_adapter::SetProperties);
    return 1;
}

}  // namespace zorvex_api::internal
