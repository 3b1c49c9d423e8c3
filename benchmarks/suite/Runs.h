#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "generator/ElementWriter.h"
#include "suite/Samples.h"

namespace zorvex_bench
{

/// A generated document.
struct Document
{
    std::string name;  // as "10 MB"
    std::string path;
    DocumentFacts facts;
    bool occurrences = false;
};

/// Which parts of the measurements are wanted, and how.
struct Settings
{
    std::string programs;  // folder of the measured programs
    std::string work;      // folder for documents
    std::uint64_t seed = 1;
    std::vector<std::uint64_t> sizes;
    int repetitions = 5;
    std::string only;  // "load", "instructions", "micro", or everything
};

// Documents of samples that have none of the sizes asked for.
constexpr const char* kInstructions = "3 MB";
constexpr const char* kMicro = "micro";  // nanoseconds for one

/// Runs the programs and keeps what they measure.
class Runs
{
public:
    explicit Runs(const Settings& settings);

    /// Loads of the library in turn with passes of the bare parser; with `all`, in turn with the
    /// peers too and with saves, copies and deletes.
    void Whole(const Document& document, bool all);
    /// Instructions of a load and of a pass, without what a tiny document takes.
    void Instructions();
    /// Accessors, and the start and end of a session.
    void Micro();

    /// Makes the document, or finds it made.
    Document Make(std::uint64_t bytes, bool occurrences) const;

    const Samples& Results() const { return m_samples; }

private:
    void RunOnce(const Document& document, const std::string& subject, bool all);
    void RunMicro(std::vector<std::string> command);
    std::string Program(const std::string& name) const { return m_settings.programs + "/" + name; }

    Settings m_settings;
    Document m_tiny;
    Samples m_samples;
};

}  // namespace zorvex_bench
