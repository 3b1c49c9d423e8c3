#pragma once

#include <utility>

#include "zorvex_api/Vector.h"

namespace zorvex_api::internal
{

/// The constant zero vector that bounds which aren't set refer to. It holds no block, so that
/// nothing of the application's allocator outlives the session.
inline const Vector& ZeroVector()
{
    struct Blockless
    {
        Vector vector;
        Blockless() { Vector drained(std::move(vector)); }
    };
    static const Blockless zero;
    return zero.vector;
}

}  // namespace zorvex_api::internal
