#include <algorithm>
#include <sstream>
#include <string>

#include "generator/DocumentGenerator.h"
#include "measured/TreeInspector.h"
#include "support/SessionTest.h"
#include "zorvex_api/Configuration.h"

/// The documents of the benchmarks: the measurements say something only while these load without a
/// message and hold what they should.

namespace zorvex_test
{

using testing::IsEmpty;
using zorvex_api::Configuration;
using zorvex_bench::DocumentFacts;
using zorvex_bench::DocumentPlan;

class GeneratedDocumentTest : public SessionTest, public testing::WithParamInterface<bool>
{
protected:
    DocumentPlan Plan(std::uint64_t bytes) const
    {
        DocumentPlan plan;
        plan.bytes = bytes;
        plan.occurrences = GetParam();
        return plan;
    }

    static std::string Generate(const DocumentPlan& plan, DocumentFacts* facts = nullptr)
    {
        std::ostringstream out;
        const DocumentFacts written = zorvex_bench::WriteDocument(out, plan);
        if (facts != nullptr)
        {
            *facts = written;
        }
        return out.str();
    }

    ScratchFolder m_folder;
};

INSTANTIATE_TEST_SUITE_P(, GeneratedDocumentTest, testing::Bool(),
                         [](const auto& test)
                         { return test.param ? "WithOccurrences" : "WithoutOccurrences"; });

TEST_P(GeneratedDocumentTest, LoadsWithoutAMessageAndIsSavedAsItWas)
{
    DocumentFacts facts;
    const std::string text = Generate(Plan(100000), &facts);
    EXPECT_EQ(text.size(), facts.bytes);
    const Loaded loaded = LoadFrom(m_folder.Write("made.zorvex", text));
    ASSERT_THAT(loaded.Messages(), IsEmpty());
    ASSERT_NE(nullptr, loaded.Root());

    zorvex_bench::TreeInspector inspector;
    loaded.Root()->Traverse(&inspector);
    EXPECT_EQ(facts.elements, inspector.Elements());
    EXPECT_EQ(facts.references, inspector.References());

    const Configuration options;
    ASSERT_TRUE(loaded.Root()->Save(m_folder.File("saved.zorvex"), options).Ok());
    std::string saved = m_folder.Read("saved.zorvex");
    const std::size_t comment = saved.find("\n<!--");
    ASSERT_NE(saved.npos, comment);
    saved.erase(comment, saved.find("-->") + 3 - comment);
    EXPECT_TRUE(text == saved)
        << "from byte "
        << std::mismatch(text.begin(), text.end(), saved.begin(), saved.end()).first - text.begin();
}

TEST_P(GeneratedDocumentTest, EqualPlansGiveEqualBytesAndAnotherSeedOthers)
{
    DocumentPlan plan = Plan(100000);
    const std::string text = Generate(plan);
    EXPECT_TRUE(text == Generate(plan));
    plan.seed = 2;
    EXPECT_FALSE(text == Generate(plan));
}

TEST_P(GeneratedDocumentTest, HasTheSizeAskedForAndElementsLikeThoseOfRealDocuments)
{
    DocumentFacts facts;
    Generate(Plan(2000000), &facts);
    const auto bytes = static_cast<double>(facts.bytes);
    const auto elements = static_cast<double>(facts.elements);
    EXPECT_NEAR(2000000.0, bytes, 160000.0);
    EXPECT_NEAR(100.0, bytes / elements, 8.0);
    EXPECT_NEAR(2.7, static_cast<double>(facts.attributes) / elements, 0.15);
}

}  // namespace zorvex_test
