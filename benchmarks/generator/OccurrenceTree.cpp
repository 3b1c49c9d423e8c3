#include "generator/OccurrenceTree.h"

namespace zorvex_bench
{

std::vector<Occurrence> MakeOccurrences(const PartStructure& structure, std::uint32_t limit)
{
    std::vector<Occurrence> occurrences(1);
    for (std::uint32_t index = 0; index < occurrences.size() && occurrences.size() < limit; ++index)
    {
        const std::uint32_t partIndex = occurrences[index].part;
        const Part& part = structure.Parts()[partIndex];
        occurrences[index].firstChild = static_cast<std::uint32_t>(occurrences.size());
        occurrences[index].children = part.instances;
        for (std::uint32_t slot = 0; slot < part.instances; ++slot)
        {
            occurrences.push_back(
                {index, structure.Child(partIndex, slot), part.Instance(slot), 0, 0});
        }
    }
    return occurrences;
}

}  // namespace zorvex_bench
