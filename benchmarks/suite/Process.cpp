#include "suite/Process.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <stdexcept>

namespace zorvex_bench
{

namespace
{

[[noreturn]] void Fail(const std::vector<std::string>& command, const std::string& why)
{
    std::string text;
    for (const std::string& word : command)
    {
        text.append(word).append(" ");
    }
    throw std::runtime_error(text + "- " + why);
}

std::string ReadAll(int file)
{
    std::string text;
    std::array<char, 65536> block;
    for (;;)
    {
        const ssize_t count = read(file, block.data(), block.size());
        if (count > 0)
        {
            text.append(block.data(), static_cast<std::size_t>(count));
        }
        else if (count == 0 || errno != EINTR)
        {
            return text;
        }
    }
}

[[noreturn]] void Become(const std::vector<std::string>& command, int output)
{
    std::vector<char*> words;
    for (const std::string& word : command)
    {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    dup2(output, STDOUT_FILENO);
    execvp(words[0], words.data());
    _exit(127);
}

double Seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

}  // namespace

Outcome RunProgram(const std::vector<std::string>& command)
{
    std::array<int, 2> ends;
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
    {
        Fail(command, "there is no pipe");
    }
    const pid_t child = fork();
    if (child == 0)
    {
        Become(command, ends[1]);
    }
    close(ends[1]);
    Outcome outcome;
    if (child > 0)
    {
        outcome.output = ReadAll(ends[0]);
    }
    close(ends[0]);

    int status = -1;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child)
    {
        Fail(command, "couldn't be started");
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    {
        Fail(command, WIFEXITED(status) ? "exit code " + std::to_string(WEXITSTATUS(status))
                                        : "signal " + std::to_string(WTERMSIG(status)));
    }
    outcome.cpuSeconds = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
    outcome.peak = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
    return outcome;
}

std::uint64_t CountInstructions(const std::vector<std::string>& command, const std::string& profile)
{
    std::vector<std::string> counted{"valgrind", "-q", "--tool=callgrind", "--cache-sim=no",
                                     "--callgrind-out-file=" + profile};
    counted.insert(counted.end(), command.begin(), command.end());
    RunProgram(counted);

    std::ifstream in(profile);
    const std::string wanted = "totals: ";
    std::uint64_t instructions = 0;
    for (std::string line; std::getline(in, line);)
    {
        if (line.compare(0, wanted.size(), wanted) == 0)
        {
            instructions = std::stoull(line.substr(wanted.size()));
        }
    }
    if (instructions == 0)
    {
        Fail(counted, "no count");
    }
    return instructions;
}

}  // namespace zorvex_bench
