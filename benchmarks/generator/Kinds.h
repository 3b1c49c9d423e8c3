#pragma once

#include <cstdint>

namespace zorvex_bench
{

/// The things of a document that draw random numbers, each from its own sequence.
enum Kind : std::uint64_t
{
    kPartKind,
    kChildKind,
    kNameKind,
    kInstanceKind,
    kViewKind,
    kMasterKind,
    kTextKind,
    kMaterialKind
};

}  // namespace zorvex_bench
