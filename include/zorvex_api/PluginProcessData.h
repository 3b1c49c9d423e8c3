#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"

namespace zorvex_api
{

struct PluginProcessDataImpl;

/// The argument of every `Process` call of a plug-in: an operation code and 19 slots.
///
/// What a slot holds is the same in all operations:
///
/// | Slot | Holds |
/// |---|---|
/// | 0 | `Result*` |
/// | 1 | `Configuration*` |
/// | 2 | `Object*`; for a resolver's codes 1 and 2 the owner of the reference, which may be null |
/// | 3 | `const char*`, UTF-8: for a resolver's codes 1 and 2 the name of the reference's field |
/// | 4 | `Pointer*`, for a resolver's codes 1 and 2: where the reference leads; may be changed |
/// | 5 | `unsigned int*`, the open mode |
/// | 6 | `int*`, a resolver's answer to the codes 1 and 2 |
/// | 7 | `Stream**`, where a stream comes out; it belongs to whoever asked |
/// | 8 | `Stream*` |
/// | 9 | `String*`, the name for a resolver |
/// | 10 | `Array<Handle>*`, the objects of the operation |
/// | 11 | `Array<Handle>*`, results of a location |
/// | 12 | `String*`, a locator |
/// | 16 | `Adapter**`, a clone |
/// | -1 | a locator as wide text, `const unsigned short*` |
/// | -2 | `URIResolver*` |
///
/// The slots own nothing. For one call, on one thread.
class ZORVEX_API PluginProcessData : public Allocator
{
public:
    /// All slots null, operation code 0.
    PluginProcessData();
    ~PluginProcessData();

    PluginProcessData(const PluginProcessData&) = delete;
    PluginProcessData& operator=(const PluginProcessData&) = delete;

    /// Stores `value` in a slot, 0 to 16, -1 or -2. Any other number does nothing.
    void Set(int slot, void* value);
    /// Reads a slot into `value`. Any other number leaves `value` alone.
    void Get(int slot, void*& value) const;

private:
    PluginProcessDataImpl* m_impl;  // owned

public:
    int m_operation;  ///< The operation code; set by the caller before `Process`.
};

}  // namespace zorvex_api
