#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "Model.h"

namespace schemagen
{

/// The hand-written members of a class: what stands in its class body, and what that needs.
struct Members
{
    std::vector<std::string> includes;  // whole lines
    std::set<std::string> declared;     // classes of the same C++ namespace: "class Name;" lines
    std::string declarations;
};

/// Reads the files `folder`/<member>.inc that a class names. Raises VocabularyError when one can't
/// be read.
Members ReadMembers(const std::filesystem::path& folder, const Class& owner);

/// The names of the operations that a class declared in `header` has: identifiers before "(".
std::set<std::string> ReadOperationNames(const std::filesystem::path& header);

}  // namespace schemagen
