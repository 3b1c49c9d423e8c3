#include "suite/Runs.h"

#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "generator/DocumentGenerator.h"
#include "suite/Process.h"

namespace zorvex_bench
{

namespace
{

using nlohmann::json;

constexpr std::uint64_t kTinyBytes = 20000;
constexpr std::uint64_t kInstructionBytes = 3000000;
// Its time grows with the square of the size when text has escapes in it: each piece of text that
// grows makes it search all blocks of the document.
constexpr std::uint64_t kLargestForXercesDom = 20000000;
// Two trees of a larger document don't fit into the memory of most machines.
constexpr std::uint64_t kLargestToCopy = 200000000;

std::string SizeName(std::uint64_t bytes)
{
    return bytes % 1000000 == 0 ? std::to_string(bytes / 1000000) + " MB"
                                : std::to_string(bytes / 1000) + " kB";
}

/// The name of a benchmark without its parameters.
std::string TestName(const std::string& name)
{
    return name.substr(0, name.find('/'));
}

}  // namespace

Runs::Runs(const Settings& settings) : m_settings(settings)
{
    m_tiny = Make(kTinyBytes, true);
}

Document Runs::Make(std::uint64_t bytes, bool occurrences) const
{
    DocumentPlan plan;
    plan.bytes = bytes;
    plan.seed = m_settings.seed;
    plan.occurrences = occurrences;

    Document document;
    document.name = SizeName(bytes) + (occurrences ? " with occurrences" : "");
    document.path = m_settings.work + "/" + std::to_string(bytes) +
                    (occurrences ? "-occurrences" : "") + ".zorvex";
    document.occurrences = occurrences;
    std::ofstream out(document.path, std::ios::binary);
    document.facts = WriteDocument(out, plan);
    return document;
}

void Runs::Whole(const Document& document, bool all)
{
    std::vector<std::string> subjects{"zorvex", "xerces_sax"};
    if (all)
    {
        subjects.insert(subjects.end(), {"pugixml", "libxml2"});
        if (document.facts.bytes <= kLargestForXercesDom)
        {
            subjects.push_back("xerces_dom");
        }
    }
    for (int i = 0; i < m_settings.repetitions; ++i)
    {
        std::cerr << document.name << ", " << i + 1 << " of " << m_settings.repetitions << '\n';
        for (const std::string& subject : subjects)
        {
            RunOnce(document, subject, all);
        }
    }
}

void Runs::RunOnce(const Document& document, const std::string& subject, bool all)
{
    std::vector<std::string> command{Program("measure_" + subject),
                                     document.path,
                                     "--warm-up",
                                     m_tiny.path,
                                     "--elements",
                                     std::to_string(document.facts.elements),
                                     "--references",
                                     std::to_string(document.facts.references)};
    if (all)
    {
        command.insert(command.end(), {"--save", m_settings.work + "/saved.zorvex"});
    }
    if (all && document.facts.bytes <= kLargestToCopy)
    {
        command.push_back("--copy");
    }
    const Outcome outcome = RunProgram(command);
    const json values = json::parse(outcome.output);
    for (const auto& [quantity, value] : values.items())
    {
        m_samples.Add(document.name, subject, quantity, value.get<double>());
    }
    m_samples.Add(document.name, subject, "process", outcome.cpuSeconds);
    m_samples.Add(document.name, subject, "process peak", static_cast<double>(outcome.peak));
}

void Runs::Instructions()
{
    const Document document = Make(kInstructionBytes, false);
    for (const std::string subject : {"zorvex", "xerces_sax"})
    {
        std::cerr << "instructions of " << subject << '\n';
        const std::string program = Program("measure_" + subject);
        const std::string profile = m_settings.work + "/callgrind.out";
        const std::uint64_t whole =
            CountInstructions({program, document.path, "--load-only"}, profile);
        const std::uint64_t start =
            CountInstructions({program, m_tiny.path, "--load-only"}, profile);
        m_samples.Add(kInstructions, subject, "instructions", static_cast<double>(whole - start));
    }
}

void Runs::Micro()
{
    std::cerr << "accessors and sessions\n";
    RunMicro({Program("access_benchmark"),
              "--benchmark_repetitions=" + std::to_string(m_settings.repetitions)});
    for (int i = 0; i < m_settings.repetitions; ++i)
    {
        RunMicro({Program("session_benchmark")});
    }
}

void Runs::RunMicro(std::vector<std::string> command)
{
    command.push_back("--benchmark_format=json");
    const json report = json::parse(RunProgram(command).output);
    for (const json& run : report.at("benchmarks"))
    {
        if (run.contains("error_occurred"))
        {
            throw std::runtime_error(run.at("error_message").get<std::string>());
        }
        if (run.at("run_type") == "iteration")
        {
            const double values = run.value("values", 1.0);
            m_samples.Add(kMicro, "zorvex", TestName(run.at("run_name")),
                          run.at("cpu_time").get<double>() / values);
        }
    }
}

}  // namespace zorvex_bench
