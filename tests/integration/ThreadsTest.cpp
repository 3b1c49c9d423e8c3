#include <filesystem>
#include <thread>

#include "Documents.h"
#include "zorvex_api/URIResolver.h"

/// Separate documents on separate threads.

namespace zorvex_test
{

using namespace zorvex_api;

class ThreadsTest : public DocumentsTest
{
protected:
    ThreadsTest() : DocumentsTest({"multithreading=true"}) {}

    /// Everything that one thread does with documents of its own; gives what it saved last.
    std::string Work(const std::string& folder)
    {
        std::string saved;
        for (int round = 0; round < 10; ++round)
        {
            const Loaded loaded = LoadFrom(m_folder.File(folder + "/a.zorvex"));
            EXPECT_TRUE(loaded.GetResult().Ok()) << testing::PrintToString(loaded.GetResult());
            Object* part = loaded.Root()->ResolveId("id11");
            EXPECT_NE(nullptr, Target(part));
            part->SetAttributeValue(u"name", String(u"plate \u00e9"));
            Object* made = nullptr;
            EXPECT_TRUE(loaded.Root()->Copy(made, 4).Ok());
            const std::unique_ptr<Object> copy(made);
            EXPECT_TRUE(Save(copy.get(), m_folder.File(folder + "/c.zorvex")).Ok());
            EXPECT_TRUE(Save(loaded.Root(), m_folder.File(folder + "/o.zorvex")).Ok());
            const Loaded again = LoadFrom(m_folder.File(folder + "/o.zorvex"));
            String text;
            EXPECT_TRUE(again.Root()->GetXML(text, nullptr).Ok());
            EXPECT_TRUE(LoadFrom(text).GetResult().Ok());
            const Loaded broken = LoadText("<ZORVEX><Nonsense");
            EXPECT_FALSE(broken.GetResult().Ok());
            saved = m_folder.Read(folder + "/o.zorvex");
        }
        return saved;
    }
};

TEST_F(ThreadsTest, DocumentsOfTwoThreadsDoNotMeet)
{
    std::vector<std::string> folders = {"p", "q", "r"};
    for (const std::string& folder : folders)
    {
        Write(folder + "/a.zorvex", {"sub/b.zorvex#id5", "#id5", "a.zorvex#id6"});
        Write(folder + "/sub/b.zorvex", {"../a.zorvex#id5"});
    }
    const std::string alone = Work("r");
    std::string results[2];
    std::thread first([&] { results[0] = Work("p"); });
    std::thread second([&] { results[1] = Work("q"); });
    first.join();
    second.join();
    EXPECT_EQ(alone, results[0]);
    EXPECT_EQ(alone, results[1]);
}

TEST_F(ThreadsTest, ADocumentKeepsTheResolverThatLoadedIt)
{
    Write("b.zorvex", {});
    const Loaded loaded = LoadFrom(Write("a.zorvex", {"#id5", "b.zorvex#id5"}));
    Object* part = loaded.Root()->ResolveId("id11");
    part->SetAttributeValue(u"revisionRef", String(u"b.zorvex#id6"));
    Array<Handle> targets;
    EXPECT_TRUE(part->ResolveAttribute(u"revisionRef", targets).Ok());
    ASSERT_EQ(1, targets.GetSize());
    EXPECT_EQ(2u, Alive());  // not read again
}

}  // namespace zorvex_test
