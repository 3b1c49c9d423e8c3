#include "transport/AdapterStream.h"

#include "runtime/Text.h"
#include "transport/AdapterImpl.h"
#include "transport/FileName.h"
#include "transport/Location.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "transport/StreamImpl.h"
#include "transport/URIResolverDefault.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_api::internal
{

namespace
{

String PutInFront(const String& context, const String& name)
{
    if (context.IsEmpty() != 0)
    {
        return AsPlace(name);
    }
    return View(context).back() == u'/' ? context + name : context + u"/" + name;
}

/// The name below all location adapters; an absolute name takes no more in front.
String FullName(const Adapter& location, const String& fileName)
{
    String name = PutInFront(location.GetContext(), fileName);
    for (const Adapter* below = location.GetPrevious(); below != nullptr;
         below = below->GetPrevious())
    {
        if (!NeedsFolder(Pointer(name)))
        {
            break;
        }
        if (below->GetFormat().IsEmpty() != 0)
        {
            name = PutInFront(below->GetContext(), name);
        }
    }
    return name;
}

/// A resolver for one request, deleted with this when it was made for it.
class RequestResolver
{
public:
    explicit RequestResolver(const PluginProcessData& data)
        : m_resolver(GetSlot<URIResolver>(data, kResolverSlot))
    {
        auto* options = GetSlot<Configuration>(data, kOptionsSlot);
        if (m_resolver == nullptr)
        {
            m_resolver = FindStoredResolver(options);
        }
        if (m_resolver == nullptr)
        {
            m_resolver = FindResolver(options, m_isNew);
        }
    }
    ~RequestResolver()
    {
        if (m_isNew != 0)
        {
            ReleaseInstance(kResolverPlugin, m_resolver);
        }
    }
    RequestResolver(const RequestResolver&) = delete;
    RequestResolver& operator=(const RequestResolver&) = delete;

    URIResolver* Get() const { return m_resolver; }

private:
    URIResolver* m_resolver;
    int m_isNew = 0;
};

void CopySlot(const PluginProcessData& from, PluginProcessData& to, int slot)
{
    to.Set(slot, GetSlot<void>(from, slot));
}

void AskResolver(const PluginProcessData& data, String& name)
{
    const RequestResolver resolver(data);
    PluginProcessData request;
    request.m_operation = kResolverOpenStream;
    for (const int slot : {kResultSlot, kOptionsSlot, kModeSlot, kStreamOutSlot})
    {
        CopySlot(data, request, slot);
    }
    request.Set(kNameSlot, &name);
    ProcessLocked(resolver.Get(), request);
}

}  // namespace

void GetStreamFromResolver(Adapter& location, const PluginProcessData& data)
{
    Adapter* above = location.GetNext();
    String fileName = above != nullptr ? above->GetContext() : String();
    const auto* mode = GetSlot<unsigned int>(data, kModeSlot);
    const bool writes = above != nullptr && mode != nullptr && (*mode & kStreamWrite) != 0;
    if (writes)
    {
        fileName = FitFileName(fileName, above);
    }
    String name = FullName(location, fileName);
    if (above != nullptr)
    {
        name = WithQuery(name, above->GetImplementation()->query);
    }
    AskResolver(data, name);
    if (writes)
    {
        above->SetContext(fileName);
    }
}

}  // namespace zorvex_api::internal
