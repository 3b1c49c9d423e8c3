#include "suite/Goals.h"

#include <cmath>

namespace zorvex_bench
{

namespace
{

constexpr const char* kOurs = "zorvex";
constexpr const char* kFloor = "xerces_sax";

double BytesPerElement(const Samples& samples, const Document& document)
{
    return samples.Median(document.name, kOurs, "heap") /
           static_cast<double>(document.facts.elements);
}

double Ratio(const Samples& samples, const std::string& document, const char* subject,
             const char* quantity, const char* otherSubject, const char* otherQuantity)
{
    return samples.Median(document, subject, quantity) /
           samples.Median(document, otherSubject, otherQuantity);
}

void JudgeDocument(const Samples& samples, const Document& document, std::vector<Goal>& goals)
{
    const std::string& name = document.name;
    if (!samples.Has(name, kOurs, "load"))
    {
        return;
    }
    goals.push_back({"load / Xerces SAX pass, CPU time", name, "",
                     Ratio(samples, name, kOurs, "load", kFloor, "load"), 2.2, 3.0});
    goals.push_back({document.occurrences ? "memory kept per element, with occurrences"
                                          : "memory kept per element",
                     name, "B", BytesPerElement(samples, document),
                     document.occurrences ? 450.0 : 320.0, document.occurrences ? 560.0 : 400.0});
    goals.push_back({"peak / kept while loading", name, "",
                     Ratio(samples, name, kOurs, "peak", kOurs, "heap"), 1.1, 1.2});
    if (samples.Has(name, "pugixml", "save"))
    {
        goals.push_back({"save / pugixml save", name, "",
                         Ratio(samples, name, kOurs, "save", "pugixml", "save"), 2.0, 3.0});
    }
    goals.push_back({"delete / load", name, "",
                     Ratio(samples, name, kOurs, "delete", kOurs, "load"), 0.15, 0.3});
}

/// From one document to one that is ten times as large. The documents aren't that to the byte, so
/// the time is counted for ten times the bytes.
void JudgeGrowth(const Samples& samples, const Document& small, const Document& large,
                 std::vector<Goal>& goals)
{
    const std::string name = small.name + " to " + large.name;
    const double bytes =
        static_cast<double>(large.facts.bytes) / static_cast<double>(small.facts.bytes);
    if (std::abs(bytes - 10.0) > 1.0 || !samples.Has(small.name, kOurs, "load") ||
        !samples.Has(large.name, kOurs, "load"))
    {
        return;
    }
    const double time =
        samples.Median(large.name, kOurs, "load") / samples.Median(small.name, kOurs, "load");
    goals.push_back({"growth of load time", name, "x", 10.0 * time / bytes, 12.0, 14.0});
    const double each = BytesPerElement(samples, large) / BytesPerElement(samples, small);
    goals.push_back({"growth of bytes per element", name, "%", 100.0 * (each - 1.0), 5.0, 8.0});
}

void JudgeMicro(const Samples& samples, std::vector<Goal>& goals)
{
    if (!samples.Has(kMicro, kOurs, "StartAndStop"))
    {
        return;
    }
    const auto ratio = [&samples](const char* quantity, const char* other)
    { return Ratio(samples, kMicro, kOurs, quantity, kOurs, other); };
    goals.push_back({"Initialise + Terminate, first in a process", "", "ms",
                     samples.Median(kMicro, kOurs, "FirstStartAndStop") / 1e6, 10.0, 15.0});
    goals.push_back({"Initialise + Terminate, again", "", "ms",
                     samples.Median(kMicro, kOurs, "StartAndStop") / 1e6, 10.0, 15.0});
    goals.push_back({"typed accessor / hash look-up, text taken", "", "x",
                     ratio("TypedText", "HashText"), 1.0, 2.0});
    goals.push_back({"typed accessor / hash look-up, text left in place", "", "x",
                     ratio("TypedText", "HashTextInPlace"), 1.0, 2.0});
    goals.push_back({"typed accessor / hash look-up, number", "", "x",
                     ratio("TypedNumber", "HashNumber"), 1.0, 2.0});
}

}  // namespace

std::vector<Goal> JudgeGoals(const Samples& samples, const std::vector<Document>& documents)
{
    std::vector<Goal> goals;
    for (const Document& document : documents)
    {
        JudgeDocument(samples, document, goals);
    }
    for (std::size_t i = 0; i + 1 < documents.size(); ++i)
    {
        for (std::size_t k = i + 1; k < documents.size(); ++k)
        {
            if (documents[i].occurrences == documents[k].occurrences)
            {
                JudgeGrowth(samples, documents[i], documents[k], goals);
            }
        }
    }
    if (samples.Has(kInstructions, kOurs, "instructions"))
    {
        goals.push_back(
            {"load / Xerces SAX pass, instructions", kInstructions, "",
             Ratio(samples, kInstructions, kOurs, "instructions", kFloor, "instructions"), 1.9,
             2.6});
    }
    JudgeMicro(samples, goals);
    return goals;
}

}  // namespace zorvex_bench
