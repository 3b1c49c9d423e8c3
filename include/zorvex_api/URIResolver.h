#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{

class PluginDescriptor;
class PluginProcessData;
class Pointer;
struct URIResolverImpl;

/// Turns a name into a Stream, and remembers which objects were loaded from which Pointer.
///
/// An application derives from it to veto or redirect references (the codes 1 and 2 of Process,
/// with the Pointer in slot 4 and the answer in slot 6), or to open streams of its own (code 3). A
/// relative Pointer is meant from the folder of the document that refers. A resolver owns no
/// objects: an object that dies leaves all resolvers. The tables are guarded by a lock of
/// the library; an instance may outlive loads, but serves one thread at a time.
class ZORVEX_API URIResolver : public Allocator
{
public:
    URIResolver();
    URIResolver(const URIResolver&) = delete;
    URIResolver& operator=(const URIResolver&) = delete;

    virtual PluginDescriptor* GetPluginDescriptor();

    /// Stops being the session's default resolver, if it is that.
    virtual ~URIResolver();

    /// Codes 1 (may this reference be followed or saved?) and 2 (may it be loaded?): the int of
    /// slot 6 becomes 1. Code 3: opens the stream named in slot 9 with the mode of slot 5 and
    /// stores it in slot 7; file paths and the scheme "file". Failures are error 2 in slot 0.
    virtual void Process(PluginProcessData* data);

    /// Notes that `handle` stands for `pointer`. A handle keeps its first pointer, but is found
    /// under all. A pointer with a STREAM element isn't noted.
    virtual Result RegisterObject(const Handle& handle, const Pointer& pointer);

    /// Empties `handles` and gives what is registered for `pointer`. With a chain: the first handle
    /// of exactly this pointer, and 1, or 0 for none. Without a chain: all handles of the same
    /// absolute path, and always 1.
    virtual int FindObjects(const Pointer& pointer, Array<Handle>& handles);

    /// The first pointer that `handle` was registered under; 0 for an unknown handle.
    virtual int FindPointer(const Handle& handle, Pointer& pointer);

    /// Moves all registrations of `old` to `replacement`; 0 when `old` isn't registered or equals
    /// `replacement`, else 1.
    virtual int ReplaceObject(const Handle& old, const Handle& replacement);

    /// Forgets the handle. An unknown handle is no error.
    Result DeregisterObject(const Handle& handle);

    static PluginDescriptor* GetStaticPluginDescriptor();

private:
    URIResolverImpl* m_impl;  // owned
};

}  // namespace zorvex_api
