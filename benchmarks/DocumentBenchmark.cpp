// What a user does with a whole document, at three sizes: cost per byte must not grow.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "zorvex_api/Configuration.h"
#include "zorvex_api/Load.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Session.h"
#include "zorvex_api/TraverseContext.h"

namespace
{

using zorvex_api::Configuration;
using zorvex_api::Object;
using zorvex_api::String;

namespace fs = std::filesystem;

/// The session, and a folder for the documents.
class Bench
{
public:
    Bench() : m_folder(fs::temp_directory_path() / ("zorvex-bench-" + std::to_string(std::rand())))
    {
        if (zorvex_api::Initialise(0, nullptr, nullptr, nullptr) != 0)
        {
            throw std::runtime_error("the session could not be started");
        }
        fs::create_directories(m_folder);
    }

    ~Bench()
    {
        zorvex_api::Terminate();
        fs::remove_all(m_folder);
    }

    /// A product structure of about `megabytes`: products, views and placed instances.
    std::string Document(int megabytes)
    {
        const fs::path path = m_folder / (std::to_string(megabytes) + ".zorvex");
        if (fs::exists(path))
        {
            return path;
        }
        std::ofstream out(path, std::ios::binary);
        out << "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
               "<ZORVEX xmlns=\"http://www.zorvex.org/Schemas/ZORVEXSchema\" author=\"bench\" "
               "date=\"2024-01-01\" time=\"00:00:00\" schemaVersion=\"6\">\n"
               "<ProductDef id=\"id1\">\n<InstanceGraph id=\"id2\">";
        const auto limit = static_cast<std::streamoff>(megabytes) * 1024 * 1024;
        for (int id = 10; out.tellp() < limit; id += 10)
        {
            WritePart(out, id);
        }
        out << "</InstanceGraph></ProductDef></ZORVEX>\n";
        return path;
    }

    std::string Output() const { return m_folder / "out.zorvex"; }

private:
    static void WritePart(std::ostream& out, int id)
    {
        const std::string n = std::to_string(id);
        const auto at = [id](int offset) { return "id" + std::to_string(id + offset); };
        out << "\n<Product id=\"" << at(0) << "\" name=\"Teil " << n << "\" productId=\"P-" << n
            << "\"></Product>\n<ProductRevision id=\"" << at(1) << "\" masterRef=\"#" << at(0)
            << "\" revision=\"A\"></ProductRevision>\n<ProductRevisionView id=\"" << at(2)
            << "\" instanceRefs=\"" << at(3) << "\" revisionRef=\"#" << at(1)
            << "\" type=\"solid\"></ProductRevisionView>\n<ProductInstance id=\"" << at(3)
            << "\" partRef=\"#id" << (id > 10 ? id - 8 : 12)
            << "\" quantity=\"2.5\">\n<Transform id=\"" << at(4) << "\">1 0 0 0 0 1 0 0 0 0 1 0 "
            << id * 0.125 << " 0.1 -2.5 1</Transform></ProductInstance>";
    }

    fs::path m_folder;
};

Bench& TheBench()
{
    static Bench bench;
    return bench;
}

Object* Load(const std::string& path)
{
    Object* document = nullptr;
    const Configuration options;
    if (!zorvex_api::LoadDocument(path.c_str(), options, &document).Ok() || !document)
    {
        throw std::runtime_error("the document could not be loaded");
    }
    return document;
}

void SetBytes(benchmark::State& state, const std::string& path)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fs::file_size(path)));
}

void LoadAndDelete(benchmark::State& state)
{
    const std::string path = TheBench().Document(static_cast<int>(state.range(0)));
    for (auto _ : state)
    {
        delete Load(path);
    }
    SetBytes(state, path);
}

void Delete(benchmark::State& state)
{
    const std::string path = TheBench().Document(static_cast<int>(state.range(0)));
    for (auto _ : state)
    {
        state.PauseTiming();
        const Object* document = Load(path);
        state.ResumeTiming();
        delete document;
    }
    SetBytes(state, path);
}

void Save(benchmark::State& state)
{
    const std::string path = TheBench().Document(static_cast<int>(state.range(0)));
    Object* document = Load(path);
    const Configuration options;
    for (auto _ : state)
    {
        if (!document->Save(TheBench().Output().c_str(), options).Ok())
        {
            state.SkipWithError("the document could not be saved");
        }
    }
    delete document;
    SetBytes(state, path);
}

void Walk(benchmark::State& state)
{
    class Counter : public zorvex_api::TraverseContext
    {
    public:
        zorvex_api::zorvexTraverseResult Visit(Object*) override
        {
            ++m_count;
            return zorvex_api::zorvexTraverseContinue;
        }
        std::int64_t m_count = 0;
    };

    Object* document = Load(TheBench().Document(static_cast<int>(state.range(0))));
    std::int64_t visited = 0;
    for (auto _ : state)
    {
        Counter counter;
        document->Traverse(&counter);
        visited += counter.m_count;
    }
    delete document;
    state.SetItemsProcessed(visited);
}

BENCHMARK(LoadAndDelete)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(Delete)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(Save)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(Walk)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

void StartAndStop(benchmark::State& state)
{
    TheBench();
    zorvex_api::Terminate();
    for (auto _ : state)
    {
        zorvex_api::Initialise(0, nullptr, nullptr, nullptr);
        zorvex_api::Terminate();
    }
    zorvex_api::Initialise(0, nullptr, nullptr, nullptr);
}

BENCHMARK(StartAndStop)->Unit(benchmark::kMillisecond);

}  // namespace
