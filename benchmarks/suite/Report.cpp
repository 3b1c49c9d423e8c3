#include "suite/Report.h"

#include <cstdarg>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "suite/Machine.h"

namespace zorvex_bench
{

namespace
{

using nlohmann::json;

// The quantities of a table, with the unit in which they are shown.
struct Column
{
    const char* quantity;
    const char* title;
    double unit;
};

constexpr Column kColumns[] = {{"load", "load s", 1},       {"walk", "walk s", 1},
                               {"copy", "copy s", 1},       {"save", "save s", 1},
                               {"delete", "delete s", 1},   {"heap", "kept MB", 1e6},
                               {"resident", "RSS MB", 1e6}, {"peak", "peak MB", 1e6}};

constexpr const char* kSubjects[][2] = {{"zorvex", "zorvexSDK"},
                                        {"xerces_sax", "Xerces SAX pass"},
                                        {"pugixml", "pugixml, ids and references"},
                                        {"libxml2", "libxml2, ids and references"},
                                        {"xerces_dom", "Xerces DOM"}};

[[gnu::format(printf, 1, 2)]] std::string Print(const char* format, ...)
{
    char text[512];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

const char* Verdict(const Goal& goal)
{
    if (goal.value <= goal.goal)
    {
        return "goal";
    }
    return goal.value <= goal.must ? "must" : "**missed**";
}

std::string GoalTable(const std::vector<Goal>& goals)
{
    std::string text =
        "| | document | measured | goal | must | reached |\n|---|---|--:|--:|--:|---|\n";
    for (const Goal& goal : goals)
    {
        text += Print("| %s | %s | %.4g %s | %.4g | %.4g | %s |\n", goal.name.c_str(),
                      goal.document.c_str(), goal.value, goal.unit.c_str(), goal.goal, goal.must,
                      Verdict(goal));
    }
    return text;
}

std::string RawTable(const Samples& samples, const Document& document)
{
    std::string text = "\n### " + document.name + "\n\n";
    text += Print(
        "%.1f MB, %llu elements of %.1f bytes, %.2f attributes and %.2f references each.\n\n",
        static_cast<double>(document.facts.bytes) / 1e6,
        static_cast<unsigned long long>(document.facts.elements),
        static_cast<double>(document.facts.bytes) / static_cast<double>(document.facts.elements),
        static_cast<double>(document.facts.attributes) /
            static_cast<double>(document.facts.elements),
        static_cast<double>(document.facts.references) /
            static_cast<double>(document.facts.elements));
    std::string line = "|---|";
    text += "| |";
    for (const Column& column : kColumns)
    {
        text += std::string(" ") + column.title + " |";
        line += "--:|";
    }
    text += "\n" + line + "\n";
    for (const auto& [subject, title] : kSubjects)
    {
        if (!samples.Has(document.name, subject, "load"))
        {
            continue;
        }
        text += std::string("| ") + title + " |";
        for (const Column& column : kColumns)
        {
            text += samples.Has(document.name, subject, column.quantity)
                        ? Print(" %.4g |", samples.Median(document.name, subject, column.quantity) /
                                               column.unit)
                        : std::string(" |");
        }
        text += "\n";
    }
    return text;
}

std::string OtherTable(const Samples& samples)
{
    std::string text;
    for (const auto& [key, values] : samples.All())
    {
        const auto& [document, subject, quantity] = key;
        if (document == kMicro)
        {
            text += Print("| %s | %.5g ns |\n", quantity.c_str(), Samples::MedianOf(values));
        }
        else if (quantity == "instructions")
        {
            text += Print("| instructions, %s, %s | %.4g million |\n", document.c_str(),
                          subject.c_str(), Samples::MedianOf(values) / 1e6);
        }
    }
    return text.empty() ? text : "\n### Others\n\n| | |\n|---|--:|\n" + text;
}

}  // namespace

std::string MarkdownReport(const Findings& findings)
{
    std::string text = Today() + ", " + DescribeMachine() + ", `" + findings.command +
                       "`, medians of " + std::to_string(findings.repetitions) + " runs.\n\n";
    text += GoalTable(findings.goals);
    for (const Document& document : findings.documents)
    {
        if (findings.samples->Has(document.name, "zorvex", "load"))
        {
            text += RawTable(*findings.samples, document);
        }
    }
    return text + OtherTable(*findings.samples);
}

std::string JsonReport(const Findings& findings)
{
    json report{{"date", Today()},
                {"machine", DescribeMachine()},
                {"command", findings.command},
                {"repetitions", findings.repetitions}};
    for (const Goal& goal : findings.goals)
    {
        report["goals"].push_back({{"name", goal.name},
                                   {"document", goal.document},
                                   {"unit", goal.unit},
                                   {"value", goal.value},
                                   {"goal", goal.goal},
                                   {"must", goal.must},
                                   {"goalReached", goal.value <= goal.goal},
                                   {"mustReached", goal.value <= goal.must}});
    }
    for (const Document& document : findings.documents)
    {
        report["documents"].push_back({{"name", document.name},
                                       {"bytes", document.facts.bytes},
                                       {"elements", document.facts.elements},
                                       {"attributes", document.facts.attributes},
                                       {"references", document.facts.references}});
    }
    for (const auto& [key, values] : findings.samples->All())
    {
        const auto& [document, subject, quantity] = key;
        report["samples"].push_back({{"document", document},
                                     {"subject", subject},
                                     {"quantity", quantity},
                                     {"median", Samples::MedianOf(values)},
                                     {"values", values}});
    }
    return report.dump(2) + "\n";
}

}  // namespace zorvex_bench
