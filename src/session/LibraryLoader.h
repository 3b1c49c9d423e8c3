#pragma once

#include <string>

namespace zorvex_api::internal
{

/// Loads a shared library, so that its static LinkNodes join the chain: the name as given, then
/// with its last part as "lib<name>.so". It stays loaded. False when neither can be loaded.
bool LoadLibraryByName(const std::string& name);

}  // namespace zorvex_api::internal
