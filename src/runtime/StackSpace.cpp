#include "runtime/StackSpace.h"

#include <pthread.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zorvex_api::internal
{

namespace
{

constexpr std::size_t kReserve = 256 * 1024;  // what a level needs, sanitizers included

/// The part of a thread's stack that has no room for a new level; empty when it isn't known.
struct Exhausted
{
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
};

Exhausted FindExhausted() noexcept
{
    Exhausted part;
#ifdef __linux__
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
    {
        return part;
    }
    void* lowest = nullptr;
    std::size_t size = 0;
    if (pthread_attr_getstack(&attributes, &lowest, &size) == 0)
    {
        part.begin = reinterpret_cast<std::uintptr_t>(lowest);
        part.end = part.begin + std::min(kReserve, size / 4);
    }
    pthread_attr_destroy(&attributes);
#endif
    return part;
}

}  // namespace

bool HasStackSpace() noexcept
{
    thread_local const Exhausted t_exhausted = FindExhausted();
    // An application's own stack (of a fiber) lies elsewhere.
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    return here < t_exhausted.begin || here >= t_exhausted.end;
}

}  // namespace zorvex_api::internal
