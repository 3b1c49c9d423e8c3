#pragma once

#include "zorvex_api/Array.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

namespace internal
{
class PluginRegistry;
}

class Configuration;
class LinkNode;
class PluginDescriptorCallback;
struct PluginDescriptorImpl;

/// What the library knows of one plug-in: its type, its name and how to make an instance.
///
/// Plug-in types: 1 adapter, 2 parser, 3 URI resolver, 4 a representation handler (an `Object` that
/// the library asks for). Descriptors are made by the registry: a `LinkNode` of kind 1 names an
/// initialiser, which gets a new descriptor and fills it. They live until their `LinkNode` goes.
///
/// A properties function sets any of "FORMAT", "DESCRIPTION", "FILE_EXTENSIONS" (divided by ";",
/// ":", "," or a blank) and "THREADING" ("MULTIPLE", or "SINGLE", the default).
class ZORVEX_API PluginDescriptor
{
public:
    using InstanceFunction = void* (*)();
    using PropertiesFunction = void (*)(PluginDescriptor*, Configuration*);

    /// Leaves the list of descriptors and deletes a held instance.
    virtual ~PluginDescriptor();

    PluginDescriptor(const PluginDescriptor&) = delete;
    PluginDescriptor& operator=(const PluginDescriptor&) = delete;

    int GetType() const;
    void SetType(int type);

    /// The plug-in's name; of an adapter also the name of its format.
    const String& GetName() const;
    void SetName(const String& name);

    /// The next more general plug-in, or null; not owned. The candidate with the longest chain of
    /// bases is preferred. A base that stands on this descriptor itself isn't taken.
    PluginDescriptor* GetBase() const;
    void SetBase(PluginDescriptor* base);

    /// `function` gives a new instance as a pointer to its Adapter, Parser, URIResolver or Object,
    /// which the caller deletes. A descriptor without it is a base and is never chosen.
    void SetInstanceFunction(InstanceFunction function);
    /// `function` sets the properties in the Configuration that it is given.
    void SetPropertiesFunction(PropertiesFunction function);

    /// Sets the plug-in's properties in `out`; nothing without a properties function.
    void GetProperties(Configuration& out) const;

    /// Appends all descriptors that have an instance function, in the order of registration.
    static void GetDescriptors(Array<PluginDescriptor*>& out);
    /// The same for one type.
    static void GetDescriptors(const int& type, Array<PluginDescriptor*>& out);

    /// An instance of a plug-in of the type, or null. For the types 2 and 3 the empty name matches
    /// any. The caller deletes it, unless it is an instance that the descriptor holds or the
    /// session's default resolver.
    static void* GetInstance(const int& type);
    static void* GetInstance(const int& type, const String& name);

    /// Forgets the held instance if it is this one. Every plug-in's destructor calls it.
    void RemoveInstance(void* instance);

    /// Makes `callback` the one that is asked for plug-ins that are missing; null for none. Not
    /// owned; it replaces the callback before it.
    static void RegisterCallback(PluginDescriptorCallback* callback);

    // Inside the library.
    /// Runs all plug-in nodes of the chain unless descriptors exist already.
    static void RegisterAll();
    /// Runs one plug-in node that arrives after the list was filled.
    static void Register(LinkNode* node);
    /// Gives each plug-in that isn't fit for several threads its lock; for `Initialise`.
    static void MakeMutexes();
    /// Takes the locks away again; for `Terminate`.
    static void FreeMutexes();
    /// Asks the registered callback; 0 when there is none.
    static int GetCallback(const int& type, const String& name);
    /// The session's default instance of a type, not owned. Only for type 3.
    static void SetDefaultInstance(int type, void* instance);
    static void* GetDefaultInstance(int type);
    PluginDescriptorImpl* GetImplementation() const { return m_impl; }

private:
    friend class internal::PluginRegistry;

    PluginDescriptor();

    PluginDescriptorImpl* m_impl;  // owned
};

/// A client's way to bring in plug-ins when they are asked for.
class ZORVEX_API PluginDescriptorCallback
{
public:
    PluginDescriptorCallback() = default;
    PluginDescriptorCallback(const PluginDescriptorCallback&) = delete;
    PluginDescriptorCallback& operator=(const PluginDescriptorCallback&) = delete;

    /// Unregisters the callback if it is the registered one.
    virtual ~PluginDescriptorCallback();

    /// Asked when no plug-in of the type and name is there, or no adapter takes the extension of a
    /// URI (then `name` is the URI). Non-zero when the plug-in has been made available.
    virtual int operator()(const int& type, const String& name) = 0;
};

}  // namespace zorvex_api
