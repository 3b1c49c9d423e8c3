#pragma once

#include <string>
#include <vector>

#include "suite/Runs.h"
#include "suite/Samples.h"

namespace zorvex_bench
{

/// A line of the table of goals: smaller is better.
struct Goal
{
    std::string name;
    std::string document;
    std::string unit;
    double value = 0;
    double goal = 0;  // what is aimed at
    double must = 0;  // what has to hold
};

/// The goals that can be judged by what was measured.
std::vector<Goal> JudgeGoals(const Samples& samples, const std::vector<Document>& documents);

}  // namespace zorvex_bench
