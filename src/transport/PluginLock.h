#pragma once

#include <vector>

namespace zorvex_api
{

class Adapter;
class Mutex;
class PluginDescriptor;
class PluginProcessData;
class URIResolver;

/// Holds the locks of single-threaded plug-ins for the length of a scope.
///
/// Every `Process` call is made inside such a guard. The locks are recursive: a plug-in that is
/// called again from its own `Process` on the same thread re-enters its lock. They are taken before
/// any numbered mutex.
class PluginLock
{
public:
    /// The locks of the adapter and of all below it, from the top down.
    explicit PluginLock(Adapter* chain);
    explicit PluginLock(URIResolver* resolver);
    /// The lock of one plug-in, such as a parser; null locks nothing.
    explicit PluginLock(PluginDescriptor* descriptor);
    ~PluginLock();

    PluginLock(const PluginLock&) = delete;
    PluginLock& operator=(const PluginLock&) = delete;

private:
    void Lock(PluginDescriptor* descriptor);

    // In the order of locking. Kept here, since `Process` may change the chain.
    std::vector<Mutex*> m_held;
};

namespace internal
{

/// Calls `Process` under the plug-in's locks.
void ProcessLocked(Adapter* adapter, PluginProcessData& data);
void ProcessLocked(URIResolver* resolver, PluginProcessData& data);

}  // namespace internal
}  // namespace zorvex_api
