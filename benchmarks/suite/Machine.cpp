#include "suite/Machine.h"

#include <sys/sysinfo.h>

#include <array>
#include <ctime>
#include <fstream>
#include <thread>

namespace zorvex_bench
{

namespace
{

/// The value of the first line "name: value" or "name=value" of a file; "?" without one.
std::string ValueIn(const char* file, const std::string& name)
{
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);)
    {
        if (line.compare(0, name.size(), name) == 0)
        {
            std::string value = line.substr(line.find_first_of(":=") + 1);
            value.erase(0, value.find_first_not_of(" \""));
            value.erase(value.find_last_not_of(" \"") + 1);
            return value;
        }
    }
    return "?";
}

}  // namespace

std::string DescribeMachine()
{
    struct sysinfo info
    {
    };
    sysinfo(&info);
    const unsigned long long gigabytes =
        static_cast<unsigned long long>(info.totalram) * info.mem_unit / 1000000000;
    return ValueIn("/proc/cpuinfo", "model name") + ", " +
           std::to_string(std::thread::hardware_concurrency()) + " processors, " +
           std::to_string(gigabytes) + " GB, " + ValueIn("/etc/os-release", "PRETTY_NAME") +
           ", g++ " + std::to_string(__GNUC__) + "." + std::to_string(__GNUC_MINOR__);
}

std::string Today()
{
    const std::time_t now = std::time(nullptr);
    std::array<char, 16> text;
    const std::size_t length =
        std::strftime(text.data(), text.size(), "%Y-%m-%d", std::gmtime(&now));
    return {text.data(), length};
}

}  // namespace zorvex_bench
