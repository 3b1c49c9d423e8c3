#pragma once

#include <cstddef>
#include <filesystem>

#include "Model.h"

namespace schemagen
{

struct Settings
{
    std::filesystem::path vocabulary;
    std::filesystem::path members;
    std::filesystem::path objectHeader;
    std::filesystem::path out;
    std::filesystem::path reference;  // empty: none
    std::size_t classSources = 1;
    std::size_t enumSources = 1;
};

/// Writes everything that is made from a checked vocabulary. The same input gives the same bytes.
void Generate(const Vocabulary& vocabulary, const Settings& settings);

}  // namespace schemagen
