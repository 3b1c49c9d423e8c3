#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zorvex_bench
{

/// What a program left behind.
struct Outcome
{
    std::string output;      // what it wrote to standard output
    double cpuSeconds = 0;   // of the whole process, in user and system mode
    std::uint64_t peak = 0;  // bytes of memory, at most
};

/// Runs a program to its end; nothing else runs beside it. Its messages go to our standard error.
///
/// @throws std::runtime_error when it can't be run or doesn't end with exit code 0
Outcome RunProgram(const std::vector<std::string>& command);

/// The instructions that a program executes in user mode, counted by callgrind, which leaves its
/// file at `profile`.
std::uint64_t CountInstructions(const std::vector<std::string>& command,
                                const std::string& profile);

}  // namespace zorvex_bench
