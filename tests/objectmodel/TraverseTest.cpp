#include <pthread.h>

#include <functional>

#include "objectmodel/ClassData.h"
#include "objectmodel/DocumentMap.h"
#include "objectmodel/TestObjects.h"
#include "zorvex_api/TraverseContext.h"

using namespace zorvex_api;
using namespace zorvex_test;
using testing::ElementsAre;

namespace
{

/// Notes the ids met; `answer` says what each visit gives.
class Recorder : public TraverseContext
{
public:
    explicit Recorder(std::function<zorvexTraverseResult(Object*)> answer = {})
        : m_answer(std::move(answer))
    {
    }
    zorvexTraverseResult Visit(Object* object) override
    {
        met.push_back(Utf8(object->GetId()));
        return m_answer ? m_answer(object) : zorvexTraverseContinue;
    }

    std::vector<std::string> met;

private:
    std::function<zorvexTraverseResult(Object*)> m_answer;
};

/// A graph with two views; the first has a representation below it.
class TraverseTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        m_graph = Make(u"InstanceGraph");
        m_graph->SetId(u"graph");
        m_first = AddNamed(*m_graph, u"ProductRevisionView", u"first");
        m_below = AddNamed(*m_first, u"Representation", u"below");
        m_second = AddNamed(*m_graph, u"ProductRevisionView", u"second");
        m_instance = AddNamed(*m_graph, u"Instance", u"instance");
    }
    void TearDown() override
    {
        m_graph.reset();
        SessionTest::TearDown();
    }

    static Object* AddNamed(Object& owner, const String& className, const String& id)
    {
        Object* child = AddChild(owner, className);
        child->SetId(id);
        return child;
    }

    std::unique_ptr<Object> m_graph;
    Object* m_first = nullptr;
    Object* m_below = nullptr;
    Object* m_second = nullptr;
    Object* m_instance = nullptr;
};

TEST_F(TraverseTest, FieldsComeInTheOrderOfTheClassNotOfFirstTouch)
{
    Recorder all;
    EXPECT_EQ(zorvexTraverseContinue, m_graph->Traverse(&all));
    EXPECT_THAT(all.met, ElementsAre("graph", "instance", "first", "below", "second"));
}

TEST_F(TraverseTest, SkipLeavesOutTheChildrenAndStopEndsTheWalk)
{
    Recorder skipAll([](Object*) { return zorvexTraverseSkip; });
    EXPECT_EQ(zorvexTraverseContinue, m_graph->Traverse(&skipAll));
    EXPECT_THAT(skipAll.met, ElementsAre("graph"));

    Recorder stop([&](Object* object)
                  { return object == m_below ? zorvexTraverseStop : zorvexTraverseContinue; });
    EXPECT_EQ(zorvexTraverseStop, m_graph->Traverse(&stop));
    EXPECT_THAT(stop.met, ElementsAre("graph", "instance", "first", "below"));
}

TEST_F(TraverseTest, AnotherAnswerEndsTheListOfItsObjectAlone)
{
    constexpr auto kOwn = static_cast<zorvexTraverseResult>(5);
    AddNamed(*m_graph, u"Instance", u"behind");
    Recorder walk([&](Object* object)
                  { return object == m_instance ? kOwn : zorvexTraverseContinue; });
    EXPECT_EQ(zorvexTraverseContinue, m_graph->Traverse(&walk));
    EXPECT_THAT(walk.met, ElementsAre("graph", "instance", "first", "below", "second"));
    Recorder top([](Object*) { return kOwn; });
    EXPECT_EQ(kOwn, m_graph->Traverse(&top));
}

