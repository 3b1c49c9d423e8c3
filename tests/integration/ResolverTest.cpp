#include <functional>

#include "Documents.h"
#include "transport/LiveStreams.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Load.h"
#include "zorvex_api/MemoryStream.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/URIResolver.h"
#include "zorvex_api/URIResolverRef.h"

/// An application's own resolver: refusing references, changing them, serving streams.

namespace zorvex_test
{

using namespace zorvex_api;
using internal::GetSlot;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

/// Answers the questions about references as a test says, and keeps a list of them.
class Watcher : public URIResolver
{
public:
    /// Gives the answer to a question; may change the pointer.
    using Answer = std::function<int(int code, Pointer&, Result&)>;

    void Process(PluginProcessData* data) override
    {
        const int code = data->m_operation;
        if (code == internal::kResolverOpenStream)
        {
            if (serve && serve(*data))
            {
                return;
            }
            ++opened;
        }
        if (code > internal::kResolverAskLoad)
        {
            return URIResolver::Process(data);
        }
        auto& pointer = *GetSlot<Pointer>(*data, internal::kPointerSlot);
        const auto* owner = GetSlot<Object>(*data, internal::kObjectSlot);
        const auto* field = GetSlot<char>(*data, internal::kFieldNameSlot);
        questions.push_back(std::to_string(code) + " " +
                            (owner != nullptr ? Utf8(owner->GetId()) : "none") + " " + field + " " +
                            Utf8(pointer.GetFileName()) + "#" + Utf8(pointer.GetLocatorString()));
        EXPECT_EQ(1, *GetSlot<int>(*data, internal::kModeSlot));
        *GetSlot<int>(*data, internal::kAnswerSlot) =
            answer ? answer(code, pointer, *GetSlot<Result>(*data, internal::kResultSlot)) : 1;
    }

    int FindPointer(const Handle& handle, Pointer& pointer) override
    {
        if (lookedUp)
        {
            lookedUp();
        }
        return URIResolver::FindPointer(handle, pointer);
    }

    Answer answer;
    std::function<void()> lookedUp;
    std::function<bool(PluginProcessData&)> serve;
    std::vector<std::string> questions;
    int opened = 0;
};

}  // namespace

class ResolverTest : public DocumentsTest
{
protected:
    void SetUp() override
    {
        DocumentsTest::SetUp();
        m_watcher = std::make_unique<Watcher>();
        m_active = std::make_unique<URIResolverRef>(m_watcher.get());
    }
    void TearDown() override
    {
        m_active.reset();
        m_watcher.reset();
        DocumentsTest::TearDown();
    }
    Object* Part(const Loaded& loaded) { return loaded.Root()->ResolveId("id11"); }

    std::unique_ptr<Watcher> m_watcher;
    std::unique_ptr<URIResolverRef> m_active;
};

TEST_F(ResolverTest, EachReferenceIsAskedForTwiceBeforeItsDocumentIsOpened)
{
    Write("b.zorvex", {});
    const Loaded loaded = LoadFrom(Write("a.zorvex", {"b.zorvex#id5", "#id5"}));
    EXPECT_THAT(m_watcher->questions,
                ElementsAre("1 id11 revisionRef b.zorvex#id5", "2 id11 revisionRef b.zorvex#"));
    EXPECT_EQ(2, m_watcher->opened);
}

TEST_F(ResolverTest, ARefusalIsNoErrorAndLeavesTheTextAlone)
{
    const String a = Write("a.zorvex", {"none.zorvex#id5"});
    for (const int refused : {1, 2})
    {
        m_watcher->answer = [&](int code, Pointer&, Result& result)
        {
            if (code == refused && code == 2)
            {
                result.AddError(2, u"unheard");
            }
            return code == refused ? 0 : 1;
        };
        const Loaded loaded = LoadFrom(a);
        EXPECT_THAT(loaded.Messages(), IsEmpty());
        EXPECT_EQ(nullptr, Target(Part(loaded)));
        EXPECT_EQ("none.zorvex#id5", Text(Part(loaded), u"revisionRef"));
    }
    EXPECT_EQ(2, m_watcher->opened);
}

TEST_F(ResolverTest, ARefusedLoadByReferenceGivesNothingAndNoError)
{
    const String b = Write("b.zorvex", {});
    m_watcher->answer = [](int, Pointer&, Result&) { return 0; };
    EXPECT_THAT(LoadFrom(b + u"#id5").Messages(), IsEmpty());
    EXPECT_EQ(0, m_watcher->opened);
}

