#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class PluginDescriptor;
class PluginProcessData;
class Pointer;
struct AdapterImpl;

/// Operation codes of `Adapter::Process`.
enum AdapterOperation
{
    ZORVEX_OP_ADAPTER_IMPORT = 1,
    ZORVEX_OP_ADAPTER_EXPORT = 2,
    ZORVEX_OP_ADAPTER_GET = 3,
    ZORVEX_OP_ADAPTER_LOAD = 4,
    ZORVEX_OP_ADAPTER_SAVE = 5,
    ZORVEX_OP_ADAPTER_LOCATE = 6,
    ZORVEX_OP_ADAPTER_DESTROY = 7,
    ZORVEX_OP_ADAPTER_RESET = 8,
    ZORVEX_OP_ADAPTER_CLONE = 9,
    ZORVEX_OP_ADAPTER_INITALISE = 10,
    ZORVEX_OP_ADAPTER_TERMINATE = 11
};

/// Bits of the open mode of ZORVEX_OP_ADAPTER_GET, beside the mode bits of Stream.
enum AdapterGetMode
{
    ZORVEX_ADAPTER_GET_MODE_STREAM = 0x10000,
    ZORVEX_ADAPTER_GET_MODE_HANDLE = 0x20000
};

/// A member of a chain through which a document is reached: a plug-in that knows one format or one
/// way of holding things.
///
/// A format's adapter overrides GetPluginDescriptor and Process, and passes on to
/// `Adapter::Process` what it doesn't answer. An `Adapter` made directly has no format: it is a
/// location adapter and stands for a folder or a host. An instance stands in one chain at a time.
class ZORVEX_API Adapter : public Allocator
{
public:
    Adapter();
    Adapter(const Adapter&) = delete;
    Adapter& operator=(const Adapter&) = delete;

    /// The descriptor of the plug-in, not null. The base gives its own, which has no name.
    virtual PluginDescriptor* GetPluginDescriptor();

    /// Deletes the adapter below, unless that is borrowed.
    virtual ~Adapter();

    /// Answers one operation; failures go to the Result of slot 0.
    ///
    /// The base answers ZORVEX_OP_ADAPTER_GET, by asking the resolver for a stream. Other codes
    /// give error 6: "<format>::<operation> not implemented.", from code 9 on as WARNING, or
    /// "<format>:: invalid operation code." outside 1 to 11.
    virtual void Process(PluginProcessData* data);

    /// The descriptor of the base.
    static PluginDescriptor* GetStaticPluginDescriptor();

    /// The name in the plug-in's descriptor; empty for a location adapter.
    const String& GetFormat() const;

    /// What the adapter is to look for: a folder, a file name, a control string.
    const String& GetContext() const;
    void SetContext(const String& context);

    /// The adapter above, towards the document; not owned.
    Adapter* GetNext() const;
    void SetNext(Adapter* next);

    /// The adapter below, towards the resolver. Owned and deleted with this one, unless a chain
    /// that was built on a caller's adapter borrows it. Setting it doesn't delete the old one.
    Adapter* GetPrevious() const;
    void SetPrevious(Adapter* previous);

    /// Sets `pointer` to what this chain names, from its bottom up to this adapter.
    void ConstructPointer(Pointer& pointer);

    /// The library's record; owned by the adapter.
    AdapterImpl* GetImplementation() const { return m_impl; }

private:
    AdapterImpl* m_impl;  // owned
};

}  // namespace zorvex_api
