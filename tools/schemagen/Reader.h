#pragma once

#include <filesystem>

#include "Model.h"

namespace schemagen
{

/// Reads `folder`/modules.txt and the module files that it names. Faults of form raise
/// VocabularyError; what refers to what isn't looked at (see Checker.h).
Vocabulary ReadVocabulary(const std::filesystem::path& folder);

}  // namespace schemagen