TEST_F(TraverseTest, AVisitMayTakeOutTheObjectThatItIsAt)
{
    Recorder remover(
        [&](Object* object)
        {
            if (object != m_first)
            {
                return zorvexTraverseContinue;
            }
            EXPECT_TRUE(m_graph->DeleteElement(object).Ok());
            return zorvexTraverseSkip;
        });
    m_graph->Traverse(&remover);
    EXPECT_THAT(remover.met, ElementsAre("graph", "instance", "first", "second"));

    Recorder emptier(
        [&](Object* object)
        {
            if (object == m_instance)
            {
                EXPECT_TRUE(m_graph->DeleteElements().Ok());
                return zorvexTraverseSkip;
            }
            return zorvexTraverseContinue;
        });
    m_graph->Traverse(&emptier);
    EXPECT_THAT(emptier.met, ElementsAre("graph", "instance"));
}

TEST_F(TraverseTest, AVisitMayWalkOnInTheSameContext)
{
    Recorder nested;
    Recorder* context = &nested;
    Recorder outer(
        [&](Object* object)
        {
            if (object == m_first)
            {
                m_below->Traverse(context);
                return zorvexTraverseSkip;
            }
            return zorvexTraverseContinue;
        });
    m_graph->Traverse(&outer);
    EXPECT_THAT(nested.met, ElementsAre("below"));
}

class DocumentWalkTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        for (std::unique_ptr<Object>& document : m_documents)
        {
            document = Make(u"Document");
            m_children.push_back(AddChild(*document, u"Product"));
        }
    }
    void TearDown() override
    {
        for (std::unique_ptr<Object>& document : m_documents)
        {
            document.reset();
        }
        SessionTest::TearDown();
    }
    void Link(size_t from, size_t to)
    {
        const Reference reference(Handle(m_children[to]));
        ASSERT_TRUE(m_children[from]->AddAttributeValue(u"accessRefs", reference).Ok());
    }

    std::unique_ptr<Object> m_documents[3];
    std::vector<Object*> m_children;
};

TEST_F(DocumentWalkTest, DocumentsThatReferToEachOtherAreWalkedOnce)
{
    Link(0, 1);
    Link(1, 0);
    Link(1, 2);
    std::vector<Object*> met;
    Recorder walk(
        [&](Object* object)
        {
            met.push_back(object);
            return zorvexTraverseContinue;
        });
    m_documents[0]->Traverse(&walk);
    EXPECT_THAT(met, ElementsAre(m_documents[0].get(), m_children[0], m_documents[1].get(),
                                 m_children[1], m_documents[2].get(), m_children[2]));

    met.clear();
    walk.SetFollowURI(0);
    m_documents[0]->Traverse(&walk);
    EXPECT_THAT(met, ElementsAre(m_documents[0].get(), m_children[0]));
}

TEST_F(DocumentWalkTest, TheNetworkHoldsAllDocumentsReachedButTheFirst)
{
    Link(0, 1);
    Link(1, 2);
    Link(2, 0);
    Map<Object*, Object*> network;
    ClassData::GetDocumentNetwork(ClassData::Of(m_documents[0].get()), network);
    EXPECT_EQ(2, network.GetSize());
    EXPECT_GE(network.LookupIndex(m_documents[1].get()), 0);
    EXPECT_GE(network.LookupIndex(m_documents[2].get()), 0);
}

TEST_F(DocumentWalkTest, ChangesMarkTheRootAndDropCompanions)
{
    ClassData& document = *ClassData::Of(m_documents[0].get());
    document.AddCompanion(m_documents[1].get());
    document.AddCompanion(m_documents[1].get());
    document.AddCompanion(m_documents[2].get());
    auto* companions =
        static_cast<Array<Object*>*>(document.GetExtension(extension_tag::kCompanions));
    ASSERT_NE(nullptr, companions);
    EXPECT_EQ(2, companions->GetSize());
    m_documents[2].reset();
    EXPECT_EQ(1, companions->GetSize());

    document.stateFlags &= ~ClassData::kNetworkStale;
    const std::uint32_t stamp = document.ChangeStamp();
    m_children[0]->SetAttributeValue(u"name", u"changed");
    EXPECT_NE(stamp, document.ChangeStamp());
    EXPECT_NE(0u, document.stateFlags & ClassData::kNetworkStale);
    m_documents[0]->SetAttributeValue(u"name", u"changed");
    EXPECT_EQ(nullptr, document.GetExtension(extension_tag::kCompanions));
}

