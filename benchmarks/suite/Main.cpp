// benchmark_suite: makes the documents, runs the measured programs in turn, judges and reports.
#include <unistd.h>

#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "suite/Goals.h"
#include "suite/Report.h"
#include "suite/Runs.h"

namespace
{

namespace fs = std::filesystem;
using namespace zorvex_bench;

/// A folder that goes with the documents in it.
class WorkFolder
{
public:
    explicit WorkFolder(const fs::path& parent)
        : m_path(parent / ("work-" + std::to_string(getpid())))
    {
        fs::create_directories(m_path);
    }
    ~WorkFolder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    std::string Path() const { return m_path; }

private:
    fs::path m_path;
};

void Write(const fs::path& path, const std::string& text)
{
    std::ofstream out(path, std::ios::binary);
    out << text << std::flush;
    if (!out)
    {
        throw std::runtime_error("can't write " + path.string());
    }
}

bool Wants(const Settings& settings, const char* part)
{
    return settings.only.empty() || settings.only == part;
}

void RunSuite(Settings settings, const fs::path& output, const std::string& command)
{
    fs::create_directories(output);
    const WorkFolder work(output);
    settings.work = work.Path();
    Runs runs(settings);
    Findings findings;
    findings.command = command;
    findings.repetitions = settings.repetitions;

    if (Wants(settings, "load"))
    {
        for (const bool occurrences : {false, true})
        {
            for (const std::uint64_t size : settings.sizes)
            {
                findings.documents.push_back(runs.Make(size, occurrences));
                runs.Whole(findings.documents.back(), settings.only.empty());
                fs::remove(findings.documents.back().path);
            }
        }
    }
    if (Wants(settings, "instructions"))
    {
        runs.Instructions();
    }
    if (Wants(settings, "micro"))
    {
        runs.Micro();
    }
    findings.samples = &runs.Results();
    findings.goals = JudgeGoals(runs.Results(), findings.documents);
    const std::string report = MarkdownReport(findings);
    Write(output / "results.md", report);
    Write(output / "results.json", JsonReport(findings));
    std::cout << report;
}

}  // namespace

int main(int argc, char** argv)
{
    CLI::App app("Measures load, save, delete, walk, copy and access beside other libraries.");
    Settings settings;
    settings.programs = fs::path(argv[0]).parent_path().string();
    settings.sizes = {10000000, 100000000};
    std::string output = ".";
    std::string command = "./dev bench";
    bool large = false;
    app.add_option("--output", output, "The folder for results.md and results.json")
        ->capture_default_str();
    app.add_option("--sizes", settings.sizes, "Sizes of documents, as 10MB")
        ->delimiter(',')
        ->transform(CLI::AsSizeValue(true));
    app.add_flag("--large", large, "A document of 1 GB too");
    app.add_option("--repetitions", settings.repetitions, "Runs of each, for the median")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    app.add_option("--seed", settings.seed, "Another seed gives other documents")
        ->capture_default_str();
    app.add_option("--only", settings.only, "One part: load, instructions or micro")
        ->check(CLI::IsMember({"load", "instructions", "micro"}));
    CLI11_PARSE(app, argc, argv);

    for (int i = 1; i < argc; ++i)
    {
        if (std::string(argv[i]) == "--output")
        {
            ++i;
            continue;
        }
        command.append(" ").append(argv[i]);
    }
    if (large)
    {
        settings.sizes.push_back(1000000000);
    }
    try
    {
        RunSuite(settings, output, command);
        return 0;
    }
    catch (const std::exception& error)
    {
        std::cerr << "benchmark_suite: " << error.what() << '\n';
        return 1;
    }
}
