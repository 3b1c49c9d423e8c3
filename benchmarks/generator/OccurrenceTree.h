#pragma once

#include <cstdint>
#include <vector>

#include "generator/PartStructure.h"

namespace zorvex_bench
{

/// One place of a part in the product: a node of the structure without sharing.
struct Occurrence
{
    std::uint32_t parent = 0;  // index of the occurrence above; the first has none
    std::uint32_t part = 0;    // index of the part
    IdNumber instance = 0;     // the instance that places it; 0 for the first
    std::uint32_t firstChild = 0;
    std::uint32_t children = 0;
};

/// The occurrences of a product, level by level, until there are about `limit` of them: a view
/// that isn't opened any further. An opened assembly shows all that is in it.
std::vector<Occurrence> MakeOccurrences(const PartStructure& structure, std::uint32_t limit);

}  // namespace zorvex_bench
