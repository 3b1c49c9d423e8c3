#pragma once

#include <cstdint>

namespace zorvex_api::internal
{

/// A number that differs from process to process: hashes of ids start from it.
std::uint64_t IdSeed();

}  // namespace zorvex_api::internal
