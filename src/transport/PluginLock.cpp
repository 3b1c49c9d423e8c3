#include "transport/PluginLock.h"

#include "transport/PluginDescriptorImpl.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_api
{

PluginLock::PluginLock(Adapter* chain)
{
    for (Adapter* member = chain; member != nullptr; member = member->GetPrevious())
    {
        Lock(member->GetPluginDescriptor());
    }
}

PluginLock::PluginLock(URIResolver* resolver)
{
    Lock(resolver != nullptr ? resolver->GetPluginDescriptor() : nullptr);
}

PluginLock::PluginLock(PluginDescriptor* descriptor)
{
    Lock(descriptor);
}

PluginLock::~PluginLock()
{
    for (Mutex* mutex : m_held)
    {
        mutex->Unlock();
    }
}

void PluginLock::Lock(PluginDescriptor* descriptor)
{
    Mutex* mutex = descriptor != nullptr ? descriptor->GetImplementation()->mutex.get() : nullptr;
    if (mutex == nullptr)
    {
        return;
    }
    m_held.push_back(mutex);
    mutex->Lock();
}

namespace internal
{

void ProcessLocked(Adapter* adapter, PluginProcessData& data)
{
    const PluginLock lock(adapter);
    adapter->Process(&data);
}

void ProcessLocked(URIResolver* resolver, PluginProcessData& data)
{
    const PluginLock lock(resolver);
    resolver->Process(&data);
}

}  // namespace internal
}  // namespace zorvex_api
