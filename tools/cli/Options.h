#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "zorvex_api/Configuration.h"

namespace zorvex_cli
{

/// The `-o name=value` options of a subcommand.
struct Options
{
    std::vector<std::string> pairs;

    /// Adds `-o` to `command`, which checks the form of what it is given.
    void AddTo(CLI::App& command);

    /// Sets the options in `configuration`.
    void Fill(zorvex_api::Configuration& configuration) const;
};

}  // namespace zorvex_cli
