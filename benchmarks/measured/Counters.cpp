#include "measured/Counters.h"

#include <malloc.h>
#include <time.h>

#include <fstream>
#include <stdexcept>
#include <string>

namespace zorvex_bench
{

namespace
{

/// A line of the kernel's account of this process, which is in kB.
std::uint64_t StatusBytes(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
    {
        if (line.compare(0, name.size(), name) == 0)
        {
            return std::stoull(line.substr(name.size())) * 1024;
        }
    }
    throw std::runtime_error("the kernel doesn't tell " + name);
}

}  // namespace

double CpuSeconds()
{
    timespec now{};
    if (clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now) != 0)
    {
        throw std::runtime_error("there is no clock of processor time");
    }
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

Memory MemoryNow()
{
    const struct mallinfo2 info = mallinfo2();
    return {info.uordblks + info.hblkhd, StatusBytes("VmRSS:"), StatusBytes("VmHWM:")};
}

void ResetPeak()
{
    malloc_trim(0);
    std::ofstream clear("/proc/self/clear_refs");
    clear << '5' << std::flush;
    if (!clear)
    {
        throw std::runtime_error("the peak of memory can't be reset");
    }
}

}  // namespace zorvex_bench
