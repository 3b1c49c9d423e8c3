#include "transport/PluginInstances.h"

#include "runtime/Text.h"
#include "transport/AdapterImpl.h"
#include "transport/PluginDescriptorImpl.h"
#include "transport/PluginLock.h"
#include "transport/PluginRegistry.h"
#include "transport/PluginSlots.h"
#include "transport/URIResolverDefault.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_api::internal
{

namespace
{

void (*g_releaseParser)(void*) = nullptr;

Adapter* CloneAdapter(Adapter& original)
{
    Adapter* clone = nullptr;
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_ADAPTER_CLONE;
    data.Set(kCloneSlot, static_cast<void*>(&clone));
    ProcessLocked(&original, data);
    if (clone != nullptr)
    {
        clone->GetImplementation()->isClone = 1;
    }
    return clone;
}

/// An adapter that stands in a chain already serves another one by a clone, which may be null.
void* Share(int type, void* instance, int& isNew)
{
    isNew = 0;
    if (type != kAdapterPlugin)
    {
        return instance;
    }
    auto* adapter = static_cast<Adapter*>(instance);
    if (!StandsInChain(*adapter->GetImplementation()))
    {
        return adapter;
    }
    isNew = 1;
    return CloneAdapter(*adapter);
}

bool Matches(const PluginDescriptor& descriptor, int type, const String& name)
{
    const PluginDescriptorImpl& impl = *descriptor.GetImplementation();
    if (impl.type != type || impl.instanceFunction == nullptr)
    {
        return false;
    }
    const bool anyName = name.IsEmpty() && (type == kParserPlugin || type == kResolverPlugin);
    return anyName || View(name) == impl.nameText;
}

int Depth(const PluginDescriptor& descriptor)
{
    int depth = 0;
    for (PluginDescriptor* base = descriptor.GetBase(); base != nullptr; base = base->GetBase())
    {
        ++depth;
    }
    return depth;
}

/// The most specific plug-in, the earliest registered of equals.
PluginDescriptor* ChoosePlugin(int type, const String& name)
{
    PluginDescriptor* best = nullptr;
    int bestDepth = -1;
    for (PluginDescriptor* descriptor : PluginRegistry::Get().Descriptors())
    {
        if (!Matches(*descriptor, type, name))
        {
            continue;
        }
        const int depth = Depth(*descriptor);
        if (depth > bestDepth)
        {
            best = descriptor;
            bestDepth = depth;
        }
    }
    return best;
}

void* InstanceOf(const PluginDescriptor& descriptor, int& isNew)
{
    const PluginDescriptorImpl& impl = *descriptor.GetImplementation();
    if (impl.instance != nullptr)
    {
        if (void* shared = Share(impl.type, impl.instance, isNew))
        {
            return shared;
        }
    }
    isNew = 1;
    return impl.instanceFunction();
}

void* InstanceWithoutPlugin(int type)
{
    if (type == kResolverPlugin)
    {
        return new URIResolver;
    }
    if (type == kRepresentationPlugin)
    {
        ClassDescriptor* representation = ClassDescriptor::FindByName(u"Representation");
        return representation != nullptr ? representation->MakeObject() : nullptr;
    }
    return nullptr;
}

void* Search(int type, const String& name, Object* options, int& isNew)
{
    isNew = 1;
    PluginDescriptor::RegisterAll();
    if (type == kResolverPlugin && GetDefaultResolver() != nullptr)
    {
        isNew = 0;
        return GetDefaultResolver();
    }
    if (void* stored = options != nullptr ? FindStoredInstance(options, type, name) : nullptr)
    {
        if (void* shared = Share(type, stored, isNew))
        {
            return shared;
        }
        isNew = 1;
    }
    const PluginDescriptor* plugin = ChoosePlugin(type, name);
    if (void* instance = plugin != nullptr ? InstanceOf(*plugin, isNew) : nullptr)
    {
        return instance;
    }
    isNew = 1;
    return InstanceWithoutPlugin(type);
}

}  // namespace

void* FindInstance(int type, const String& name, Object* options, int& isNew)
{
    void* instance = Search(type, name, options, isNew);
    if (instance == nullptr && PluginDescriptor::GetCallback(type, name) != 0)
    {
        instance = Search(type, name, nullptr, isNew);
    }
    return instance;
}

Adapter* FindAdapter(const String& format, Object* options, int& isNew)
{
    return static_cast<Adapter*>(FindInstance(kAdapterPlugin, format, options, isNew));
}

URIResolver* FindResolver(Object* options, int& isNew)
{
    return static_cast<URIResolver*>(FindInstance(kResolverPlugin, String(), options, isNew));
}

void ReleaseInstance(int type, void* instance) noexcept
{
    switch (type)
    {
        case kAdapterPlugin:
            delete static_cast<Adapter*>(instance);
            break;
        case kParserPlugin:
            if (g_releaseParser != nullptr)
            {
                g_releaseParser(instance);
            }
            break;
        case kResolverPlugin:
            delete static_cast<URIResolver*>(instance);
            break;
        case kRepresentationPlugin:
            delete static_cast<Object*>(instance);
            break;
        default:
            break;  // of unknown kind: it can't be deleted
    }
}

void SetParserRelease(void (*release)(void*))
{
    g_releaseParser = release;
}

}  // namespace zorvex_api::internal
