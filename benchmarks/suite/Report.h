#pragma once

#include <string>
#include <vector>

#include "suite/Goals.h"
#include "suite/Runs.h"
#include "suite/Samples.h"

namespace zorvex_bench
{

/// Everything that a report tells.
struct Findings
{
    std::string command;
    std::vector<Document> documents;
    std::vector<Goal> goals;
    const Samples* samples = nullptr;  // not owned
    int repetitions = 0;
};

std::string MarkdownReport(const Findings& findings);
std::string JsonReport(const Findings& findings);

}  // namespace zorvex_bench
