#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zorvex_cli_tests
{

/// What one run of the command gave.
struct Outcome
{
    int code = -1;
    std::string out;
    std::string err;
};

/// A folder with a copy of the example documents, and the command to run in it.
class CommandRunner
{
public:
    CommandRunner();
    ~CommandRunner();

    CommandRunner(const CommandRunner&) = delete;
    CommandRunner& operator=(const CommandRunner&) = delete;

    /// Runs `zorvex` with these arguments in the folder.
    Outcome Run(const std::vector<std::string>& arguments) const;

    void WriteFile(const std::string& name, const std::string& text) const;
    std::string ReadFile(const std::string& name) const;
    bool HasFile(const std::string& name) const;

private:
    std::filesystem::path m_folder;
};

}  // namespace zorvex_cli_tests