TEST_F(ResolverTest, AReferenceCanBeSentElsewhere)
{
    Write("moved/c.zorvex", {});
    const String a = Write("a.zorvex", {"gone.zorvex#id5"});
    for (const char* place : {"moved/c.zorvex", "moved/c.zorvex#id6"})
    {
        m_watcher->answer = [&](int code, Pointer& pointer, Result&)
        {
            if (code == 1)
            {
                pointer.Parse(place);
            }
            return 1;
        };
        const Loaded loaded = LoadFrom(a);
        EXPECT_THAT(loaded.Messages(), IsEmpty());
        ASSERT_NE(nullptr, Target(Part(loaded)));
        const std::string wanted = String(place).EndsWith("6") ? "id6" : "id5";
        EXPECT_EQ(wanted, Utf8(Target(Part(loaded))->GetId()));
        // A saved document names the place where the target was found.
        m_watcher->answer = nullptr;
        EXPECT_TRUE(Save(loaded.Root(), m_folder.File("o.zorvex")).Ok());
        EXPECT_THAT(m_folder.Read("o.zorvex"),
                    HasSubstr("revisionRef=\"" + m_folder.Path().string() + "/moved/c.zorvex#" +
                              wanted + "\""));
    }
}

TEST_F(ResolverTest, DocumentsCanComeFromStreamsOfTheApplication)
{
    m_watcher->serve = [](PluginProcessData& data)
    {
        const String name = *GetSlot<String>(data, internal::kNameSlot);
        if (!name.StartsWith(u"db:"))
        {
            return false;
        }
        const std::string text =
            Document(name.EndsWith(u"/a.zorvex") ? std::vector<std::string>{"db:x/b.zorvex#id5"}
                                                 : std::vector<std::string>{});
        auto stream = std::make_unique<MemoryStream>();
        stream->Write(text.data(), static_cast<int>(text.size()), 1, 0);
        stream->Rewind();
        *GetSlot<Stream*>(data, internal::kStreamOutSlot) = stream.release();
        return true;
    };
    const Loaded loaded = LoadFrom(u"db:x/a.zorvex");
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    ASSERT_NE(nullptr, Target(Part(loaded)));
    EXPECT_EQ("five", Text(Target(Part(loaded)), u"name"));
    EXPECT_EQ(0, m_watcher->opened);
}

TEST_F(ResolverTest, AQueryAndAPortArePartOfTheName)
{
    std::vector<std::string> asked;
    m_watcher->serve = [&](PluginProcessData& data)
    {
        const std::string name = Utf8(*GetSlot<String>(data, internal::kNameSlot));
        asked.push_back(name);
        const std::string text =
            Document(name == "db://h:81/d/a.xml?rev=1"
                         ? std::vector<std::string>{"b.xml?rev=2#id5", "a.xml?rev=2#id5",
                                                    "a.xml?rev=1#id5", "db://h:82/d/b.xml#id5"}
                         : std::vector<std::string>{});
        auto stream = std::make_unique<MemoryStream>();
        stream->Write(text.data(), static_cast<int>(text.size()), 1, 0);
        stream->Rewind();
        *GetSlot<Stream*>(data, internal::kStreamOutSlot) = stream.release();
        return true;
    };
    const Loaded loaded = LoadFrom(u"db://h:81/d/a.xml?rev=1");
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    EXPECT_THAT(asked, ElementsAre("db://h:81/d/a.xml?rev=1", "db://h:81/d/b.xml?rev=2",
                                   "db://h:81/d/a.xml?rev=2", "db://h:82/d/b.xml"));
    String text;
    EXPECT_TRUE(loaded.Root()->GetXML(text, nullptr).Ok());
    for (const char* reference :
         {"b.xml?rev=2#id5", "a.xml?rev=2#id5", "#id5", "db://h:82/d/b.xml#id5"})
    {
        EXPECT_THAT(Utf8(text), HasSubstr("revisionRef=\"" + std::string(reference) + "\""));
    }
}

TEST_F(ResolverTest, AKeptResolverReadsADocumentOnce)
{
    Write("b.zorvex", {});
    const String a = Write("a.zorvex", {"b.zorvex#id5"});
    const Loaded first = LoadFrom(a);
    Loaded second = LoadFrom(a);
    EXPECT_EQ(first.Root(), second.Root());
    second.roots.clear();
    EXPECT_EQ(2, m_watcher->opened);
    // What the application asks for by name it gets, and owns.
    const Loaded b = LoadFrom(m_folder.File("b.zorvex"));
    EXPECT_EQ(Target(Part(first))->GetRoot(), b.Root());
    EXPECT_EQ(2, m_watcher->opened);
}

TEST_F(ResolverTest, AnUnnamedDocumentIsWrittenOnlyIfTheResolverAgrees)
{
    const auto b = MakeDocument();
    const auto a = MakeDocument();
    Refer(a.get(), b->ResolveId("id5"));
    m_watcher->answer = [](int code, Pointer&, Result&) { return code == 1 ? 0 : 1; };
    EXPECT_THAT(Messages(Save(a.get(), m_folder.File("a.zorvex"))), IsEmpty());
    EXPECT_THAT(m_watcher->questions, ElementsAre("1 id11 revisionRef #"));
    EXPECT_EQ("", Text(a->ResolveId("id11"), u"revisionRef"));

    m_watcher->questions.clear();
    m_watcher->answer = [](int code, Pointer& pointer, Result&)
    {
        if (code == 1)
        {
            pointer.Parse("chosen.zorvex");
        }
        return code == 1 ? 1 : 0;
    };
    EXPECT_THAT(Messages(Save(a.get(), m_folder.File("a.zorvex"))), IsEmpty());
    EXPECT_THAT(m_watcher->questions, ElementsAre("1 id11 revisionRef #",
                                                  "2 id11 revisionRef "
                                                  "chosen.zorvex#"));
    EXPECT_FALSE(m_folder.Has("chosen.zorvex"));
    EXPECT_THAT(m_folder.Read("a.zorvex"), HasSubstr("revisionRef=\"chosen.zorvex#id5\""));
}

