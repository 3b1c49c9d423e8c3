#pragma once

#include <cstdint>
#include <vector>

namespace zorvex_bench
{

/// A number that becomes the id "idN" of an element.
using IdNumber = std::uint32_t;

/// One part: a master, a revision and a view, and for an assembly the instances in it.
///
/// Its elements have ids out of one block of numbers. Not every number is used: ids of real
/// documents have gaps.
struct Part
{
    IdNumber firstId = 0;
    std::uint8_t instances = 0;  // 0 for a single part
    bool hasText = false;        // its name in several languages
    bool hasMasterData = false;  // user data at the master

    IdNumber View() const { return firstId; }
    IdNumber Master() const { return firstId + 1; }
    IdNumber Revision() const { return firstId + 2; }
    IdNumber Bound() const { return firstId + 3; }
    IdNumber MasterData() const { return firstId + 4; }
    IdNumber Text() const { return firstId + 5; }
    IdNumber Instance(std::uint32_t slot) const { return firstId + 6 + 3 * slot; }
    IdNumber Transform(std::uint32_t slot) const { return Instance(slot) + 1; }
    IdNumber InstanceData(std::uint32_t slot) const { return Instance(slot) + 2; }
    IdNumber End() const { return Instance(instances); }
};

/// The parts of a product in layers: the product is alone in the first, single parts are in the
/// last, and an assembly places parts of deeper layers. Every part is placed, most several times.
class PartStructure
{
public:
    PartStructure(std::uint64_t seed, std::uint32_t parts, IdNumber firstId);

    /// The parts from the product down.
    const std::vector<Part>& Parts() const { return m_parts; }
    /// The index of the part that instance `slot` of the assembly `index` places.
    std::uint32_t Child(std::uint32_t index, std::uint32_t slot) const;
    /// The first number that no part uses.
    IdNumber EndId() const { return m_parts.back().End(); }

private:
    std::uint32_t LayerOf(std::uint32_t index) const;

    std::uint64_t m_seed;
    std::vector<std::uint32_t> m_layers;  // index of the first part of each; ends with the count
    std::vector<Part> m_parts;
};

}  // namespace zorvex_bench
