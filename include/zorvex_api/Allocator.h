#pragma once

#include <cstddef>

#include "zorvex_api/Export.h"

namespace zorvex_api
{

/// An application's way to obtain memory. Given to `Initialise`, or to
/// `Allocator::RegisterHandlers`; it must live as long as any block that came from it.
class ZORVEX_API AllocatorBase
{
public:
    /// Gives a block of `size` bytes, aligned for every fundamental type. It may raise; null is
    /// reported to the library's caller as `std::bad_alloc`.
    virtual void* allocate(size_t size) = 0;
    virtual ~AllocatorBase();
};

/// An application's way to take memory back.
class ZORVEX_API DeAllocatorBase
{
public:
    /// Takes back a block of the `AllocatorBase` that was registered with this one. `block` can
    /// be null.
    virtual void deallocate(void* block) = 0;
    virtual ~DeAllocatorBase();
};

/// Base of everything that crosses the interface: all memory of the library goes through its
/// static operations, and so through the application's hooks if there are any.
///
/// A block goes back to where it came from: what was allocated before hooks were registered is
/// given to the C library, whatever is registered when it is freed.
class ZORVEX_API Allocator
{
public:
    /// Gives `size` bytes from the registered AllocatorBase, or from the C library.
    /// Raises `std::bad_alloc` when there is no memory.
    static void* allocate(size_t size);
    /// Takes back a block of `allocate`. Null is passed on to a registered DeAllocatorBase and is
    /// ignored otherwise.
    static void deallocate(void* block);

    static void* operator new(size_t size) { return allocate(size); }
    static void* operator new[](size_t size) { return allocate(size); }
    static void* operator new(size_t, void* place) noexcept { return place; }
    static void operator delete(void* block) { deallocate(block); }
    static void operator delete[](void* block) { deallocate(block); }
    static void operator delete(void*, void*) noexcept {}

    /// Copies `size` bytes between blocks that don't overlap. Nothing happens for size 0.
    static void copy(void* to, const void* from, size_t size);
    /// Copies `size` bytes between blocks that may overlap.
    static void move(void* to, const void* from, size_t size);
    /// Fills `size` bytes with `value`.
    static void set(void* to, int value, size_t size);
    /// Compares `size` bytes: -1, 0 or 1, the sign of the first difference.
    static int compare(const void* left, const void* right, size_t size);

    /// Registers the application's hooks; both null takes them off again.
    static void RegisterHandlers(AllocatorBase* allocator, DeAllocatorBase* deallocator);
    static AllocatorBase* GetAllocator();
    static DeAllocatorBase* GetDeAllocator();

private:
    static AllocatorBase* pAllocatorBase;
    static DeAllocatorBase* pDeAllocatorBase;
};

}  // namespace zorvex_api
