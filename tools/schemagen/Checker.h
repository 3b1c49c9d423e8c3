#pragma once

#include "Model.h"

namespace schemagen
{

/// Resolves everything that refers to something else and checks the whole: unknown bases, classes
/// and enumerations, duplicates, defaults that are no value of their field, the counts of each
/// module. The first fault raises VocabularyError.
void CheckVocabulary(Vocabulary& vocabulary);

}  // namespace schemagen
