// The library itself, through its public interface and with its default options.
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "measured/Subject.h"
#include "measured/TreeInspector.h"
#include "zorvex_api/zorvex_api.h"

namespace zorvex_bench
{

namespace
{

using zorvex_api::Configuration;
using zorvex_api::Object;
using zorvex_api::Result;
using zorvex_api::String;
using zorvex_api::TraverseContext;
using zorvex_api::zorvexTraverseResult;

constexpr unsigned int kWithChildren = 4;

std::string Utf8(const String& text)
{
    const char* bytes = text;
    return bytes != nullptr ? bytes : "";
}

/// A message of any severity is a failure: the documents give none.
void Require(const Result& result, const char* what)
{
    if (!result.Ok() || result.NumberOfErrors() != 0)
    {
        throw std::runtime_error(std::string(what) + ": " + Utf8(result.GetMessage()));
    }
}

class Counter : public TraverseContext
{
public:
    zorvexTraverseResult Visit(Object*) override
    {
        ++m_visits;
        return zorvex_api::zorvexTraverseContinue;
    }

    std::uint64_t Visits() const { return m_visits; }

private:
    std::uint64_t m_visits = 0;
};

class ZorvexSubject : public Subject
{
public:
    ZorvexSubject()
    {
        if (zorvex_api::Initialise(0, nullptr, nullptr, nullptr) != 0)
        {
            throw std::runtime_error("the session could not be started");
        }
    }

    ~ZorvexSubject() override
    {
        DeleteCopy();
        Delete();
        zorvex_api::Terminate();
    }

    void Load(const std::string& path) override
    {
        const Configuration options;
        Require(zorvex_api::LoadDocument(path.c_str(), options, &m_document), "loading");
    }

    Contents Inspect() override
    {
        TreeInspector inspector;
        m_document->Traverse(&inspector);
        return {Utf8(m_document->GetElementName()), inspector.Elements(), inspector.References()};
    }

    std::uint64_t Walk() override { return CountVisits(*m_document); }

    void Copy() override { Require(m_document->Copy(m_copy, kWithChildren), "copying"); }
    std::uint64_t WalkCopy() override { return CountVisits(*m_copy); }
    void DeleteCopy() override
    {
        delete m_copy;
        m_copy = nullptr;
    }

    void Save(const std::string& path) override
    {
        const Configuration options;
        Require(m_document->Save(path.c_str(), options), "saving");
    }

    void Delete() override
    {
        delete m_document;
        m_document = nullptr;
    }

private:
    static std::uint64_t CountVisits(Object& root)
    {
        Counter counter;
        root.Traverse(&counter);
        return counter.Visits();
    }

    Object* m_document = nullptr;  // owned
    Object* m_copy = nullptr;      // owned
};

}  // namespace

std::unique_ptr<Subject> MakeSubject()
{
    return std::make_unique<ZorvexSubject>();
}

}  // namespace zorvex_bench
