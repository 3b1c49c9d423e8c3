#pragma once

#include <cstdint>
#include <ostream>

#include "generator/ElementWriter.h"

namespace zorvex_bench
{

/// What document is wanted. Equal plans give equal bytes.
struct DocumentPlan
{
    std::uint64_t bytes = 1 << 20;  // about; a document is never smaller than some 20 kB
    std::uint64_t seed = 1;
    bool occurrences = false;  // with a product view of occurrences
};

/// Writes a document as a system that manages products would: masters, revisions, views, instances
/// with transforms, materials, user data, names in several languages, and references by id between
/// all of them. It loads without a message.
///
/// @return what was written
/// @throws std::runtime_error when `out` fails
DocumentFacts WriteDocument(std::ostream& out, const DocumentPlan& plan);

}  // namespace zorvex_bench
