#include "generator/PartStructure.h"

#include <algorithm>
#include <cmath>

#include "generator/Kinds.h"
#include "generator/Random.h"

namespace zorvex_bench
{

namespace
{

// Of a layer to the next deeper one. Below kFirstSlots, so that the first instances of all
// assemblies of a layer reach every part of the next.
constexpr double kWiden = 3.0;
constexpr std::uint32_t kFirstSlots = 4;
constexpr std::uint32_t kSmallestAssembly = kFirstSlots;
constexpr std::uint32_t kLargestAssembly = 12;

/// The first part of each layer, and the number of parts.
std::vector<std::uint32_t> Layers(std::uint32_t parts)
{
    std::vector<std::uint32_t> sizes;  // from the single parts up
    double size = parts * (kWiden - 1.0) / kWiden;
    std::uint32_t left = parts - 1;
    while (left > 0)
    {
        const auto wanted = static_cast<std::uint32_t>(std::ceil(size));
        // The last layer below the product takes what is left.
        const std::uint32_t taken = wanted < kFirstSlots ? left : std::min(left, wanted);
        sizes.push_back(taken);
        left -= taken;
        size /= kWiden;
    }
    std::vector<std::uint32_t> firsts{0};
    std::uint32_t first = 1;
    for (auto one = sizes.rbegin(); one != sizes.rend(); ++one)
    {
        firsts.push_back(first);
        first += *one;
    }
    firsts.push_back(first);
    return firsts;
}

}  // namespace

PartStructure::PartStructure(std::uint64_t seed, std::uint32_t parts, IdNumber firstId)
    : m_seed(seed), m_layers(Layers(parts)), m_parts(parts)
{
    const std::uint32_t firstSingle = m_layers[m_layers.size() - 2];
    for (std::uint32_t index = 0; index < parts; ++index)
    {
        Random random(seed, kPartKind, index);
        Part& part = m_parts[index];
        part.firstId = firstId;
        if (index < firstSingle)
        {
            part.instances = static_cast<std::uint8_t>(
                kSmallestAssembly + random.Below(kLargestAssembly - kSmallestAssembly + 1));
        }
        part.hasText = random.Chance(50);
        part.hasMasterData = random.Chance(40);
        firstId = part.End();
    }
}

std::uint32_t PartStructure::LayerOf(std::uint32_t index) const
{
    return static_cast<std::uint32_t>(std::upper_bound(m_layers.begin(), m_layers.end(), index) -
                                      m_layers.begin() - 1);
}

std::uint32_t PartStructure::Child(std::uint32_t index, std::uint32_t slot) const
{
    const std::uint32_t layer = LayerOf(index);
    const std::uint32_t first = m_layers[layer + 1];
    const std::uint32_t size = m_layers[layer + 2] - first;
    if (slot < kFirstSlots)
    {
        return first + ((index - m_layers[layer]) * kFirstSlots + slot) % size;
    }
    Random random(m_seed, kChildKind, std::uint64_t{index} * kLargestAssembly + slot);
    if (random.Chance(70))
    {
        return first + random.Below(size);
    }
    // Screws and the like go into assemblies of every layer.
    const std::uint32_t firstSingle = m_layers[m_layers.size() - 2];
    return firstSingle + random.Below(m_layers.back() - firstSingle);
}

}  // namespace zorvex_bench
