#pragma once

#include <cstddef>
#include <vector>

#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

/// Standard allocator over Allocator, so that the application's hooks see the memory.
template <class T>
struct HookedAllocator
{
    using value_type = T;

    HookedAllocator() = default;
    template <class U>
    HookedAllocator(const HookedAllocator<U>&)
    {
    }

    T* allocate(std::size_t count)
    {
        return static_cast<T*>(Allocator::allocate(count * sizeof(T)));
    }
    void deallocate(T* block, std::size_t) { Allocator::deallocate(block); }

    friend bool operator==(const HookedAllocator&, const HookedAllocator&) { return true; }
};

template <class T>
using HookedVector = std::vector<T, HookedAllocator<T>>;

}  // namespace zorvex_api
