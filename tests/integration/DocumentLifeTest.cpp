#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <random>

#include "Documents.h"
#include "objectmodel/ClassData.h"
#include "transport/ToyAdapter.h"
#include "zorvex_api/Load.h"
#include "zorvex_api/TraverseContext.h"
#include "zorvex_api/URIResolverRef.h"

/// Documents that references bring in: who keeps them, and when they go.

namespace zorvex_test
{

using namespace zorvex_api;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

/// Goes everywhere, into other documents too.
class Walk : public TraverseContext
{
public:
    zorvexTraverseResult Visit(Object* object) override
    {
        EXPECT_NE(nullptr, object->GetClassDescriptor());
        return zorvexTraverseContinue;
    }
};

}  // namespace

class DocumentLifeTest : public DocumentsTest
{
protected:
    std::unique_ptr<Object> Load(const String& uri)
    {
        Loaded loaded = LoadFrom(uri);
        EXPECT_TRUE(loaded.GetResult().Ok()) << testing::PrintToString(loaded.GetResult());
        Object* root = loaded.Root();
        loaded.roots.clear();
        return std::unique_ptr<Object>(root);
    }
    static Object* Part(const std::unique_ptr<Object>& document, const char* id = "id11")
    {
        return document->ResolveId(id);
    }
    /// Deletes an object through its owner.
    static void Delete(Object* object)
    {
        EXPECT_EQ(0, object->GetOwner()->DeleteElement(object).NumberOfErrors());
    }
    /// Moves an object under another one, or makes it a root.
    static void Move(Object* object, Object* owner)
    {
        EXPECT_TRUE(object->SetOwner(nullptr).Ok());
        if (owner != nullptr)
        {
            const Result moved = object->SetOwner(owner);
            EXPECT_TRUE(moved.Ok()) << testing::PrintToString(moved);
        }
    }
};

TEST_F(DocumentLifeTest, DocumentsGoWithTheDocumentThatBroughtThemIn)
{
    auto a = Load((Write("c.zorvex", {}), Write("b.zorvex", {"c.zorvex#id5"}),
                   Write("a.zorvex", {"b.zorvex#id5"})));
    EXPECT_EQ(3u, Alive());
    a.reset();
    EXPECT_EQ(0u, Alive());
}

TEST_F(DocumentLifeTest, ADocumentGoesWithTheLastReferenceToIt)
{
    Write("b.zorvex", {});
    const auto a = Load(Write("a.zorvex", {"b.zorvex#id5", "b.zorvex#id6", "b.zorvex"}));
    EXPECT_EQ(2u, Alive());
    Delete(Part(a));
    EXPECT_EQ(2u, Alive());
    Part(a, "id12")->DeleteAttribute(u"revisionRef");
    EXPECT_EQ(2u, Alive());
    Part(a, "id13")->SetAttributeValue(u"revisionRef", String(u"#id5"));
    EXPECT_EQ(1u, Alive());
}

TEST_F(DocumentLifeTest, DocumentsThatReferToEachOtherGoTogether)
{
    Write("b.zorvex", {"a.zorvex#id5", "c.zorvex#id5"});
    Write("c.zorvex", {"b.zorvex#id6", "a.zorvex"});
    const String path = Write("a.zorvex", {"b.zorvex#id5", "c.zorvex#id5"});
    auto a = Load(path);
    EXPECT_EQ(3u, Alive());
    a.reset();
    EXPECT_EQ(0u, Alive());

    // One of the two ways in is enough to keep both.
    for (const auto& order : {std::array{"id11", "id12"}, std::array{"id12", "id11"}})
    {
        a = Load(path);
        Delete(Part(a, order[0]));
        EXPECT_EQ(3u, Alive());
        EXPECT_NE(nullptr, Target(Target(Part(a, order[1]))->ResolveId(u"id11")));
        Delete(Part(a, order[1]));
        EXPECT_EQ(1u, Alive());
    }
}

