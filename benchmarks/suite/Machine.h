#pragma once

#include <string>

namespace zorvex_bench
{

/// Processor, memory and system, in one line.
std::string DescribeMachine();

/// Today, as 2024-03-18.
std::string Today();

}  // namespace zorvex_bench
