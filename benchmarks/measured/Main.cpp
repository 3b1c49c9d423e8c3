// What a measured program does: it runs one document through one library and prints what that took
// as one JSON object. A result that isn't what was written ends it with exit code 1.
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "measured/Counters.h"
#include "measured/Subject.h"

namespace
{

using nlohmann::json;
using zorvex_bench::Contents;
using zorvex_bench::CpuSeconds;
using zorvex_bench::Memory;
using zorvex_bench::Subject;

struct Arguments
{
    std::string file;
    std::string warmUp;
    std::string save;
    std::uint64_t elements = 0;
    std::uint64_t references = 0;
    bool copy = false;
    bool loadOnly = false;
};

void Require(bool condition, const std::string& what)
{
    if (!condition)
    {
        throw std::runtime_error(what);
    }
}

void RequireCount(std::uint64_t found, std::uint64_t wanted, const char* what)
{
    Require(found == wanted,
            std::to_string(found) + " " + what + " instead of " + std::to_string(wanted));
}

template <class Work>
double Timed(Work work)
{
    const double start = CpuSeconds();
    work();
    return CpuSeconds() - start;
}

/// Code is in memory and tables are made before anything counts.
void WarmUp(Subject& subject, const std::string& path)
{
    if (!path.empty())
    {
        subject.Load(path);
        subject.Delete();
    }
}

void MeasureLoad(Subject& subject, const Arguments& arguments, json& out)
{
    zorvex_bench::ResetPeak();
    const Memory before = zorvex_bench::MemoryNow();
    out["load"] = Timed([&] { subject.Load(arguments.file); });
    const Memory after = zorvex_bench::MemoryNow();
    const auto growth = [](std::uint64_t now, std::uint64_t then)
    { return now - std::min(now, then); };
    out["heap"] = growth(after.heap, before.heap);
    out["resident"] = growth(after.resident, before.resident);
    out["peak"] = growth(after.peak, before.resident);
}

void Check(Subject& subject, const Arguments& arguments)
{
    const Contents contents = subject.Inspect();
    Require(contents.root == "ZORVEX", "the root is \"" + contents.root + "\"");
    RequireCount(contents.elements, arguments.elements, "elements");
    if (subject.HasReferences())
    {
        RequireCount(contents.references, arguments.references, "references");
    }
}

void MeasureCopy(Subject& subject, std::uint64_t visits, json& out)
{
    out["copy"] = Timed([&] { subject.Copy(); });
    RequireCount(subject.WalkCopy(), visits, "visits of the copy");
    subject.DeleteCopy();
}

json Measure(Subject& subject, const Arguments& arguments)
{
    json out;
    WarmUp(subject, arguments.warmUp);
    MeasureLoad(subject, arguments, out);
    Check(subject, arguments);
    if (!subject.KeepsDocument())
    {
        return out;
    }
    std::uint64_t visits = 0;
    out["walk"] = Timed([&] { visits = subject.Walk(); });
    Require(visits != 0, "nothing was visited");
    if (arguments.copy)
    {
        MeasureCopy(subject, visits, out);
    }
    if (!arguments.save.empty())
    {
        out["save"] = Timed([&] { subject.Save(arguments.save); });
    }
    out["delete"] = Timed([&] { subject.Delete(); });
    if (!arguments.save.empty())
    {
        subject.Load(arguments.save);
        Check(subject, arguments);
        subject.Delete();
    }
    return out;
}

int Run(const Arguments& arguments)
{
    const std::unique_ptr<Subject> subject = zorvex_bench::MakeSubject();
    if (arguments.loadOnly)
    {
        // For counting instructions: nothing is looked at and nothing is cleaned up.
        subject->Load(arguments.file);
        _exit(0);
    }
    std::cout << Measure(*subject, arguments) << '\n';
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    CLI::App app(
        "Measures one library with one document; prints seconds of processor time and "
        "bytes of memory.");
    Arguments arguments;
    app.add_option("FILE", arguments.file, "The document")->required();
    app.add_option("--warm-up", arguments.warmUp, "A small document to load before");
    app.add_option("--save", arguments.save, "Save the document there");
    app.add_option("--elements", arguments.elements, "How many elements there must be");
    app.add_option("--references", arguments.references, "How many references must lead somewhere");
    app.add_flag("--copy", arguments.copy, "Copy the document");
    app.add_flag("--load-only", arguments.loadOnly, "Load and leave, for counting instructions");
    CLI11_PARSE(app, argc, argv);

    try
    {
        return Run(arguments);
    }
    catch (const std::exception& error)
    {
        std::cerr << argv[0] << ": " << error.what() << '\n';
        return 1;
    }
}
