#include "zorvex_api/URIResolver.h"

#include <memory>

#include "runtime/Text.h"
#include "transport/BuiltInPlugins.h"
#include "transport/DocumentPointer.h"
#include "transport/FileTarget.h"
#include "transport/PluginRegistry.h"
#include "transport/PluginSlots.h"
#include "transport/StreamImpl.h"
#include "transport/URIResolverDefault.h"
#include "transport/URIResolverTables.h"
#include "zorvex_api/FileStream.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Pointer.h"

namespace zorvex_api
{

namespace
{

PluginDescriptor* g_baseDescriptor = nullptr;  // owned by its LinkNode

bool IsWebScheme(TextView scheme)
{
    return scheme == u"http" || scheme == u"https";
}

bool IsWriteMode(unsigned int mode)
{
    return (mode & (kStreamWrite | kStreamAppend)) != 0;
}

/// Streams from a server aren't served.
Stream* OpenHttpStream(const String& uri, Result& result)
{
    result.AddError(2, u"Cannot open file: " + uri);
    return nullptr;
}

Stream* OpenWebStream(const String& uri, unsigned int mode, Result& result)
{
    if (IsWriteMode(mode))
    {
        result.AddError(2, u"Cannot write to http: or https: streams");
        return nullptr;
    }
    return OpenHttpStream(uri, result);
}

Stream* OpenFileStream(const Pointer& pointer, unsigned int mode, Result& result)
{
    auto stream = std::make_unique<FileStream>();
    if (mode == kStreamWrite)
    {
        CommitOnClose(*stream);
    }
    const String& path = pointer.GetFullPath();
    if (stream->Open(path, static_cast<int>(mode)) == 0)
    {
        result.AddError(2, u"Cannot open file: " + path);
        return nullptr;
    }
    return stream.release();
}

Stream* OpenStream(const String& uri, unsigned int mode, Result& result)
{
    const Pointer pointer(uri);
    const String scheme = pointer.GetScheme().LowerCase();
    if (IsWebScheme(View(scheme)))
    {
        if (IsWriteMode(mode))
        {
            // Said once for the redirection that isn't followed and once for the stream.
            result.AddError(2, u"Cannot write to http: or https: streams");
        }
        return OpenWebStream(uri, mode, result);
    }
    if (scheme.IsEmpty() || scheme == u"file")
    {
        return OpenFileStream(pointer, mode, result);
    }
    result.AddError(2, u"Default URIResolver supports only file:, http: and https: streams.");
    return nullptr;
}

void AnswerOpenStream(const PluginProcessData& data)
{
    const auto* uri = internal::GetSlot<String>(data, internal::kNameSlot);
    const auto* mode = internal::GetSlot<unsigned int>(data, internal::kModeSlot);
    auto** out = internal::GetSlot<Stream*>(data, internal::kStreamOutSlot);
    if (uri == nullptr || out == nullptr)
    {
        return;
    }
    Result unheard;
    auto* result = internal::GetSlot<Result>(data, internal::kResultSlot);
    const unsigned int bits = mode != nullptr ? *mode & kStreamModeMask : kStreamRead;
    if (Stream* stream = OpenStream(*uri, bits, result != nullptr ? *result : unheard))
    {
        *out = stream;
    }
}

}  // namespace

URIResolver::URIResolver() : m_impl(new URIResolverImpl) {}

URIResolver::~URIResolver()
{
    internal::ForgetHeldInstance(this);
    internal::ForgetDefaultResolver(this);
    delete m_impl;
}

PluginDescriptor* URIResolver::GetPluginDescriptor()
{
    return GetStaticPluginDescriptor();
}

PluginDescriptor* URIResolver::GetStaticPluginDescriptor()
{
    if (g_baseDescriptor == nullptr)
    {
        PluginDescriptor::RegisterAll();
    }
    return g_baseDescriptor;
}

void URIResolver::Process(PluginProcessData* data)
{
    if (data == nullptr)
    {
        return;
    }
    switch (data->m_operation)
    {
        case internal::kResolverAskReference:
        case internal::kResolverAskLoad:
            if (auto* answer = internal::GetSlot<int>(*data, internal::kAnswerSlot))
            {
                *answer = 1;
            }
            break;
        case internal::kResolverOpenStream:
            AnswerOpenStream(*data);
            break;
        default:
            auto* result = internal::GetSlot<Result>(*data, internal::kResultSlot);
            if (data->m_operation > internal::kResolverAskLoad && result != nullptr)
            {
                result->AddError(2, u"Unknown resolver operation");
            }
            break;
    }
}

Result URIResolver::RegisterObject(const Handle& handle, const Pointer& pointer)
{
    if (!internal::HasStreamElement(pointer))
    {
        m_impl->Register(handle, pointer);
    }
    return Result();
}

int URIResolver::FindObjects(const Pointer& pointer, Array<Handle>& handles)
{
    return m_impl->Find(pointer, handles);
}

int URIResolver::FindPointer(const Handle& handle, Pointer& pointer)
{
    return m_impl->FindPointer(handle, pointer);
}

int URIResolver::ReplaceObject(const Handle& old, const Handle& replacement)
{
    return m_impl->Replace(old, replacement);
}

Result URIResolver::DeregisterObject(const Handle& handle)
{
    m_impl->Remove(handle);
    return Result();
}

namespace internal
{

int InitURIResolverBase(void* descriptor)
{
    if (descriptor == nullptr)
    {
        return 0;
    }
    g_baseDescriptor = static_cast<PluginDescriptor*>(descriptor);
    g_baseDescriptor->SetType(kResolverPlugin);
    return 1;
}

}  // namespace internal
}  // namespace zorvex_api