TEST_F(ResolverTest, WhatAResolverChangesDuringASaveIsWrittenAsItIsThen)
{
    for (const bool asXml : {false, true})
    {
        const auto b = MakeDocument();
        const auto a = MakeDocument();
        Object* part = a->ResolveId(u"id11");
        Object* graph = part->GetOwner();
        Object* last = nullptr;
        ASSERT_TRUE(graph->AddElement(u"ProductRevisionView", u"", last).Ok());
        part->SetAttributeValue(u"hasUserDefinedViews", String(u"false"));
        part->SetAttributeValue(u"viewRef", String(u"#id5"));
        part->SetAttributeValue(u"textureRefs", String(u"x.zorvex y.zorvex"));
        Refer(a.get(), b->ResolveId(u"id5"));
        const auto change = [&]
        {
            if (last == nullptr)
            {
                return;
            }
            graph->DeleteElement(last);
            last = nullptr;
            part->DeleteAttribute(u"viewRef");
            part->DeleteAttribute(u"textureRefs");
            part->SetAttributeValue(u"hasUserDefinedViews", String(u"true"));
            Object* added = nullptr;
            for (int i = 0; i < 20; ++i)  // takes the memory of what is gone
            {
                graph->AddElement(u"ProductRevisionView", u"", added);
                added->SetAttributeValue(u"subType", String(u"new"));
            }
        };
        m_watcher->lookedUp = asXml ? change : std::function<void()>();
        m_watcher->answer = [&](int, Pointer&, Result&)
        {
            change();
            return 0;
        };
        String text;
        if (asXml)
        {
            EXPECT_TRUE(a->GetXML(text, nullptr).Ok());
        }
        else
        {
            EXPECT_TRUE(Save(a.get(), m_folder.File("a.zorvex")).Ok());
        }
        EXPECT_EQ(nullptr, last);
        const std::string saved = asXml ? Utf8(text) : m_folder.Read("a.zorvex");
        EXPECT_THAT(saved, HasSubstr(" hasUserDefinedViews=\"true\""));
        EXPECT_THAT(saved, testing::Not(HasSubstr("viewRef")));
        EXPECT_THAT(saved, testing::Not(HasSubstr("textureRefs")));
        EXPECT_THAT(saved, HasSubstr(" subType=\"new\""));
        EXPECT_TRUE(LoadText(saved).GetResult().Ok());
    }
}

TEST_F(ResolverTest, ADocumentThatCameThroughAStreamIsNotWrittenOverAFile)
{
    const String b = m_folder.Write("b.zorvex", "an old file");
    const String a = Write("a.zorvex", {"b.zorvex#id5"});
    m_watcher->answer = [](int code, Pointer& pointer, Result&)
    {
        if (code == 1)
        {
            const std::string text = Document();
            auto* stream = new MemoryStream;
            stream->Write(text.data(), static_cast<int>(text.size()), 1, 0);
            stream->Rewind();
            pointer.Parse("#ZORVEX(STREAM-doc/" + StreamAddress(stream) + "/ZORVEX-doc/id5)");
        }
        return 1;
    };
    const Loaded loaded = LoadFrom(a);
    EXPECT_THAT(loaded.Messages(), IsEmpty());
    ASSERT_NE(nullptr, Target(Part(loaded)));
    m_watcher->answer = nullptr;
    EXPECT_THAT(Messages(Save(loaded.Root(), a)), IsEmpty());
    EXPECT_THAT(m_folder.Read("a.zorvex"), HasSubstr("revisionRef=\"b.zorvex#id5\""));
    EXPECT_EQ("an old file", m_folder.Read("b.zorvex"));
    EXPECT_EQ(2, std::distance(std::filesystem::directory_iterator(m_folder.Path()),
                               std::filesystem::directory_iterator()));
}

TEST_F(ResolverTest, TheAddressOfAStreamNamesNoFile)
{
    const auto b = MakeDocument();
    const auto a = MakeDocument();
    Refer(a.get(), b->ResolveId("id5"));
    m_watcher->answer = [](int code, Pointer& pointer, Result&)
    {
        if (code == 1)
        {
            pointer.Parse("#ZORVEX(STREAM-doc/0x7f001234/ZORVEX-doc)");
        }
        return 1;
    };
    EXPECT_THAT(Messages(Save(a.get(), m_folder.File("a.zorvex"))), IsEmpty());
    EXPECT_TRUE(m_folder.Has("a_id11.zorvex"));
    EXPECT_THAT(m_folder.Read("a.zorvex"), HasSubstr("revisionRef=\"a_id11.zorvex#id5\""));
}

}  // namespace zorvex_test
