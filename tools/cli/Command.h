#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace zorvex_cli
{

/// What the command line asked for: set while it is parsed, run within a session afterwards, gives
/// the exit code.
using Action = std::function<int()>;

// Each adds its subcommand to `app`. The subcommand sets `action` when it is chosen; `app` and
// `action` must outlive the parsing and the run.
void AddInfo(CLI::App& app, Action& action);
void AddConvert(CLI::App& app, Action& action);
void AddTree(CLI::App& app, Action& action);
void AddGet(CLI::App& app, Action& action);
void AddSet(CLI::App& app, Action& action);
void AddClasses(CLI::App& app, Action& action);
void AddCheck(CLI::App& app, Action& action);

}  // namespace zorvex_cli
