#pragma once

#include <string>
#include <vector>

namespace zorvex_cli
{

/// Brings the arguments of `zorvex set` into an order in which a value like "-5" isn't taken for an
/// option: the options first, then "--", then FILE, ID, FIELD and VALUE. Other arguments come back
/// as they are.
std::vector<std::string> OrderSetArguments(const std::vector<std::string>& arguments);

}  // namespace zorvex_cli