TEST_F(DocumentWalkTest, OnlyCompanionsThatNobodyWasGivenDieWithTheirDocument)
{
    ClassData& document = *ClassData::Of(m_documents[0].get());
    document.AddCompanion(m_documents[1].get());
    document.AddCompanion(m_documents[2].get());
    Object* pulledIn = m_documents[2].release();
    ClassData::Of(pulledIn)->stateFlags |= ClassData::kPulledInRoot;
    ASSERT_TRUE(DocumentMap::Contains(ClassData::Of(pulledIn)));

    m_documents[0].reset();

    EXPECT_EQ(1u, DocumentMap::Count());
    EXPECT_TRUE(DocumentMap::Contains(ClassData::Of(m_documents[1].get())));
}

TEST_F(DocumentWalkTest, DocumentsMayEndBeforeTheirCompanions)
{
    ClassData::Of(m_documents[0].get())->AddCompanion(m_documents[1].get());
    ClassData::Of(m_documents[1].get())->AddCompanion(m_documents[0].get());
    m_documents[0].reset();
    EXPECT_EQ(nullptr,
              ClassData::Of(m_documents[1].get())->GetExtension(extension_tag::kCompanions));
}

/// Runs on a thread with 1 MB of stack.
void OnSmallStack(std::function<void()> body)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 1 << 20);
    pthread_t thread;
    const auto run = [](void* argument) -> void*
    {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(0, pthread_create(&thread, &attributes, run, &body));
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST_F(DocumentWalkTest, DeepTreesAreWalkedAndCopiedOnASmallStack)
{
    constexpr int kDepth = 20000;
    OnSmallStack(
        [&]
        {
            auto top = Make(u"Bound");
            Object* innermost = top.get();
            for (int i = 0; i < kDepth; ++i)
            {
                Object* child = Make(u"Bound").release();
                ClassData& parent = *ClassData::Of(innermost);
                FieldDescriptor* field = nullptr;
                FieldInfo info;
                ASSERT_TRUE(innermost->GetClassDescriptor()->GetField(u"Bound", info, 4).Ok());
                field = info.GetDescriptor();
                ASSERT_TRUE(parent.AppendChild(ClassData::Of(child), field));
                innermost = child;
            }
            Recorder walk;
            top->Traverse(&walk);
            EXPECT_EQ(kDepth + 1u, walk.met.size());

            Object* copy = nullptr;
            ASSERT_TRUE(top->Copy(copy, 4).Ok());
            Recorder again;
            copy->Traverse(&again);
            EXPECT_EQ(kDepth + 1u, again.met.size());
            delete copy;
        });
}

TEST_F(DocumentWalkTest, ChildrenKeptAsideBelowEachOtherMoveAndEndOnASmallStack)
{
    constexpr int kDepth = 5000;
    OnSmallStack(
        [&]
        {
            const auto keepAside = [](Object* child, Object* owner)
            { ClassData::Of(child)->SetOwner(owner, {}, nullptr, true, false, 1); };
            const auto graph = Make(u"InstanceGraph");
            Object* top = AddChild(*graph, u"Instance");
            Object* innermost = top;
            for (int i = 0; i < kDepth; ++i)
            {
                Object* child = Make(u"Instance").release();
                keepAside(child, innermost);
                innermost = child;
            }
            const String id = innermost->GetId();
            ASSERT_TRUE(top->SetOwner(nullptr).Ok());
            EXPECT_EQ(nullptr, graph->ResolveId(id));
            EXPECT_EQ(innermost, top->ResolveId(id));

            AddChild(*graph, u"Instance")->SetId(id);
            ASSERT_TRUE(top->SetOwner(graph.get()).Ok());
            EXPECT_NE(Utf8(id), IdOf(*innermost));
            EXPECT_EQ(innermost, graph->ResolveId(innermost->GetId()));
        });
}

}  // namespace
