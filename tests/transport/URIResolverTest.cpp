#include "zorvex_api/URIResolver.h"

#include "support/SessionTest.h"
#include "transport/DocumentPointer.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/Stream.h"
#include "zorvex_api/URIResolverRef.h"

namespace zorvex_test
{

using namespace zorvex_api;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

std::vector<Object*> Find(URIResolver& resolver, const char* text, int expected = 1)
{
    Array<Handle> handles;
    handles.Add(Handle());
    EXPECT_EQ(expected, resolver.FindObjects(Pointer(text), handles)) << text;
    std::vector<Object*> objects;
    for (const Handle& handle : handles)
    {
        objects.push_back(handle.GetObject());
    }
    return objects;
}

std::string PointerOf(URIResolver& resolver, Object* object)
{
    Pointer pointer("untouched");
    resolver.FindPointer(object, pointer);
    return Utf8(pointer.GetString());
}

/// Opens by operation 3.
std::unique_ptr<Stream> Open(const String& name, unsigned int mode, Result& result)
{
    URIResolver resolver;
    Stream* stream = nullptr;
    String slot(name);
    PluginProcessData data;
    data.m_operation = 3;
    data.Set(0, &result);
    data.Set(5, &mode);
    data.Set(7, &stream);
    data.Set(9, &slot);
    resolver.Process(&data);
    return std::unique_ptr<Stream>(stream);
}

}  // namespace

class URIResolverTest : public SessionTest
{
};

TEST_F(URIResolverTest, AnObjectIsFoundUnderAllItsPointersAndKeepsTheFirst)
{
    URIResolver resolver;
    Configuration first;
    Configuration second;
    resolver.RegisterObject(&first, Pointer("/d/a.xml#ZORVEX(ZORVEX-doc)"));
    resolver.RegisterObject(&first, Pointer("/d/b.xml#ZORVEX(ZORVEX-doc)"));
    resolver.RegisterObject(&second, Pointer("/d/b.xml#ZORVEX(ZORVEX-doc)"));
    resolver.RegisterObject(&second, Pointer("/d/b.xml#ZORVEX(ZORVEX-doc)"));

    const char* chained = "/d/b.xml#ZORVEX(ZORVEX-doc)";
    EXPECT_THAT(Find(resolver, chained), ElementsAre(&first));
    EXPECT_THAT(Find(resolver, "/d/b.xml"), ElementsAre(&first, &second));
    EXPECT_EQ("/d/a.xml", PointerOf(resolver, &first));
    EXPECT_THAT(Find(resolver, "/d/c.xml"), IsEmpty());
    EXPECT_THAT(Find(resolver, "/d/c.xml#id5", 0), IsEmpty());

    resolver.DeregisterObject(&first);
    EXPECT_THAT(Find(resolver, chained), ElementsAre(&second));
    EXPECT_THAT(Find(resolver, "/d/a.xml"), IsEmpty());
    EXPECT_EQ("untouched", PointerOf(resolver, &first));
    EXPECT_TRUE(resolver.DeregisterObject(&first).Ok());
}

TEST_F(URIResolverTest, WithoutAChainAllPointersOfThePathCountInTheOrderOfTheirTexts)
{
    URIResolver resolver;
    std::vector<std::unique_ptr<Configuration>> objects;
    for (const char* text : {"a.xml#ZORVEX(TOY-doc/z)", "a.xml#id9", "b.xml#id1", "a.xml#id1"})
    {
        objects.push_back(std::make_unique<Configuration>());
        resolver.RegisterObject(objects.back().get(), Pointer(text));
    }
    EXPECT_THAT(Find(resolver, "a.xml"),
                ElementsAre(objects[0].get(), objects[3].get(), objects[1].get()));
    resolver.RegisterObject(Handle(&resolver, "QB"), Pointer("q#ZORVEX(QB-doc/x)"));
    resolver.RegisterObject(objects[0].get(), Pointer("q#ZORVEX(QB-doc/x)"));
    EXPECT_THAT(Find(resolver, "q#ZORVEX(QB-doc/x)"), ElementsAre(nullptr, objects[0].get()));
}

TEST_F(URIResolverTest, ReplacingMovesAllRegistrations)
{
    URIResolver resolver;
    Configuration old;
    Configuration present;
    Configuration replacement;
    EXPECT_EQ(0, resolver.ReplaceObject(&old, &replacement));
    resolver.RegisterObject(&old, Pointer("a.xml#id1"));
    resolver.RegisterObject(&old, Pointer("b.xml#id1"));
    resolver.RegisterObject(&present, Pointer("b.xml#id1"));
    EXPECT_EQ(0, resolver.ReplaceObject(&old, &old));

    EXPECT_EQ(1, resolver.ReplaceObject(&old, &replacement));
    EXPECT_THAT(Find(resolver, "a.xml#id1"), ElementsAre(&replacement));
    EXPECT_THAT(Find(resolver, "b.xml"), ElementsAre(&replacement, &present));
    EXPECT_EQ("a.xml#id1", PointerOf(resolver, &replacement));
    EXPECT_EQ("untouched", PointerOf(resolver, &old));

    EXPECT_EQ(1, resolver.ReplaceObject(&replacement, &present));
    EXPECT_THAT(Find(resolver, "b.xml"), ElementsAre(&present));
    EXPECT_EQ("b.xml#id1", PointerOf(resolver, &present));
}