TEST_F(DocumentLifeTest, WhatTheApplicationLoadsItDeletesItself)
{
    const URIResolverRef kept;
    const String pathB = Write("b.zorvex", {});
    const String pathA = Write("a.zorvex", {"b.zorvex#id5"});
    for (const bool asksFirst : {true, false})
    {
        auto b = asksFirst ? Load(pathB) : nullptr;
        auto a = Load(pathA);
        if (b == nullptr)
        {
            b = Load(pathB);
        }
        EXPECT_EQ(2u, Alive());
        EXPECT_EQ(b.get(), Target(Part(a))->GetRoot());
        if (asksFirst)
        {
            a.reset();
            EXPECT_NE(nullptr, b->ResolveId("id5"));
            continue;
        }
        b.reset();
        EXPECT_EQ(nullptr, Target(Part(a)));
        EXPECT_EQ("b.zorvex#id5", Text(Part(a), u"revisionRef"));
        Array<Handle> targets;
        EXPECT_TRUE(Part(a)->ResolveAttribute(u"revisionRef", targets).Ok());
        EXPECT_EQ(2u, Alive());
    }
}

TEST_F(DocumentLifeTest, AnElementThatWasAskedForBringsItsDocumentToTheApplication)
{
    Write("c.zorvex", {});
    const String b = Write("b.zorvex", {"c.zorvex#id5"});
    for (const bool byLoad : {true, false})
    {
        Array<Handle> handles;
        const Result result =
            byLoad ? zorvex_api::Load(b + u"#id5", handles) : ResolveURI(b + u"#id5", handles);
        EXPECT_THAT(Messages(result), IsEmpty());
        ASSERT_EQ(1, handles.GetSize());
        EXPECT_EQ("id5", Utf8(handles[0].GetObject()->GetId()));
        EXPECT_EQ(2u, Alive());
        delete handles[0].GetObject()->GetRoot();
        EXPECT_EQ(0u, Alive());
    }
}

TEST_F(DocumentLifeTest, AMovedSubtreeTakesItsHoldAlong)
{
    Write("b.zorvex", {});
    auto a = Load(Write("a.zorvex", {"b.zorvex#id5"}));
    auto other = MakeDocument();
    EXPECT_EQ(1, Part(a)->SetId("moved"));
    Move(Part(a, "moved"), other->ResolveId("id5")->GetOwner());
    a.reset();
    EXPECT_EQ(2u, Alive());
    other.reset();
    EXPECT_EQ(0u, Alive());

    a = Load(m_folder.File("a.zorvex"));
    std::unique_ptr<Object> part(Part(a));
    Move(part.get(), nullptr);
    a.reset();
    EXPECT_EQ("five", Text(Target(part.get()), u"name"));
    part.reset();
    EXPECT_EQ(0u, Alive());
}

TEST_F(DocumentLifeTest, ASubtreeCutOutOfABroughtInDocumentStaysAlive)
{
    Write("b.zorvex", {});
    auto a = Load(Write("a.zorvex", {"b.zorvex#id5", "b.zorvex#id6"}));
    std::unique_ptr<Object> view(Target(Part(a)));
    Move(view.get(), nullptr);
    Delete(Part(a, "id12"));
    a.reset();
    EXPECT_EQ(0u, Alive());
    EXPECT_EQ("five", Text(view.get(), u"name"));
}

TEST_F(DocumentLifeTest, ACopyHoldsWhatItsSourceHeld)
{
    Write("b.zorvex", {"a.zorvex#id6"});
    auto a = Load(Write("a.zorvex", {"b.zorvex#id5"}));
    Object* made = nullptr;
    EXPECT_TRUE(a->Copy(made, 4).Ok());
    std::unique_ptr<Object> copy(made);
    a.reset();
    EXPECT_EQ(2u, Alive());
    ASSERT_NE(nullptr, Target(Part(copy)));
    EXPECT_EQ("five", Text(Target(Part(copy)), u"name"));
    EXPECT_EQ(nullptr, Target(Target(Part(copy))->ResolveId(u"id11")));

    // A copy of the brought-in document is the application's.
    EXPECT_TRUE(Target(Part(copy))->GetRoot()->Copy(made, 4).Ok());
    const std::unique_ptr<Object> copyOfB(made);
    copy.reset();
    EXPECT_EQ(1u, Alive());
}

