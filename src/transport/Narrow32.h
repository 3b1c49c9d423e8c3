#pragma once

#include <cstdint>
#include <limits>

namespace zorvex_api::internal
{

/// Gives a 64-bit result of a Stream through its 32-bit form: 0 and failure when it doesn't fit.
inline int Narrow32(int status, std::uint64_t value, std::uint32_t& out)
{
    out = 0;
    if (!status || value > std::numeric_limits<std::uint32_t>::max())
    {
        return 0;
    }
    out = static_cast<std::uint32_t>(value);
    return 1;
}

}  // namespace zorvex_api::internal
