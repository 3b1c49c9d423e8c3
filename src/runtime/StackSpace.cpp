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

/// The lowest address that a new level may start from; 0 when it isn't known.
std::uintptr_t FindLimit() noexcept
{
    std::uintptr_t limit = 0;
#ifdef __linux__
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
    {
        return 0;
    }
    void* lowest = nullptr;
    std::size_t size = 0;
    if (pthread_attr_getstack(&attributes, &lowest, &size) == 0)
    {
        limit = reinterpret_cast<std::uintptr_t>(lowest) + std::min(kReserve, size / 4);
    }
    pthread_attr_destroy(&attributes);
#endif
    return limit;
}

}  // namespace

bool HasStackSpace() noexcept
{
    thread_local const std::uintptr_t t_limit = FindLimit();
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) > t_limit;
}

}  // namespace zorvex_api::internal
