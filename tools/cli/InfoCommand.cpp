#include <sys/resource.h>

#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "Document.h"
#include "Fields.h"
#include "Json.h"
#include "Report.h"
#include "Text.h"
#include "zorvex_api/TraverseContext.h"

using zorvex_api::Object;
using zorvex_api::zorvexTraverseResult;

namespace zorvex_cli
{
namespace
{

struct Arguments
{
    std::string file;
    bool json = false;
    Options options;
};

/// Counts what a tree holds.
class Census : public zorvex_api::TraverseContext
{
public:
    Census() { SetFollowURI(0); }

    zorvexTraverseResult Visit(Object* object) override
    {
        ++m_objects;
        ++m_classes[ToUtf8(object->GetClassName())];
        for (const ReferenceValue& value : m_reader.Read(*object))
        {
            ++m_references[static_cast<size_t>(value.target)];
        }
        return zorvex_api::zorvexTraverseContinue;
    }

    size_t Objects() const { return m_objects; }
    size_t References(Target target) const { return m_references[static_cast<size_t>(target)]; }

    /// Class names with their counts, the most frequent first.
    std::vector<std::pair<std::string, size_t>> Classes() const
    {
        std::vector<std::pair<std::string, size_t>> sorted(m_classes.begin(), m_classes.end());
        std::stable_sort(sorted.begin(), sorted.end(),
                         [](const auto& a, const auto& b) { return a.second > b.second; });
        return sorted;
    }

private:
    ReferenceReader m_reader;
    size_t m_objects = 0;
    size_t m_references[3] = {};
    std::map<std::string, size_t> m_classes;
};

/// Resident memory of this process in bytes.
size_t ResidentMemory()
{
    std::ifstream file("/proc/self/statm");
    size_t total = 0;
    size_t resident = 0;
    file >> total >> resident;
    return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE));
}

std::string Attribute(const Object& object, const char16_t* name)
{
    zorvex_api::String value;
    return object.GetAttributeValue(name, value).Ok() ? ToUtf8(value) : std::string();
}

/// What `info` tells; the numbers of the load are those of the whole load.
struct Facts
{
    std::string file;
    std::string root;
    std::string schemaVersion;
    std::string author;
    std::string date;
    std::string time;
    double seconds = 0.0;
    size_t memory = 0;
};

void PrintText(const Facts& facts, const Census& census)
{
    const auto line = [](const char* name, const std::string& value)
    { std::cout << std::left << std::setw(16) << name << OneLine(value) << '\n'; };

    line("file", facts.file);
    line("root", facts.root);
    line("schema version", facts.schemaVersion);
    line("author", facts.author);
    line("date", facts.date + " " + facts.time);
    std::ostringstream cost;
    cost << std::fixed << std::setprecision(3) << facts.seconds << " s, " << std::setprecision(1)
         << static_cast<double>(facts.memory) / (1024.0 * 1024.0) << " MiB";
    line("load", cost.str());
    line("references", std::to_string(census.References(Target::Local)) + " local, " +
                           std::to_string(census.References(Target::External)) + " external, " +
                           std::to_string(census.References(Target::None)) + " unresolved");
    line("objects", std::to_string(census.Objects()));
    for (const auto& [name, count] : census.Classes())
    {
        std::cout << "  " << std::right << std::setw(8) << count << "  " << OneLine(name) << '\n';
    }
}

void PrintJson(const Facts& facts, const Census& census)
{
    Json classes = Json::object();
    for (const auto& [name, count] : census.Classes())
    {
        classes[name] = count;
    }
    Write(Json{{"file", facts.file},
               {"root", facts.root},
               {"schemaVersion", facts.schemaVersion},
               {"author", facts.author},
               {"date", facts.date},
               {"time", facts.time},
               {"loadSeconds", facts.seconds},
               {"memoryBytes", facts.memory},
               {"references",
                {{"local", census.References(Target::Local)},
                 {"external", census.References(Target::External)},
                 {"unresolved", census.References(Target::None)}}},
               {"objects", census.Objects()},
               {"classes", classes}});
}

int Info(const Arguments& arguments)
{
    using Clock = std::chrono::steady_clock;

    Document document(arguments.options);
    const size_t memoryBefore = ResidentMemory();
    const Clock::time_point start = Clock::now();
    const bool isGood = document.Load(arguments.file);

    Facts facts;
    facts.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    facts.memory = std::max(ResidentMemory(), memoryBefore) - memoryBefore;
    const Object* root = document.Root();
    if (!root)
    {
        return kFindings;
    }
    facts.file = arguments.file;
    facts.root = ToUtf8(root->GetClassName());
    facts.schemaVersion = Attribute(*root, u"schemaVersion");
    facts.author = Attribute(*root, u"author");
    facts.date = Attribute(*root, u"date");
    facts.time = Attribute(*root, u"time");

    Census census;
    for (Object* one : document.Roots())
    {
        one->Traverse(&census);
    }
    arguments.json ? PrintJson(facts, census) : PrintText(facts, census);
    return isGood ? kGood : kFindings;
}

}  // namespace

void AddInfo(CLI::App& app, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command = app.add_subcommand(
        "info",
        "Tells what a document holds: its author, classes and references, and what loading costs");
    command->add_option("FILE", arguments->file, "The document")->required();
    command->add_flag("--json", arguments->json, "Machine-readable output");
    arguments->options.AddTo(*command);
    command->callback([arguments, &action] { action = [arguments] { return Info(*arguments); }; });
}

}  // namespace zorvex_cli