TEST_F(DocumentLifeTest, AReferenceThatTheApplicationSetHoldsTheDocumentToo)
{
    Write("b.zorvex", {});
    Write("c.zorvex", {});
    auto a = Load(Write("a.zorvex", {"b.zorvex#id5", "c.zorvex#id5"}));
    auto other = MakeDocument();
    Array<Handle> both;
    both.Add(Handle(Target(Part(a))));
    both.Add(Handle(Target(Part(a, "id12"))));
    EXPECT_TRUE(Part(other)->SetAttributeValue(u"revisionRef", Reference(both)).Ok());
    a.reset();
    EXPECT_EQ(3u, Alive());
    // One of several targets goes: the other stays.
    Delete(both[0].GetObject());
    Reference left;
    EXPECT_TRUE(Part(other)->GetAttributeValue(u"revisionRef", left).Ok());
    ASSERT_EQ(1, left.GetHandles().GetSize());
    EXPECT_EQ(both[1].GetObject(), left.GetHandle().GetObject());
    other.reset();
    EXPECT_EQ(0u, Alive());
}

TEST_F(DocumentLifeTest, ARootThatTheApplicationPlacesElsewhereIsItsOwn)
{
    m_folder.Write("p.zorvex",
                   "<Product xmlns=\"http://www.zorvex.org/Schemas/ZORVEXSchema\" id=\"id77\" "
                   "nameRef=\"b.zorvex#id5\"/>");
    Write("b.zorvex", {});
    auto a = Load(Write("a.zorvex", {"p.zorvex"}));
    std::unique_ptr<Object> product(Target(Part(a)));
    ASSERT_NE(nullptr, product);
    EXPECT_TRUE(product->SetOwner(a->ResolveId("id2")).Ok());
    EXPECT_EQ("#id77", Text(Part(a), u"revisionRef"));
    EXPECT_TRUE(product->SetOwner(nullptr).Ok());
    a.reset();
    EXPECT_EQ("five", Text(Target(product.get(), u"nameRef"), u"name"));
}

TEST_F(DocumentLifeTest, ADeadTargetLeavesTheTextAndTheDocument)
{
    Write("b.zorvex", {});
    auto a = Load(Write("a.zorvex", {"b.zorvex#id5", "b.zorvex#id5"}));
    Delete(Target(Part(a)));
    EXPECT_EQ(nullptr, Target(Part(a)));
    EXPECT_EQ(nullptr, Target(Part(a, "id12")));
    EXPECT_EQ("b.zorvex#id5", Text(Part(a), u"revisionRef"));
    EXPECT_EQ(2u, Alive());
    EXPECT_THAT(Messages(Save(a.get(), m_folder.File("o.zorvex"))), IsEmpty());
    EXPECT_THAT(m_folder.Read("o.zorvex"), testing::HasSubstr("revisionRef=\"b.zorvex#id5\""));
    a.reset();
    EXPECT_EQ(0u, Alive());
}

TEST_F(DocumentLifeTest, ADocumentInWhichNothingWasFoundGoesWithTheReferenceToo)
{
    Write("b.zorvex", {});
    auto a = Load(Write("a.zorvex", {"b.zorvex#id99"}));
    EXPECT_EQ(2u, Alive());
    a.reset();
    EXPECT_EQ(0u, Alive());
}

