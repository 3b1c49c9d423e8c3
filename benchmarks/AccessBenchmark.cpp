// Reading attributes by typed accessor and by name, beside a hash table of the same values.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "generator/DocumentGenerator.h"
#include "zorvex60/ProductInstance.h"
#include "zorvex_api/zorvex_api.h"

namespace
{

using zorvex60::ProductInstance;
using zorvex_api::Object;
using zorvex_api::String;

constexpr std::uint64_t kBytes = 300000;  // small enough for the processor's cache

/// Look-ups by a view, so that the hash table isn't charged for making a key.
struct ViewHash
{
    using is_transparent = void;
    std::size_t operator()(std::u16string_view text) const
    {
        return std::hash<std::u16string_view>()(text);
    }
};

template <class Value>
using AttributeTable = std::unordered_map<std::u16string, Value, ViewHash, std::equal_to<>>;

std::u16string Text(const String& text)
{
    const unsigned short* units = text;
    return units != nullptr ? std::u16string(reinterpret_cast<const char16_t*>(units))
                            : std::u16string();
}

class Collector : public zorvex_api::TraverseContext
{
public:
    zorvex_api::zorvexTraverseResult Visit(Object* object) override
    {
        if (auto* instance = dynamic_cast<ProductInstance*>(object))
        {
            m_instances.push_back(instance);
        }
        return zorvex_api::zorvexTraverseContinue;
    }

    std::vector<ProductInstance*> m_instances;
};

/// A document with its instances, and their attributes in hash tables.
class Data
{
public:
    Data()
    {
        if (zorvex_api::Initialise(0, nullptr, nullptr, nullptr) != 0)
        {
            throw std::runtime_error("the session could not be started");
        }
        zorvex_bench::DocumentPlan plan;
        plan.bytes = kBytes;
        std::ostringstream out;
        zorvex_bench::WriteDocument(out, plan);
        const zorvex_api::Configuration options;
        if (!zorvex_api::LoadDocument(out.str().c_str(), options, &m_root).Ok())
        {
            throw std::runtime_error("the document could not be loaded");
        }
        Collector collector;
        m_root->Traverse(&collector);
        m_instances = collector.m_instances;
        for (const ProductInstance* instance : m_instances)
        {
            AddTables(*instance);
        }
    }

    ~Data()
    {
        delete m_root;
        zorvex_api::Terminate();
    }

    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;

    const std::vector<ProductInstance*>& Instances() const { return m_instances; }
    const std::vector<AttributeTable<std::u16string>>& Texts() const { return m_texts; }
    const std::vector<AttributeTable<int>>& Numbers() const { return m_numbers; }

private:
    void AddTables(const ProductInstance& instance)
    {
        zorvex_api::Map<String, String> values;
        instance.GetAttributeValues(values);
        AttributeTable<std::u16string>& texts = m_texts.emplace_back();
        AttributeTable<int>& numbers = m_numbers.emplace_back();
        for (int i = 0; i < values.GetSize(); ++i)
        {
            texts.emplace(Text(values.GetKey(i)), Text(values.GetValue(i)));
            numbers.emplace(Text(values.GetKey(i)), instance.GetSequenceNumber());
        }
    }

    Object* m_root = nullptr;  // owned
    std::vector<ProductInstance*> m_instances;
    std::vector<AttributeTable<std::u16string>> m_texts;
    std::vector<AttributeTable<int>> m_numbers;
};

Data& TheData()
{
    static Data data;
    return data;
}

/// Reads one value of each thing in turn; what comes out has to be `wanted`.
template <class Things, class Read>
void ReadAll(benchmark::State& state, const Things& things, std::uint64_t wanted, Read read)
{
    std::uint64_t sum = 0;
    for (auto _ : state)
    {
        sum = 0;
        for (const auto& thing : things)
        {
            sum += read(thing);
        }
        benchmark::DoNotOptimize(sum);
    }
    if (sum != wanted || wanted == 0)
    {
        state.SkipWithError("the values differ");
    }
    // The time of one value.
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(things.size()));
    state.counters["values"] = static_cast<double>(things.size());
}

std::uint64_t TextSum()
{
    std::uint64_t sum = 0;
    for (const ProductInstance* instance : TheData().Instances())
    {
        sum += static_cast<std::uint64_t>(instance->GetName().GetLength());
    }
    return sum;
}

std::uint64_t NumberSum()
{
    std::uint64_t sum = 0;
    for (const ProductInstance* instance : TheData().Instances())
    {
        sum += static_cast<std::uint64_t>(instance->GetSequenceNumber());
    }
    return sum;
}

void TypedText(benchmark::State& state)
{
    ReadAll(state, TheData().Instances(), TextSum(),
            [](const ProductInstance* instance)
            { return static_cast<std::uint64_t>(instance->GetName().GetLength()); });
}

void NamedText(benchmark::State& state)
{
    ReadAll(state, TheData().Instances(), TextSum(),
            [](const ProductInstance* instance)
            {
                String value;
                instance->GetAttributeValue(u"name", value);
                return static_cast<std::uint64_t>(value.GetLength());
            });
}

/// Takes the text, as the accessors give it.
void HashText(benchmark::State& state)
{
    ReadAll(state, TheData().Texts(), TextSum(),
            [](const AttributeTable<std::u16string>& table)
            {
                std::u16string value = table.find(std::u16string_view(u"name"))->second;
                benchmark::DoNotOptimize(value);
                return static_cast<std::uint64_t>(value.size());
            });
}

/// Looks at the text where it is.
void HashTextInPlace(benchmark::State& state)
{
    ReadAll(state, TheData().Texts(), TextSum(),
            [](const AttributeTable<std::u16string>& table) {
                return static_cast<std::uint64_t>(
                    table.find(std::u16string_view(u"name"))->second.size());
            });
}

void TypedNumber(benchmark::State& state)
{
    ReadAll(state, TheData().Instances(), NumberSum(),
            [](const ProductInstance* instance)
            { return static_cast<std::uint64_t>(instance->GetSequenceNumber()); });
}

void NamedNumber(benchmark::State& state)
{
    ReadAll(state, TheData().Instances(), NumberSum(),
            [](const ProductInstance* instance)
            {
                int value = 0;
                instance->GetAttributeValue(u"sequenceNumber", value);
                return static_cast<std::uint64_t>(value);
            });
}

void HashNumber(benchmark::State& state)
{
    ReadAll(state, TheData().Numbers(), NumberSum(),
            [](const AttributeTable<int>& table) {
                return static_cast<std::uint64_t>(
                    table.find(std::u16string_view(u"sequenceNumber"))->second);
            });
}

BENCHMARK(TypedText);
BENCHMARK(NamedText);
BENCHMARK(HashText);
BENCHMARK(HashTextInPlace);
BENCHMARK(TypedNumber);
BENCHMARK(NamedNumber);
BENCHMARK(HashNumber);

}  // namespace
