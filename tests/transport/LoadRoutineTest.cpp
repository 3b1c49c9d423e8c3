#include <stdexcept>

#include "ToyAdapter.h"
#include "transport/DocumentPointer.h"
#include "transport/LoadDepth.h"
#include "transport/LoadText.h"
#include "transport/PluginInstances.h"
#include "zorvex_api/ConfigurationRef.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Load.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/Stream.h"
#include "zorvex_api/URIResolver.h"
#include "zorvex_api/URIResolverRef.h"

namespace zorvex_test
{

using namespace zorvex_api;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

/// Makes `roots` new roots for each import or load.
ToyAdapter::Behaviour Making(int roots, int* loads = nullptr)
{
    return [roots, loads](ToyAdapter&, PluginProcessData& data)
    {
        if (data.m_operation != ZORVEX_OP_ADAPTER_IMPORT &&
            data.m_operation != ZORVEX_OP_ADAPTER_LOAD)
        {
            return false;
        }
        for (int i = 0; i < roots; ++i)
        {
            internal::GetSlot<Array<Handle>>(data, 10)->Add(Handle(new Configuration));
        }
        if (loads != nullptr)
        {
            ++*loads;
        }
        return true;
    };
}

/// Answers imports from the resolver, as an adapter does that wants documents read once.
bool ImportOnce(ToyAdapter& self, PluginProcessData& data, int& loads)
{
    Pointer pointer;
    self.ConstructPointer(pointer);
    Array<Handle> found;
    auto& handles = *internal::GetSlot<Array<Handle>>(data, 10);
    if (internal::GetSlot<URIResolver>(data, -2)->FindObjects(pointer, found) != 0)
    {
        handles.Add(found.GetSize(), found.GetData());
        return true;
    }
    return Making(1, &loads)(self, data);
}

}  // namespace

class LoadRoutineTest : public ToyTest
{
protected:
    using ToyTest::ToyTest;
};

TEST_F(LoadRoutineTest, AUriThatNamesNoFormatIsReported)
{
    EXPECT_THAT(LoadFrom("").Messages(), ElementsAre("ERROR 4: Invalid uri"));
    EXPECT_THAT(LoadFrom("d/../a.unknown").Messages(),
                ElementsAre("ERROR 2: No adapter found for \"a.unknown\"."));
    EXPECT_THAT(LoadFrom("a.toy", {{"format", "NONE"}}).Messages(),
                ElementsAre("WARNING 517: Missing Adapter (NONE), resolving: a.toy",
                            "ERROR 4: Unable to load: \"a.toy\""));
    EXPECT_EQ(517, LoadFrom("a.toy#ZORVEX(x").GetResult().GetError(0)->GetCode());
}

TEST_F(LoadRoutineTest, TheFormatComesFromTheOptionThenFromTheExtensionOfTheLatestPlugin)
{
    ToyAdapter::s_behaviour = Making(1);
    for (const char* uri : {"a.toy", "a.TOY", "a.xml"})
    {
        EXPECT_EQ(1u, LoadFrom(uri).Roots().size()) << uri;
    }
    EXPECT_EQ(1u, LoadFrom("a.unknown", {{"format", "TOY"}}).Roots().size());
    EXPECT_THAT(LoadFrom("/none/a.xml", {{"format", "ZORVEX"}}).Messages().at(0),
                HasSubstr("ERROR 2: Cannot open file: /none/a.xml"));

    // What the URI itself names comes before both, though a lone adapter isn't in its text.
    const char* named = "a.zorvex#ZORVEX(TOY-doc)";
    EXPECT_EQ(1u, LoadFrom(named).Roots().size());
    Object* document = nullptr;
    EXPECT_THAT(Messages(LoadDocument(named, *MakeOptions({{"format", "ZORVEX"}}), &document)),
                IsEmpty());
    EXPECT_NE(nullptr, document);
    delete document;
}

TEST_F(LoadRoutineTest, ALoadThatBringsNothingIsNoSuccess)
{
    ToyAdapter::s_behaviour = Making(0);
    EXPECT_THAT(LoadFrom("a.toy").Messages(), ElementsAre("ERROR 4: Unable to load: \"a.toy\""));
}

TEST_F(LoadRoutineTest, NothingThrownLeavesALoad)
{
    ToyAdapter::s_behaviour = [](ToyAdapter&, PluginProcessData&) -> bool
    { throw Exception(77, "from the adapter"); };
    EXPECT_THAT(LoadFrom("a.toy").Messages(), ElementsAre("ERROR 77: from the adapter"));
    ToyAdapter::s_behaviour = [](ToyAdapter&, PluginProcessData&) -> bool
    { throw std::runtime_error("unknown"); };
    EXPECT_THAT(LoadFrom("a.toy").Messages(), ElementsAre("ERROR 4: Unable to load: \"a.toy\""));
    EXPECT_THAT(LoadFrom("<a/>", {{"format", "TOY"}}).Messages(),
                ElementsAre("ERROR 4: Unable to load: \"<...>\""));
    EXPECT_EQ(nullptr, ConfigurationRef::GetActiveConfiguration());
    EXPECT_EQ(nullptr, PluginDescriptor::GetDefaultInstance(3));
}

