#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace zorvex_bench
{

/// What was found in a loaded document, to be compared with what the generator wrote.
struct Contents
{
    std::string root;
    std::uint64_t elements = 0;
    std::uint64_t references = 0;  // those that lead to an element
};

/// A library under measurement, with at most one document loaded. Every failure is an exception.
class Subject
{
public:
    Subject() = default;
    virtual ~Subject() = default;
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    /// Whether references are found and followed; otherwise none are counted.
    virtual bool HasReferences() const { return true; }
    /// Whether a load leaves a document behind: otherwise there is nothing but Load and Inspect.
    virtual bool KeepsDocument() const { return true; }

    virtual void Load(const std::string& path) = 0;
    /// Looks at everything; not measured.
    virtual Contents Inspect() = 0;
    /// Visits each element once; the number of visits.
    virtual std::uint64_t Walk() { return 0; }
    /// Makes a copy of the document beside it; the number of elements that it has.
    virtual void Copy() {}
    virtual std::uint64_t WalkCopy() { return 0; }
    virtual void DeleteCopy() {}
    virtual void Save(const std::string&) {}
    virtual void Delete() {}
};

/// Starts the library of this program.
std::unique_ptr<Subject> MakeSubject();

}  // namespace zorvex_bench
