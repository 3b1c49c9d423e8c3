#pragma once

#include <cstdint>

namespace zorvex_bench
{

/// Seconds of processor time of this process so far, all threads, in user and system mode.
double CpuSeconds();

/// Memory of this process in bytes.
struct Memory
{
    std::uint64_t heap = 0;      // blocks in use, as malloc counts them, with its headers
    std::uint64_t resident = 0;  // pages in memory
    std::uint64_t peak = 0;      // most pages in memory since ResetPeak
};

Memory MemoryNow();

/// Begins a new peak at what is resident now, after what malloc holds free was given back.
void ResetPeak();

}  // namespace zorvex_bench
