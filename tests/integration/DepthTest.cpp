#include <pthread.h>

#include <functional>

#include "Documents.h"
#include "objectmodel/ClassData.h"
#include "zorvex_api/TraverseContext.h"

/// Deep trees and long chains of documents on the stack of a small thread.

namespace zorvex_test
{

using namespace zorvex_api;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

/// Runs on a thread with a stack of 1 MB.
void OnSmallStack(const std::function<void()>& work)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 1024 * 1024);
    pthread_t thread;
    ASSERT_EQ(0, pthread_create(
                     &thread, &attributes,
                     [](void* run) -> void*
                     {
                         (*static_cast<const std::function<void()>*>(run))();
                         return nullptr;
                     },
                     const_cast<std::function<void()>*>(&work)));
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

class Counter : public TraverseContext
{
public:
    zorvexTraverseResult Visit(Object*) override
    {
        ++count;
        return zorvexTraverseContinue;
    }
    int count = 0;
};

int CountObjects(Object* root)
{
    Counter counter;
    root->Traverse(&counter);
    return counter.count;
}

std::string Nested(int depth)
{
    std::string content;
    for (int i = 0; i < depth; ++i)
    {
        content += "<Bound>";
    }
    for (int i = 0; i < depth; ++i)
    {
        content += "</Bound>";
    }
    return WrapDocument(
        "<ProductDef id=\"id1\"><InstanceGraph id=\"id2\"><ProductRevisionView "
        "id=\"id5\">" +
        content + "</ProductRevisionView></InstanceGraph></ProductDef>");
}

}  // namespace

class DepthTest : public DocumentsTest
{
};

TEST_F(DepthTest, ADeepDocumentIsLoadedCopiedSavedAndDeleted)
{
    const String path = m_folder.Write("a.zorvex", Nested(1000));
    OnSmallStack(
        [&]
        {
            const Loaded loaded = LoadFrom(path);
            EXPECT_THAT(loaded.Messages(), IsEmpty());
            EXPECT_EQ(1004, CountObjects(loaded.Root()));
            EXPECT_THAT(Messages(Save(loaded.Root(), m_folder.File("b.zorvex"))), IsEmpty());
            Object* made = nullptr;
            EXPECT_TRUE(loaded.Root()->Copy(made, 4).Ok());
            const std::unique_ptr<Object> copy(made);
            EXPECT_EQ(1004, CountObjects(copy.get()));
            EXPECT_THAT(Messages(Save(copy.get(), m_folder.File("c.zorvex"))), IsEmpty());
        });
    EXPECT_EQ(m_folder.Read("b.zorvex"), m_folder.Read("c.zorvex"));
}

TEST_F(DepthTest, ATreeMadeByHandMayBeDeeperStill)
{
    constexpr int kDepth = 20000;
    OnSmallStack(
        [&]
        {
            const auto document = MakeDocument();
            std::unique_ptr<Object> top(ClassDescriptor::FindByName(u"Bound")->MakeObject());
            Object* deepest = top.get();
            for (int i = 1; i < kDepth; ++i)
            {
                Object* child = nullptr;
                ASSERT_TRUE(deepest->AddElement(u"Bound", u"", child).Ok());
                deepest = child;
            }
            EXPECT_EQ(kDepth, CountObjects(top.get()));
            Object* made = nullptr;
            EXPECT_TRUE(top->Copy(made, 4).Ok());
            const std::unique_ptr<Object> copy(made);

            EXPECT_TRUE(top->SetOwner(document->ResolveId("id5")).Ok());
            EXPECT_EQ(document.get(), deepest->GetRoot());
            EXPECT_TRUE(Save(document.get(), m_folder.File("a.zorvex")).Ok());
            EXPECT_TRUE(top->SetOwner(nullptr).Ok());
            EXPECT_EQ(top.get(), deepest->GetRoot());
            EXPECT_EQ(deepest, top->ResolveId(deepest->GetId()));
            EXPECT_TRUE(top->SetOwner(document->ResolveId("id5")).Ok());
            top.release();
        });
    EXPECT_THAT(LoadFrom(m_folder.File("a.zorvex")).Messages().at(0), HasSubstr("max_depth"));
    OnSmallStack(
        [&]
        {
            const Loaded loaded = LoadFrom(m_folder.File("a.zorvex"),
                                           {{"adapters/ZORVEX/import/max_depth", "30000"}});
            EXPECT_THAT(loaded.Messages(), IsEmpty());
            EXPECT_EQ(kDepth + 5, CountObjects(loaded.Root()));
        });
}

TEST_F(DepthTest, ALongChainOfDocumentsIsLoadedSavedAndDeleted)
{
    constexpr int kDocuments = 1000;
    for (int i = 0; i < kDocuments; ++i)
    {
        const std::string next = std::to_string((i + 1) % kDocuments);
        Write("d" + std::to_string(i) + ".zorvex", {"d" + next + ".zorvex#id5"});
    }
    const auto load = [&](int wanted, const char* message)
    {
        const Loaded loaded = LoadFrom(m_folder.File("d0.zorvex"));
        const std::vector<std::string> messages = loaded.Messages();
        EXPECT_EQ(message == nullptr, messages.empty());
        if (message != nullptr && !messages.empty())
        {
            EXPECT_THAT(messages[0], HasSubstr(message));
        }
        EXPECT_GE(Alive(), static_cast<std::size_t>(wanted));
        EXPECT_EQ(static_cast<int>(Alive()) * 6, CountObjects(loaded.Root()));
        EXPECT_TRUE(Save(loaded.Root(), m_folder.File("o.zorvex")).Ok());
    };
    load(kDocuments, nullptr);
    // A small stack ends the chain early, with an error.
    OnSmallStack([&]
                 { load(50, "the stack of this thread has no room for a chain of more than "); });
}

TEST_F(DepthTest, ALongChainOfUnnamedDocumentsIsSavedOrReported)
{
    const auto save = [&](int count)
    {
        std::vector<std::unique_ptr<Object>> documents;
        for (int i = 0; i < count; ++i)
        {
            documents.push_back(MakeDocument());
            if (i > 0)
            {
                Refer(documents[documents.size() - 2].get(), documents.back()->ResolveId("id5"));
            }
        }
        return Messages(Save(documents[0].get(), m_folder.File("a.zorvex")));
    };
    OnSmallStack([&] { EXPECT_THAT(save(40), IsEmpty()); });
    {
        const Loaded loaded = LoadFrom(m_folder.File("a.zorvex"));
        EXPECT_THAT(loaded.Messages(), IsEmpty());
        EXPECT_EQ(40u, Alive());
    }
    OnSmallStack(
        [&]
        { EXPECT_THAT(save(700), testing::Contains(HasSubstr("too long a chain of documents"))); });
}

}  // namespace zorvex_test
