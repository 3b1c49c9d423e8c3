#include "objectmodel/DocumentMap.h"
#include "objectmodel/TestObjects.h"

using namespace zorvex_api;
using namespace zorvex_test;

namespace
{

/// A document whose product refers to two others on disk.
class NetworkTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        m_folder = std::make_unique<ScratchFolder>();
        m_folder->Write("left.xml", WrapDocument("<Material id=\"id1\" name=\"steel\"/>"));
        m_folder->Write("right.xml", WrapDocument("<Material id=\"id1\" name=\"brass\"/>"));
        const String main = m_folder->Write(
            "main.xml",
            WrapDocument("<Product id=\"id7\" accessRefs=\"left.xml#id1 right.xml#id1\"/>"));
        m_loaded = std::make_unique<Loaded>(LoadFrom(main));
        m_product = m_loaded->Root()->ResolveId(u"id7");
        ASSERT_NE(nullptr, m_product);
    }
    void TearDown() override
    {
        m_loaded.reset();
        EXPECT_EQ(0u, DocumentMap::Count());
        m_folder.reset();
        SessionTest::TearDown();
    }
    /// The names of what the references lead to.
    static std::vector<std::string> Follow(Object& object)
    {
        Array<Reference> references;
        const Result result = object.ResolveAttributeValue(u"accessRefs", references, nullptr);
        EXPECT_TRUE(result.Ok()) << Utf8(result.GetMessage());
        return Names(references);
    }
    static std::vector<std::string> Known(const Object& object)
    {
        Array<Reference> references;
        EXPECT_TRUE(object.GetAttributeValue(u"accessRefs", references).Ok());
        return Names(references);
    }
    static std::vector<std::string> Names(const Array<Reference>& references)
    {
        std::vector<std::string> names;
        for (const Reference& reference : references)
        {
            const Object* object = reference.GetHandle().GetObject();
            names.push_back(object != nullptr ? Text(*object, u"name") : "none");
        }
        return names;
    }

    std::unique_ptr<ScratchFolder> m_folder;
    std::unique_ptr<Loaded> m_loaded;
    Object* m_product = nullptr;
};

TEST_F(NetworkTest, AListThatIsWrittenBackKeepsTheDocumentsItLeadsTo)
{
    ASSERT_THAT(Follow(*m_product), testing::ElementsAre("steel", "brass"));
    Array<Reference> references;
    ASSERT_TRUE(m_product->GetAttributeValue(u"accessRefs", references).Ok());
    ASSERT_TRUE(m_product->SetAttributeValue(u"accessRefs", references).Ok());
    EXPECT_THAT(Known(*m_product), testing::ElementsAre("steel", "brass"));
    EXPECT_EQ(3u, DocumentMap::Count());

    references.RemoveAt(0);
    ASSERT_TRUE(m_product->SetAttributeValue(u"accessRefs", references).Ok());
    EXPECT_THAT(Known(*m_product), testing::ElementsAre("brass"));
    EXPECT_EQ(2u, DocumentMap::Count());
}

TEST_F(NetworkTest, ACopyHoldsTheDocumentsToo)
{
    ASSERT_THAT(Follow(*m_product), testing::ElementsAre("steel", "brass"));
    Object* copied = nullptr;
    ASSERT_TRUE(m_product->Copy(copied, 4).Ok());
    const std::unique_ptr<Object> copy(copied);
    ASSERT_TRUE(m_product->DeleteAttribute(u"accessRefs").Ok());
    EXPECT_THAT(Known(*copy), testing::ElementsAre("steel", "brass"));
    EXPECT_EQ(3u, DocumentMap::Count());
    ASSERT_TRUE(copy->SetAttributeValue(u"accessRefs", u"left.xml").Ok());
    EXPECT_EQ(1u, DocumentMap::Count());
}

TEST_F(NetworkTest, TheOptionOffLeavesReferencesAlone)
{
    const Loaded alone =
        LoadFrom(m_folder->File("main.xml"), {{"adapters/ZORVEX/references", "off"}});
    Object* product = alone.Root()->ResolveId(u"id7");
    EXPECT_THAT(Known(*product), testing::ElementsAre("none", "none"));
    const auto options = MakeOptions({{"adapters/ZORVEX/references", "off"}});
    Array<Reference> references;
    product->ResolveAttributeValue(u"accessRefs", *options, references);
    EXPECT_THAT(Names(references), testing::ElementsAre("none", "none"));
    EXPECT_THAT(Follow(*product), testing::ElementsAre("steel", "brass"));
}

}  // namespace
