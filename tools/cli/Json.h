#pragma once

#include <iostream>
#include <nlohmann/json.hpp>

namespace zorvex_cli
{

/// Keys stay in the order in which they are set.
using Json = nlohmann::ordered_json;

/// Writes `json` to standard output. Text that is no proper UTF-8 comes out with U+FFFD.
inline void Write(const Json& json)
{
    std::cout << json.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace zorvex_cli
