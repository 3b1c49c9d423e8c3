#pragma once

#include <memory>
#include <string>

#include "runtime/MutexLock.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

/// The record of a plug-in.
///
/// It outlives sessions, so it takes no memory of the application's allocation hooks: `nameText`
/// is the name, and `name` a String on it that exists only while a session is up or being asked.
struct PluginDescriptorImpl
{
    int type = 0;
    std::u16string nameText;
    mutable String name;  // made from nameText on demand, dropped at the end of a session
    PluginDescriptor::InstanceFunction instanceFunction = nullptr;
    PluginDescriptor::PropertiesFunction propertiesFunction = nullptr;
    PluginDescriptor* base = nullptr;
    PluginDescriptor* self = nullptr;
    void* instance = nullptr;      // owned, see ReleaseInstance
    std::unique_ptr<Mutex> mutex;  // null for a plug-in fit for several threads
};

}  // namespace zorvex_api
