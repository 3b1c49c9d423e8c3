#include "CommandRunner.h"

#include <stdlib.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace zorvex_cli_tests
{
namespace
{

namespace fs = std::filesystem;

std::string Quoted(const std::string& text)
{
    std::string quoted = "'";
    for (const char c : text)
    {
        quoted += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return quoted + "'";
}

std::string Read(const fs::path& path)
{
    const std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace

CommandRunner::CommandRunner()
{
    std::string pattern = (fs::temp_directory_path() / "zorvex-cli-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
    {
        throw std::runtime_error("no temporary folder");
    }
    m_folder = pattern;
    fs::copy(ZORVEX_EXAMPLE_DATA_DIR, m_folder, fs::copy_options::recursive);
}

CommandRunner::~CommandRunner()
{
    std::error_code ignored;  // a left-over folder harms no test
    fs::remove_all(m_folder, ignored);
}

Outcome CommandRunner::Run(const std::vector<std::string>& arguments) const
{
    std::string command = "cd " + Quoted(m_folder.string()) + " && " + Quoted(ZORVEX_COMMAND);
    for (const std::string& argument : arguments)
    {
        command += " " + Quoted(argument);
    }
    command += " >.out 2>.err </dev/null";

    Outcome outcome;
    const int status = std::system(command.c_str());
    outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.out = Read(m_folder / ".out");
    outcome.err = Read(m_folder / ".err");
    return outcome;
}

void CommandRunner::WriteFile(const std::string& name, const std::string& text) const
{
    std::ofstream(m_folder / name, std::ios::binary) << text;
}

std::string CommandRunner::ReadFile(const std::string& name) const
{
    return Read(m_folder / name);
}

bool CommandRunner::HasFile(const std::string& name) const
{
    return fs::exists(m_folder / name);
}

}  // namespace zorvex_cli_tests