TEST_F(LoadRoutineTest, AResolverThatIsKeptReadsADocumentOnce)
{
    int loads = 0;
    ToyAdapter::s_behaviour = [&](ToyAdapter& self, PluginProcessData& data)
    { return data.m_operation == ZORVEX_OP_ADAPTER_IMPORT && ImportOnce(self, data, loads); };
    {
        const Loaded first = LoadFrom("a.toy");
        const Loaded second = LoadFrom("a.toy");
        EXPECT_NE(first.Root(), second.Root());
    }
    EXPECT_EQ(2, loads);
    const URIResolverRef kept;
    const Loaded first = LoadFrom("a.toy");
    Loaded second = LoadFrom("a.toy");
    EXPECT_EQ(first.Root(), second.Root());
    second.roots.clear();
    EXPECT_EQ(3, loads);

    Pointer pointer;
    EXPECT_EQ(1, kept->FindPointer(first.Root(), pointer));
    EXPECT_EQ("a.toy", Utf8(pointer.GetString()));
    EXPECT_EQ("a.toy", Utf8(internal::GetDocumentPointer(first.Root())->GetString()));
}

TEST_F(LoadRoutineTest, AResolverInTheOptionsIsTheOneInForceForTheLoadAlone)
{
    URIResolver mine;
    Configuration options;
    options.Set("uri_resolver/instance", "", &mine);
    options.Set("some/option", "kept");
    ToyAdapter::s_behaviour = [&](ToyAdapter& self, PluginProcessData& data)
    {
        EXPECT_EQ(&mine, internal::GetSlot<URIResolver>(data, -2));
        EXPECT_EQ(&mine, PluginDescriptor::GetDefaultInstance(3));
        auto* copy = internal::GetSlot<Configuration>(data, 1);
        EXPECT_NE(&options, copy);
        EXPECT_EQ(copy, ConfigurationRef::GetActiveConfiguration());
        String value;
        copy->Get("some/option", value);
        EXPECT_EQ("kept", Utf8(value));
        copy->Set("some/option", "changed");
        return Making(1)(self, data);
    };
    Array<Handle> handles;
    EXPECT_TRUE(Load("a.toy", options, handles).Ok());
    ASSERT_EQ(1, handles.GetSize());
    String value;
    options.Get("some/option", value);
    EXPECT_EQ("kept", Utf8(value));
    EXPECT_EQ(nullptr, PluginDescriptor::GetDefaultInstance(3));
    Pointer pointer;
    EXPECT_EQ(1, mine.FindPointer(handles[0], pointer));
    delete handles[0].GetObject();
    EXPECT_EQ(0, mine.FindPointer(handles[0], pointer));
}

TEST_F(LoadRoutineTest, ATextIsReadThroughAStreamThatIsGoneAfterwards)
{
    std::string seen;
    ToyAdapter::s_behaviour = [&](ToyAdapter& self, PluginProcessData& data)
    {
        if (data.m_operation != ZORVEX_OP_ADAPTER_LOAD)
        {
            return false;
        }
        Stream* stream = nullptr;
        PluginProcessData request;
        request.m_operation = ZORVEX_OP_ADAPTER_GET;
        request.Set(7, &stream);
        self.GetPrevious()->Process(&request);
        EXPECT_TRUE(internal::IsLoadText(stream));
        char bytes[16] = {};
        stream->Read(bytes, 15, 1, 0);
        seen = bytes;
        delete stream;
        return Making(1)(self, data);
    };
    const Loaded loaded = LoadFrom(u"\uFEFF \t\n<p>\u00e9</p>", {{"format", "TOY"}});
    EXPECT_EQ(1u, loaded.Roots().size()) << testing::PrintToString(loaded.GetResult());
    EXPECT_EQ(std::string("<p>\xC3\xA9</p>"), seen);
    EXPECT_EQ(nullptr, internal::GetDocumentPointer(loaded.Root()));

    // No adapter takes the stream: it must go all the same, which the session's end checks.
    EXPECT_FALSE(LoadFrom("<p/>", {{"format", "NONE"}}).GetResult().Ok());
}

TEST_F(LoadRoutineTest, AReferenceWithNobodyBehindItLeadsNowhere)
{
    EXPECT_FALSE(LoadFrom("#id5").GetResult().Ok());
    Array<Handle> handles;
    EXPECT_FALSE(ResolveURI("#id5", handles).Ok());
    EXPECT_EQ(0, handles.GetSize());
}

