#pragma once

#include <cmath>

namespace zorvex_api::internal
{

/// A component of a Vector as the limiting operations leave it. The upper limit is positive for
/// negative components too; a NaN stays.
inline double RangeLimited(double component)
{
    if (std::fabs(component) < 1e-36)
    {
        return 0.0;
    }
    return std::fabs(component) > 1e36 ? 1e36 : component;
}

}  // namespace zorvex_api::internal