TEST_F(DocumentLifeTest, DocumentsOfTheApplicationMayGoInAnyOrder)
{
    const std::vector<std::string> all = {"a.zorvex#id5", "b.zorvex#id5", "c.zorvex#id6",
                                          "d.zorvex"};
    std::array<int, 4> order = {0, 1, 2, 3};
    for (const char* name : {"a.zorvex", "b.zorvex", "c.zorvex", "d.zorvex"})
    {
        Write(name, all);
    }
    do
    {
        const URIResolverRef kept;
        std::array<std::unique_ptr<Object>, 4> documents;
        for (int i = 0; i < 4; ++i)
        {
            documents[static_cast<std::size_t>(i)] =
                Load(m_folder.File(std::string(1, "abcd"[i]) + ".zorvex"));
        }
        EXPECT_EQ(4u, Alive());
        for (std::size_t i = 0; i < 4; ++i)
        {
            documents[static_cast<std::size_t>(order[i])].reset();
            for (std::size_t k = i + 1; k < 4; ++k)
            {
                const auto& left = documents[static_cast<std::size_t>(order[k])];
                Text(Part(left), u"revisionRef");
                if (Object* target = Target(Part(left, "id12")))
                {
                    EXPECT_EQ("five", Text(target, u"name"));
                }
            }
        }
        EXPECT_EQ(0u, Alive());
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(DocumentLifeTest, ABroughtInDocumentThatTheApplicationDeletesIsForgotten)
{
    Write("c.zorvex", {"b.zorvex#id5"});
    Write("b.zorvex", {"c.zorvex#id5"});
    auto a = Load(Write("a.zorvex", {"b.zorvex#id5", "c.zorvex#id5"}));
    delete Target(Part(a))->GetRoot();
    EXPECT_EQ(nullptr, Target(Part(a)));
    EXPECT_EQ(2u, Alive());
    EXPECT_EQ(nullptr, Target(Target(Part(a, "id12"))->ResolveId(u"id11")));
    a.reset();
    EXPECT_EQ(0u, Alive());
}

TEST_F(DocumentLifeTest, TheEndOfManyReferencesToOneDocumentIsLinear)
{
    Write("b.zorvex", {});
    auto a = Load(Write("a.zorvex", std::vector<std::string>(60000, "b.zorvex#id5")));
    EXPECT_EQ(2u, Alive());
    const auto start = std::chrono::steady_clock::now();
    a.reset();
    EXPECT_EQ(0u, Alive());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

/// Whatever is done in whatever order: nothing stays behind, and nothing dead is followed.
TEST_F(DocumentLifeTest, AnyOrderOfLoadsChangesAndDeletionsEndsWithNothing)
{
    const auto name = [](unsigned i) { return std::string(1, static_cast<char>('a' + i)); };
    for (unsigned i = 0; i < 6; ++i)
    {
        std::vector<std::string> references;
        for (unsigned k = 1; k < 4; ++k)
        {
            references.push_back(name((i * k + k) % 6) + ".zorvex" + (k == 2 ? "" : "#id5"));
        }
        Write(name(i) + ".zorvex", references);
    }
    for (unsigned seed = 0; seed < 40; ++seed)
    {
        std::minstd_rand random(seed + 1);
        const auto below = [&](std::size_t limit)
        { return static_cast<unsigned>(random() % limit); };
        const std::unique_ptr<URIResolverRef> kept(seed % 2 == 0 ? new URIResolverRef : nullptr);
        std::vector<std::unique_ptr<Object>> owned;  // roots of the application
        for (int step = 0; step < 60; ++step)
        {
            const unsigned action = owned.empty() ? 0 : below(8);
            Object* root = owned.empty() ? nullptr : owned[below(owned.size())].get();
            Object* part =
                root != nullptr ? root->ResolveId(below(2) == 0 ? "id11" : "id13") : nullptr;
            Object* target = part != nullptr ? Target(part) : nullptr;
            switch (action)
            {
                case 0:
                {
                    Array<Handle> handles;
                    zorvex_api::Load(m_folder.File(name(below(6)) + ".zorvex"), handles);
                    for (const Handle& handle : handles)
                    {
                        Object* made = handle.GetObject();
                        const bool known =
                            std::any_of(owned.begin(), owned.end(),
                                        [&](const auto& other) { return other.get() == made; });
                        if (!known)
                        {
                            owned.emplace_back(made);
                        }
                    }
                    break;
                }
                case 1:
                    std::swap(owned[below(owned.size())], owned.back());
                    owned.pop_back();
                    break;
                case 2:
                    if (target != nullptr && target->GetOwner() != nullptr)
                    {
                        target->GetOwner()->DeleteElement(target);
                    }
                    break;
                case 3:
                    if (part != nullptr)
                    {
                        part->SetAttributeValue(u"revisionRef", Reference(Handle(root)));
                    }
                    break;
                case 4:
                    if (part != nullptr)
                    {
                        const Object* other = owned[below(owned.size())].get();
                        const Object* far = other->ResolveId("id12");
                        Object* goal = far != nullptr ? Target(far) : nullptr;
                        part->SetAttributeValue(u"revisionRef", Reference(Handle(goal)));
                    }
                    break;
                case 5:
                {
                    Object* copy = nullptr;
                    root->Copy(copy, 4);
                    owned.emplace_back(copy);
                    break;
                }
                case 6:
                    if (part != nullptr && part->GetOwner() != nullptr)
                    {
                        part->SetOwner(nullptr);
                        owned.emplace_back(part);
                    }
                    break;
                default:
                    if (part != nullptr)
                    {
                        Array<Handle> targets;
                        part->ResolveAttribute(u"revisionRef", targets);
                    }
                    break;
            }
        }
        for (const auto& root : owned)
        {
            String text;
            root->GetXML(text, nullptr);
            Walk walk;
            root->Traverse(&walk);
        }
        owned.clear();
        EXPECT_EQ(0u, Alive()) << "seed " << seed;
    }
}

TEST(DocumentLifeAfterSessionTest, DocumentsMayGoAfterTheEndOfTheSession)
{
    const ScratchFolder folder;
    const auto text = [](const std::string& reference)
    { return WrapDocument("<ProductDef id=\"id1\" nameRef=\"" + reference + "\"/>"); };
    folder.Write("b.zorvex", text("a.zorvex#id1"));
    const String path = folder.Write("a.zorvex", text("b.zorvex#id1"));
    ASSERT_EQ(0, Initialise(0, nullptr, 0, nullptr));
    {
        const Loaded loaded = LoadFrom(path);
        EXPECT_EQ(2u, DocumentMap::Count());
        EXPECT_EQ(0, Terminate());
    }
    EXPECT_EQ(0u, DocumentMap::Count());
}

// --- things of other formats
// ------------------------------------------------------------------------------

/// The toy format gives one thing for a file, and a part of it by locator.
class ForeignLifeTest : public ToyTest
{
protected:
    void SetUp() override
    {
        ToyTest::SetUp();
        ToyAdapter::s_behaviour = [this](ToyAdapter& self, PluginProcessData& data)
        { return Answer(self, data); };
    }

    bool Answer(ToyAdapter& self, PluginProcessData& data)
    {
        auto* handles = internal::GetSlot<Array<Handle>>(data, internal::kHandlesSlot);
        auto* located = internal::GetSlot<Array<Handle>>(data, internal::kLocatedSlot);
        switch (data.m_operation)
        {
            case ZORVEX_OP_ADAPTER_LOAD:
                handles->Add(Handle(new int(7), u"TOY"));
                ++m_loaded;
                return true;
            case ZORVEX_OP_ADAPTER_LOCATE:
                m_locators.push_back(
                    Utf8(*internal::GetSlot<String>(data, internal::kLocatorSlot)));
                *located = *handles;
                return true;
            case ZORVEX_OP_ADAPTER_SAVE:
                m_saved.push_back(Utf8(self.GetContext()));
                return true;
            case ZORVEX_OP_ADAPTER_DESTROY:
                for (const Handle& handle : *handles)
                {
                    EXPECT_EQ(7, *static_cast<int*>(handle.GetData()));
                    delete static_cast<int*>(handle.GetData());
                    ++m_destroyed;
                }
                return true;
            default:
                return false;
        }
    }

    std::string Document()
    {
        return WrapDocument(
            "<ProductDef id=\"id1\"><InstanceGraph id=\"id2\"><ProductRevisionView id=\"id3\">"
            "<Representation id=\"id4\" format=\"TOY\" location=\"x.toy\"/>"
            "<Representation id=\"id5\" format=\"TOY\" location=\"x.toy\"/>"
            "</ProductRevisionView></InstanceGraph></ProductDef>");
    }

    int m_loaded = 0;
    int m_destroyed = 0;
    std::vector<std::string> m_locators;
    std::vector<std::string> m_saved;
    ScratchFolder m_folder;
};

TEST_F(ForeignLifeTest, AThingIsDestroyedWithTheLastReferenceToIt)
{
    const String path = m_folder.Write("a.zorvex", Document());
    const URIResolverRef kept;
    auto loaded = std::make_unique<Loaded>(LoadFrom(path));
    EXPECT_TRUE(loaded->GetResult().Ok());
    EXPECT_EQ(1, m_loaded);
    Object* view = loaded->Root()->ResolveId("id3");
    EXPECT_TRUE(view->DeleteElement(view->ResolveId("id4")).Ok());
    EXPECT_EQ(0, m_destroyed);

    Object* made = nullptr;
    EXPECT_TRUE(loaded->Root()->Copy(made, 4).Ok());
    std::unique_ptr<Object> copy(made);
    loaded.reset();
    EXPECT_EQ(0, m_destroyed);
    copy.reset();
    EXPECT_EQ(1, m_destroyed);

    // The resolver doesn't give out what is gone.
    EXPECT_TRUE(LoadFrom(path).GetResult().Ok());
    EXPECT_EQ(2, m_loaded);
    EXPECT_EQ(2, m_destroyed);
}

TEST_F(ForeignLifeTest, AThingWithoutAPlaceIsWrittenByItsAdapterOnce)
{
    const String path = m_folder.Write(
        "a.zorvex",
        WrapDocument("<ProductDef id=\"id1\"><InstanceGraph id=\"id2\"><ProductRevisionView "
                     "id=\"id3\"><Representation id=\"id4\"/></ProductRevisionView>"
                     "</InstanceGraph></ProductDef>"));
    const URIResolverRef kept;
    const Loaded loaded = LoadFrom(path);
    loaded.Root()->ResolveId("id4")->SetAttributeValue(u"location",
                                                       Reference(Handle(new int(7), u"TOY")));
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_THAT(Messages(loaded.Root()->Save(path, nullptr)), IsEmpty());
        EXPECT_THAT(m_saved, ElementsAre("a_id4_toy.Toy"));
        EXPECT_THAT(m_folder.Read("a.zorvex"), testing::HasSubstr("location=\"a_id4_toy.Toy\""));
    }
}

TEST_F(ForeignLifeTest, ALocatorSharesWhatItsRepresentationHasLoaded)
{
    const String path = m_folder.Write(
        "a.zorvex",
        WrapDocument(
            "<ProductDef id=\"id1\"><InstanceGraph id=\"id2\"><ProductRevisionView id=\"id3\">"
            "<Representation id=\"id4\" format=\"TOY\" location=\"x.toy\">"
            "<LocatorRef locationRef=\"#ZORVEX(TOY-doc/face_3)\"/>"
            "</Representation></ProductRevisionView></InstanceGraph></ProductDef>"));
    {
        const Loaded loaded = LoadFrom(path);
        EXPECT_TRUE(loaded.GetResult().Ok());
        EXPECT_EQ(1, m_loaded);
        EXPECT_THAT(m_locators, testing::Contains("face_3"));
        Array<Object*> locators;
        loaded.Root()->ResolveId("id4")->GetElementsByClass(u"LocatorRef", locators);
        ASSERT_EQ(1, locators.GetSize());
        Reference shared;
        locators[0]->GetAttributeValue(u"locationRef", shared);
        EXPECT_EQ(1, shared.GetHandles().GetSize());
    }
    EXPECT_EQ(1, m_destroyed);
}

TEST_F(ForeignLifeTest, ADocumentReadByAnApplicationsAdapterIsNotWrittenAnew)
{
    ToyAdapter::s_behaviour = [](ToyAdapter&, PluginProcessData& data)
    {
        auto* handles = internal::GetSlot<Array<Handle>>(data, internal::kHandlesSlot);
        switch (data.m_operation)
        {
            case ZORVEX_OP_ADAPTER_LOAD:
                handles->Add(Handle(ClassDescriptor::FindByName(u"Document")->MakeObject()));
                return true;
            case ZORVEX_OP_ADAPTER_LOCATE:
                *internal::GetSlot<Array<Handle>>(data, internal::kLocatedSlot) = *handles;
                return true;
            case ZORVEX_OP_ADAPTER_DESTROY:
                delete handles->GetAt(0).GetObject();
                return true;
            default:
                return false;
        }
    };
    const String path = m_folder.Write(
        "a.zorvex",
        WrapDocument("<ProductDef id=\"id1\"><InstanceGraph id=\"id2\"><Instance id=\"id3\" "
                     "partRef=\"x.toy#ZORVEX(TOY-doc)\"/></InstanceGraph></ProductDef>"));
    {
        const Loaded loaded = LoadFrom(path);
        EXPECT_NE(nullptr, Target(loaded.Root()->ResolveId("id3"), u"partRef"));
        EXPECT_TRUE(loaded.Root()->Save(path, nullptr).Ok());
    }
    EXPECT_THAT(m_folder.Read("a.zorvex"), testing::HasSubstr(" partRef=\"x.toy"));
    EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(m_folder.Path()),
                               std::filesystem::directory_iterator()));
}

}  // namespace zorvex_test