TEST_F(URIResolverTest, AnObjectThatDiesLeavesAllResolvers)
{
    URIResolver first;
    auto second = std::make_unique<URIResolver>();
    auto object = std::make_unique<Configuration>();
    auto other = std::make_unique<Configuration>();
    for (URIResolver* resolver : {&first, second.get()})
    {
        resolver->RegisterObject(object.get(), Pointer("a.xml#id1"));
        resolver->RegisterObject(object.get(), Pointer("b.xml#id1"));
        resolver->RegisterObject(other.get(), Pointer("b.xml#id1"));
    }
    object.reset();
    EXPECT_THAT(Find(first, "a.xml"), IsEmpty());
    EXPECT_THAT(Find(first, "b.xml"), ElementsAre(other.get()));
    EXPECT_THAT(Find(*second, "b.xml"), ElementsAre(other.get()));
    second.reset();
    other.reset();
    EXPECT_THAT(Find(first, "b.xml"), IsEmpty());
}

TEST_F(URIResolverTest, APointerThroughAStreamIsNotKept)
{
    URIResolver resolver;
    Configuration object;
    const Pointer pointer("#ZORVEX(STREAM-doc/0x1234/ZORVEX-doc)");
    EXPECT_TRUE(resolver.RegisterObject(&object, pointer).Ok());
    internal::RememberDocumentPointer(&object, pointer);
    EXPECT_EQ("untouched", PointerOf(resolver, &object));
    EXPECT_EQ(nullptr, internal::GetDocumentPointer(&object));

    internal::RememberDocumentPointer(&object, Pointer("a.xml"));
    internal::RememberDocumentPointer(&object, Pointer("b.xml"));
    EXPECT_EQ("a.xml", Utf8(internal::GetDocumentPointer(&object)->GetString()));
}

TEST_F(URIResolverTest, StreamsAreOpenedByScheme)
{
    const ScratchFolder folder;
    const String path = folder.Write("a.txt", "x");
    const std::string name = Utf8(path);
    Result result;
    EXPECT_NE(nullptr, Open(path, 0x10001, result));
    EXPECT_NE(nullptr, Open("FILE://" + path, 0x10001, result));
    EXPECT_THAT(Messages(result), IsEmpty());

    Result missing;
    EXPECT_EQ(nullptr, Open(path + ".no", 1, missing));
    EXPECT_THAT(Messages(missing), ElementsAre("ERROR 2: Cannot open file: " + name + ".no"));
    Result folderAsFile;
    EXPECT_EQ(nullptr, Open(folder.File("."), 1, folderAsFile));
    EXPECT_FALSE(folderAsFile.Ok());
    Result scheme;
    EXPECT_EQ(nullptr, Open("ftp://h/a.xml", 1, scheme));
    EXPECT_THAT(Messages(scheme),
                ElementsAre("ERROR 2: Default URIResolver supports only file:, http: and https: "
                            "streams."));
    Result web;
    EXPECT_EQ(nullptr, Open("HTTP://h/a.xml", 1, web));
    EXPECT_THAT(Messages(web), ElementsAre("ERROR 2: Cannot open file: HTTP://h/a.xml"));
    Result written;
    EXPECT_EQ(nullptr, Open("https://h/a.xml", 0x10002, written));
    EXPECT_EQ("ERROR 2: Cannot write to http: or https: streams", Messages(written).at(0));
}

TEST_F(URIResolverTest, AFileThatIsWrittenTakesItsPlaceWhenItIsClosed)
{
    const ScratchFolder folder;
    const String path = folder.Write("a.txt", "old");
    Result result;
    {
        const auto dropped = Open(path, 0x10002, result);
        ASSERT_NE(nullptr, dropped);
        dropped->Write("new", 3, 1, 0);
    }
    EXPECT_EQ("old", folder.Read("a.txt"));
    const auto kept = Open(path, 0x10002, result);
    kept->Write("new", 3, 1, 0);
    EXPECT_NE(0, kept->Close());
    EXPECT_EQ("new", folder.Read("a.txt"));
}

TEST_F(URIResolverTest, QuestionsAreAnsweredYesAndUnknownCodesReported)
{
    URIResolver resolver;
    for (const int code : {1, 2})
    {
        int answer = 7;
        PluginProcessData data;
        data.m_operation = code;
        data.Set(6, &answer);
        resolver.Process(&data);
        EXPECT_EQ(1, answer);
    }
    Result result;
    PluginProcessData data;
    data.m_operation = 4;
    data.Set(0, &result);
    resolver.Process(&data);
    EXPECT_THAT(Messages(result), ElementsAre("ERROR 2: Unknown resolver operation"));
}

TEST_F(URIResolverTest, AHeldResolverIsTheDefaultUntilItsHolderEnds)
{
    const auto current = [] { return PluginDescriptor::GetDefaultInstance(3); };
    URIResolver mine;
    {
        const URIResolverRef outer(&mine);
        EXPECT_EQ(&mine, current());
        {
            auto other = std::make_unique<URIResolver>();
            const URIResolverRef inner(other.get());
            EXPECT_EQ(other.get(), current());
            other.reset();
            EXPECT_EQ(&mine, current());
        }
        const URIResolverRef again;
        EXPECT_EQ(&mine, again.GetURIResolver());
        EXPECT_EQ(&mine, static_cast<URIResolver*>(PluginDescriptor::GetInstance(3)));
    }
    EXPECT_EQ(nullptr, current());
    {
        const URIResolverRef made;
        EXPECT_EQ(made.GetURIResolver(), current());
    }
    EXPECT_EQ(nullptr, current());
}

class MultithreadedResolverTest : public SessionTest
{
protected:
    MultithreadedResolverTest() : SessionTest({"multithreading=true"}) {}
};

TEST_F(MultithreadedResolverTest, NoResolverIsTheDefault)
{
    URIResolver mine;
    const URIResolverRef held(&mine);
    const URIResolverRef made;
    EXPECT_EQ(nullptr, PluginDescriptor::GetDefaultInstance(3));
    EXPECT_NE(&mine, made.GetURIResolver());
}

}  // namespace zorvex_test
