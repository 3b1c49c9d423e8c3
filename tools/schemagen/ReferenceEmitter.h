#pragma once

#include "Model.h"
#include "OutputFolder.h"

namespace schemagen
{

/// Writes the vocabulary as HTML for people: "index.html" with the tree of classes, and a page for
/// each module with its classes, fields and enumerations.
void WriteReference(const Vocabulary& vocabulary, OutputFolder& out);

}  // namespace schemagen
