#pragma once

#include "zorvex_api/PluginProcessData.h"

namespace zorvex_api::internal
{

// Plug-in types.
constexpr int kAdapterPlugin = 1;
constexpr int kParserPlugin = 2;
constexpr int kResolverPlugin = 3;
constexpr int kRepresentationPlugin = 4;

// Slot numbers of PluginProcessData.
constexpr int kResultSlot = 0;
constexpr int kOptionsSlot = 1;
constexpr int kObjectSlot = 2;
constexpr int kFieldNameSlot = 3;  // resolver codes 1 and 2: the field's name, UTF-8
constexpr int kPointerSlot = 4;    // resolver codes 1 and 2: Pointer*
constexpr int kModeSlot = 5;
constexpr int kAnswerSlot = 6;
constexpr int kStreamOutSlot = 7;
constexpr int kStreamSlot = 8;
constexpr int kNameSlot = 9;
constexpr int kHandlesSlot = 10;
constexpr int kLocatedSlot = 11;
constexpr int kLocatorSlot = 12;
constexpr int kCloneSlot = 16;
constexpr int kWideLocatorSlot = -1;
constexpr int kResolverSlot = -2;

// Operation codes of URIResolver::Process.
constexpr int kResolverAskReference = 1;
constexpr int kResolverAskLoad = 2;
constexpr int kResolverOpenStream = 3;

// The operation of Object::Export; only an application's adapter answers it.
constexpr int kAdapterExportForeign = 12;

// Open modes of ZORVEX_OP_ADAPTER_GET.
constexpr unsigned int kGetStreamToRead = 0x10001;
constexpr unsigned int kGetStreamToWrite = 0x10002;
constexpr unsigned int kGetStreamOrHandles = 0x30001;

/// The slot's pointer as what the slot holds by convention.
template <typename T>
T* GetSlot(const PluginProcessData& data, int slot)
{
    void* value = nullptr;
    data.Get(slot, value);
    return static_cast<T*>(value);
}

}  // namespace zorvex_api::internal
