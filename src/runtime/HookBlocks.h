#pragma once

#include <cstddef>

namespace zorvex_api
{

class DeAllocatorBase;

namespace internal
{

/// The blocks that came from an application's hooks, each with the hook that takes it back, so
/// that every block returns to where it came from. Used only once hooks have been registered.
class HookBlocks
{
public:
    static void Add(void* block, DeAllocatorBase* owner);
    /// The hook a block came from, now forgotten here, or null for a block of the C library.
    static DeAllocatorBase* Remove(void* block);
    /// True once any block has been added.
    static bool AnyEver();
};

/// While one lives, this thread's allocations come from the C library even if hooks are
/// registered: for state that stays when the session ends.
class UnhookedScope
{
public:
    UnhookedScope();
    ~UnhookedScope();
    UnhookedScope(const UnhookedScope&) = delete;
    UnhookedScope& operator=(const UnhookedScope&) = delete;

    static bool IsActive();
};

}  // namespace internal
}  // namespace zorvex_api