TEST_F(LoadRoutineTest, ALocatorThatFindsNothingLeavesNoDocumentBehind)
{
    std::vector<int> operations;
    ToyAdapter::s_behaviour = [&](ToyAdapter& self, PluginProcessData& data)
    {
        operations.push_back(data.m_operation);
        if (data.m_operation == ZORVEX_OP_ADAPTER_DESTROY)
        {
            for (const Handle& handle : *internal::GetSlot<Array<Handle>>(data, 10))
            {
                delete handle.GetObject();
            }
        }
        Making(1)(self, data);
        return true;
    };
    Array<Handle> handles;
    const Result result = ResolveURI("a.toy#ZORVEX(TOY-doc/none)", handles);
    EXPECT_THAT(operations, ElementsAre(ZORVEX_OP_ADAPTER_LOAD, ZORVEX_OP_ADAPTER_LOCATE,
                                        ZORVEX_OP_ADAPTER_DESTROY));
    EXPECT_EQ("WARNING 517: Locator failed: none", Messages(result).at(0));
    EXPECT_EQ(0, handles.GetSize());
}

TEST_F(LoadRoutineTest, LoadDocumentGivesTheFirstRootAndKeepsTheOthersWithIt)
{
    ToyAdapter::s_behaviour = Making(3);
    const Configuration options;
    Object* document = nullptr;
    const Result result = LoadDocument("a.toy", options, &document);
    EXPECT_THAT(Messages(result),
                ElementsAre("ERROR 4: More than one DocumentBase element in the document - the "
                            "first has been loaded"));
    EXPECT_THAT(Messages(LoadDocument("a.toy", options, nullptr)),
                ElementsAre("ERROR 2: LoadDocument: no place for the document."));
    ASSERT_NE(nullptr, document);
    delete document;  // a root left behind fails the test at the session's end

    // Roots that the application found its own way to, and deleted or gave an owner, are its own.
    std::vector<Object*> made;
    ToyAdapter::s_behaviour = [&](ToyAdapter&, PluginProcessData& data)
    {
        for (int i = 0; i < 4; ++i)
        {
            made.push_back(new Configuration);
            internal::GetSlot<Array<Handle>>(data, 10)->Add(Handle(made.back()));
        }
        return true;
    };
    LoadDocument("a.toy", options, &document);
    ASSERT_EQ(made.at(0), document);
    delete made[1];
    Configuration owner;
    made[2]->SetOwner(&owner);
    delete document;
    EXPECT_EQ(&owner, made[2]->GetOwner());

    ToyAdapter::s_behaviour = Making(3);
    Array<Object*> documents;
    EXPECT_TRUE(LoadMultipleDocument("a.toy", options, documents).Ok());
    EXPECT_EQ(3, documents.GetSize());
    for (const Object* root : documents)
    {
        delete root;
    }
    ToyAdapter::s_behaviour = Making(0);
    EXPECT_FALSE(LoadDocument("a.toy", options, &document).Ok());
    EXPECT_EQ(nullptr, document);
}

TEST_F(LoadRoutineTest, AChainOfDocumentsHasALimit)
{
    int depth = 0;
    ToyAdapter::s_behaviour = [&](ToyAdapter& self, PluginProcessData& data)
    {
        if (data.m_operation != ZORVEX_OP_ADAPTER_IMPORT)
        {
            return false;
        }
        ++depth;
        Array<Handle> inner;
        internal::GetSlot<Result>(data, 0)->Merge(
            Load("next.toy", inner, internal::GetSlot<Configuration>(data, 1)));
        for (const Handle& handle : inner)
        {
            delete handle.GetObject();
        }
        return Making(1)(self, data);
    };
    const Loaded loaded = LoadFrom("a.toy", {{"adapters/ZORVEX/import/max_documents", "5"}});
    EXPECT_EQ(5, depth);
    EXPECT_THAT(loaded.Messages().at(0), HasSubstr("adapters/ZORVEX/import/max_documents"));
}

class MultithreadedLoadTest : public LoadRoutineTest
{
protected:
    MultithreadedLoadTest() : LoadRoutineTest({"multithreading=true"}) {}
};

TEST_F(MultithreadedLoadTest, TheResolverOfALoadLivesWithItsOnlyDocument)
{
    ToyAdapter::s_behaviour = Making(1);
    const Loaded one = LoadFrom("a.toy");
    URIResolver* resolver = internal::FindStoredResolver(one.Root());
    ASSERT_NE(nullptr, resolver);
    Pointer pointer;
    EXPECT_EQ(1, resolver->FindPointer(one.Root(), pointer));

    ToyAdapter::s_behaviour = Making(2);
    const Loaded two = LoadFrom("a.toy");
    EXPECT_EQ(nullptr, internal::FindStoredResolver(two.Roots().at(0)));
}

}  // namespace zorvex_test
