#include <stdexcept>

#include "ToyAdapter.h"
#include "transport/AdapterImpl.h"
#include "transport/ExternalText.h"
#include "transport/FileName.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "zorvex_api/AdapterRef.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/Stream.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_test
{

using namespace zorvex_api;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

/// From the top down, as "format(context)".
std::vector<std::string> Describe(const AdapterRef& chain)
{
    std::vector<std::string> members;
    for (const Adapter* member = chain.GetAdapter(); member != nullptr;
         member = member->GetPrevious())
    {
        members.push_back(Utf8(member->GetFormat()) + "(" + Utf8(member->GetContext()) + ")");
    }
    return members;
}

Result RunOperation(Adapter& adapter, int operation)
{
    Result result;
    PluginProcessData data;
    data.m_operation = operation;
    data.Set(0, &result);
    internal::ProcessLocked(&adapter, data);
    return result;
}

/// What the adapter below the top gives for ZORVEX_OP_ADAPTER_GET.
std::unique_ptr<Stream> GetStream(const AdapterRef& chain, unsigned int mode, Result& result)
{
    Stream* stream = nullptr;
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_ADAPTER_GET;
    data.Set(0, &result);
    data.Set(5, &mode);
    data.Set(7, &stream);
    internal::ProcessLocked(chain->GetPrevious(), data);
    return std::unique_ptr<Stream>(stream);
}

}  // namespace

class AdapterChainTest : public ToyTest
{
};

TEST_F(AdapterChainTest, EachMemberLooksForWhatTheElementBelowItNames)
{
    const Pointer pointer("http://h/d/a.toy#ZORVEX(TOY-doc/part/ZORVEX-doc/id12)");
    const AdapterRef chain(pointer, nullptr);
    EXPECT_THAT(Messages(chain.GetResult()), IsEmpty());
    EXPECT_THAT(Describe(chain), ElementsAre("ZORVEX(part)", "TOY(a.toy)", "(http://h/d)"));
}

TEST_F(AdapterChainTest, AChainNamesThePointerItWasBuiltFromWithoutTheLocator)
{
    for (const auto& [text, expected] : std::vector<std::pair<const char*, const char*>>{
             {"/a.xml#ZORVEX(ZORVEX-doc/id12)", "/a.xml"},
             {"a.toy#ZORVEX(TOY-doc/part/ZORVEX-doc/id12)",
              "a.toy#ZORVEX(TOY-doc/part/ZORVEX-doc)"},
             {"http://h:81/d/a.xml#id5", "http://h:81/d/a.xml"},
             {"http://h:81/d/a.php?rev=1&q=/#id5", "http://h:81/d/a.php?rev=1&q=/"},
             {"d/a.xml?rev=1#id5", "d/a.xml"},
             {"file:///d/a.xml#id5", "file:///d/a.xml"},
             {"#ZORVEX(STREAM-doc/0x12/ZORVEX-doc)", "#ZORVEX(STREAM-doc/0x12/ZORVEX-doc)"}})
    {
        const AdapterRef chain(Pointer(text), nullptr);
        ASSERT_TRUE(chain.IsValid()) << text;
        Pointer pointer("old/text.xml#ZORVEX(TOY-doc/x)");
        chain->ConstructPointer(pointer);
        EXPECT_EQ(expected, Utf8(pointer.GetString())) << text;
    }
}

TEST_F(AdapterChainTest, AChainOnACallersAdapterBorrowsItAndGivesItBack)
{
    AdapterRef outer(Pointer("/d/a.xml#ZORVEX(ZORVEX-doc)"), nullptr);
    Adapter* location = outer->GetPrevious();
    {
        const AdapterRef inner(Pointer("sub/b.xml#ZORVEX(ZORVEX-doc)"), location);
        EXPECT_THAT(Describe(inner), ElementsAre("ZORVEX(b.xml)", "(sub)", "(/d)"));
        Pointer pointer;
        inner->ConstructPointer(pointer);
        EXPECT_EQ("/d/sub/b.xml", Utf8(pointer.GetString()));
        const AdapterRef elsewhere(Pointer("/e/c.xml#ZORVEX(ZORVEX-doc)"), location);
        elsewhere->ConstructPointer(pointer);
        EXPECT_EQ("/e/c.xml", Utf8(pointer.GetString()));
        const AdapterRef missing(Pointer("b.xml#ZORVEX(NONE-doc)"), location);
        EXPECT_FALSE(missing.IsValid());
        const AdapterRef single(String("TOY"), location);
        EXPECT_THAT(Describe(single), ElementsAre("TOY()", "(/d)"));
    }
    EXPECT_EQ(outer.GetAdapter(), location->GetNext());
}

TEST_F(AdapterChainTest, AnAdapterThatStandsThereAlreadyIsNotPutInTwice)
{
    AdapterRef outer(Pointer("a.toy#ZORVEX(TOY-doc)"), nullptr);
    const AdapterRef inner(Pointer("#ZORVEX(TOY-doc/part/ZORVEX-doc)"), outer.GetAdapter());
    EXPECT_THAT(Describe(inner), ElementsAre("ZORVEX(part)", "TOY(a.toy)", "()"));
}

TEST_F(AdapterChainTest, WhatCannotBeBuiltIsReported)
{
    const AdapterRef unnamed(Pointer("#ZORVEX(XPK-doc/x/ZORVEX-doc)"), nullptr);
    EXPECT_THAT(Messages(unnamed.GetResult()),
                ElementsAre("ERROR 517: Invalid reference: #ZORVEX(XPK-doc/x/ZORVEX-doc)"));
    const AdapterRef missing(Pointer("a.x#ZORVEX(TOY-doc/y/NONE-doc)"), nullptr);
    EXPECT_THAT(Messages(missing.GetResult()),
                ElementsAre("WARNING 517: Missing Adapter (NONE), resolving: "
                            "a.x#ZORVEX(TOY-doc/y/NONE-doc)"));
    const AdapterRef nowhere(Pointer(""), nullptr);
    EXPECT_THAT(Messages(nowhere.GetResult()),
                ElementsAre("WARNING 517: Unable to find adapter for: "));
    const AdapterRef format(String("NONE"), nullptr);
    EXPECT_THAT(Messages(format.GetResult()), ElementsAre("WARNING 517: Missing (NONE) Adapter."));
    for (const AdapterRef* chain : {&unnamed, &missing, &nowhere, &format})
    {
        EXPECT_EQ(nullptr, chain->GetAdapter());
    }

    String endless("a.x#ZORVEX(");
    for (int i = 0; i < 1500; ++i)
    {
        endless += "TOY-doc/c/";
    }
    const AdapterRef tooLong(Pointer(endless + ")"), nullptr);
    EXPECT_EQ(517, tooLong.GetResult().GetCode());
    EXPECT_FALSE(tooLong.IsValid());
}

TEST_F(AdapterChainTest, TheBaseNamesTheOperationsItDoesNotKnow)
{
    ToyAdapter toy;
    EXPECT_THAT(Messages(RunOperation(toy, ZORVEX_OP_ADAPTER_SAVE)),
                ElementsAre("ERROR 6: TOY::ZORVEX_OP_ADAPTER_SAVE not implemented."));
    EXPECT_THAT(Messages(RunOperation(toy, ZORVEX_OP_ADAPTER_CLONE)),
                ElementsAre("WARNING 6: TOY::ZORVEX_OP_ADAPTER_CLONE not implemented."));
    EXPECT_THAT(Messages(RunOperation(toy, ZORVEX_OP_ADAPTER_INITALISE)),
                ElementsAre("WARNING 6: TOY::ZORVEX_OP_ADAPTER_INITALISE not implemented."));
    for (const int operation : {0, 12, -1})
    {
        EXPECT_THAT(Messages(RunOperation(toy, operation)),
                    ElementsAre("ERROR 6: TOY:: invalid operation code."));
    }
    PluginProcessData deaf;
    deaf.m_operation = ZORVEX_OP_ADAPTER_SAVE;
    toy.Process(&deaf);  // no Result to tell it to
}

TEST_F(AdapterChainTest, ANameToWriteIsMadeFitForAFile)
{
    const AdapterRef zorvex(Pointer("/d/x#ZORVEX(ZORVEX-doc)"), nullptr);
    const auto fit = [&](const char* name)
    { return Utf8(internal::FitFileName(name, zorvex.GetAdapter())); };
    EXPECT_EQ("a_b.zorvex", fit("a:b"));
    EXPECT_EQ("_________.zorvex", fit("\\/:*?\"<>|"));
    EXPECT_EQ("a.XML", fit("a.XML"));
    EXPECT_EQ("a.unknown", fit("a.unknown"));
    EXPECT_EQ("a#b.zorvex", fit("a#b"));
    const AdapterRef location(Pointer("/d/x"), nullptr);
    EXPECT_EQ("a_b", Utf8(internal::FitFileName("a:b", location.GetAdapter())));
    const AdapterRef packed(Pointer("p.xpk#ZORVEX(XPK-doc/m/ZORVEX-doc)"), nullptr);
    EXPECT_EQ("a_b", Utf8(internal::FitFileName("a/b", packed.GetAdapter())));
}

TEST_F(AdapterChainTest, ALocationOpensTheFileThatTheAdapterAboveLooksFor)
{
    const ScratchFolder folder;
    const AdapterRef outer(Pointer(folder.File("x.xml") + "#ZORVEX(ZORVEX-doc)"), nullptr);
    Result result;
    {
        const AdapterRef chain(Pointer("sub/what?#ZORVEX(ZORVEX-doc)"), outer->GetPrevious());
        chain->SetContext("what?");
        folder.Write("sub/keep.txt", "");
        const auto stream = GetStream(chain, 0x10002, result);
        ASSERT_NE(nullptr, stream) << testing::PrintToString(result);
        stream->Write("hello", 5, 1, 0);
        EXPECT_NE(0, stream->Close());
        EXPECT_EQ("what_.zorvex", Utf8(chain->GetContext()));
    }
    EXPECT_EQ("hello", folder.Read("sub/what_.zorvex"));
    const AdapterRef chain(Pointer("sub/what_.zorvex#ZORVEX(ZORVEX-doc)"), outer->GetPrevious());
    const auto stream = GetStream(chain, 0x30001, result);
    ASSERT_NE(nullptr, stream) << testing::PrintToString(result);
    char bytes[8] = {};
    EXPECT_EQ(5, stream->Read(bytes, 8, 1, 0));
}

TEST_F(AdapterChainTest, AResolverIsAskedForTheWholeNameOnAServer)
{
    struct AskedResolver : URIResolver
    {
        void Process(PluginProcessData* data) override
        {
            name = Utf8(*internal::GetSlot<String>(*data, 9));
        }
        std::string name;
    };
    const AdapterRef web(Pointer("http://h:81/d/a.xml?rev=1#ZORVEX(ZORVEX-doc)"), nullptr);
    const AdapterRef file(Pointer("/d/a.xml#ZORVEX(ZORVEX-doc)"), nullptr);
    const auto asked = [](const AdapterRef& outer, const char* uri, unsigned int mode)
    {
        AskedResolver resolver;
        const AdapterRef chain(Pointer(uri), outer->GetPrevious());
        PluginProcessData data;
        data.m_operation = ZORVEX_OP_ADAPTER_GET;
        data.Set(5, &mode);
        data.Set(-2, static_cast<URIResolver*>(&resolver));
        internal::ProcessLocked(chain->GetPrevious(), data);
        return resolver.name;
    };
    EXPECT_EQ("http://h:81/d/b.php?rev=2", asked(web, "b.php?rev=2#ZORVEX(ZORVEX-doc)", 0x10001));
    EXPECT_EQ("http://h:81/d/b.xml", asked(web, "b.xml#ZORVEX(ZORVEX-doc)", 0x10001));
    EXPECT_EQ("/d/b.xml", asked(file, "b.xml?rev=2#ZORVEX(ZORVEX-doc)", 0x10001));
    EXPECT_EQ("db:///b.xml?rev=2", asked(file, "db:b.xml?rev=2#ZORVEX(ZORVEX-doc)", 0x10001));
    EXPECT_EQ("db:///b.xml?rev=2", asked(file, "db:b.xml?rev=2#ZORVEX(ZORVEX-doc)", 0x10002));
    const Pointer later =
        internal::FromFolderOf(Pointer("http://h:81/d/a.xml?rev=1"), Pointer("b.php?rev=2#id5"));
    EXPECT_EQ("http://h:81/d/b.php?rev=2#id5", Utf8(later.GetString()));
}

TEST_F(AdapterChainTest, AConfiguredInstanceIsUsedResetAndKept)
{
    ToyAdapter configured;
    std::vector<int> operations;
    ToyAdapter::s_behaviour = [&](ToyAdapter& self, PluginProcessData& data)
    {
        operations.push_back(data.m_operation);
        if (data.m_operation == ZORVEX_OP_ADAPTER_CLONE)
        {
            *internal::GetSlot<Adapter*>(data, 16) = new ToyAdapter;
        }
        if (data.m_operation == ZORVEX_OP_ADAPTER_RESET && self.GetNext() == nullptr)
        {
            throw std::runtime_error("in a destructor");
        }
        return true;
    };
    Configuration options;
    options.Set("adapters/TOY/instance", "", &configured);
    {
        const AdapterRef chain(Pointer("a.toy#ZORVEX(TOY-doc)"), nullptr, &options);
        EXPECT_EQ(&configured, chain.GetAdapter());
        const AdapterRef second(Pointer("b.toy#ZORVEX(TOY-doc)"), nullptr, &options);
        EXPECT_NE(&configured, second.GetAdapter());
        EXPECT_EQ("b.toy", Utf8(second->GetContext()));
        EXPECT_EQ(1, second->GetImplementation()->isClone);
    }
    EXPECT_THAT(operations, ElementsAre(ZORVEX_OP_ADAPTER_CLONE, ZORVEX_OP_ADAPTER_RESET));
    EXPECT_EQ(1, ToyAdapter::s_live);
    EXPECT_EQ(nullptr, configured.GetPrevious());
    EXPECT_TRUE(configured.GetContext().IsEmpty());
}

TEST_F(AdapterChainTest, AChainThatCannotBeFinishedLeavesNothingBehind)
{
    ToyAdapter configured;
    ToyAdapter::s_behaviour = [](ToyAdapter&, PluginProcessData& data) -> bool
    {
        if (data.m_operation == ZORVEX_OP_ADAPTER_CLONE)
        {
            throw std::runtime_error("no clone");
        }
        return true;
    };
    Configuration options;
    options.Set("adapters/TOY/instance", "", &configured);
    Adapter location;
    const AdapterRef busy(Pointer("a.toy#ZORVEX(TOY-doc)"), nullptr, &options);
    EXPECT_THROW(AdapterRef(Pointer("d/b.x#ZORVEX(ZORVEX-doc/p/TOY-doc)"), &location, &options),
                 std::runtime_error);
    EXPECT_EQ(nullptr, location.GetNext());
}

TEST_F(AdapterChainTest, ASharedMemberBelowANewOneIsNotDeletedWithIt)
{
    ToyAdapter configured;
    Configuration options;
    options.Set("adapters/TOY/instance", "", &configured);
    {
        const AdapterRef chain(Pointer("a.toy#ZORVEX(TOY-doc/p/ZORVEX-doc)"), nullptr, &options);
        EXPECT_EQ(&configured, chain->GetPrevious());
    }
    EXPECT_EQ(1, ToyAdapter::s_live);
}

TEST_F(AdapterChainTest, TheStoreAndTheOptionTreeShowTheSame)
{
    ToyAdapter first;
    ToyAdapter second;
    Configuration options;
    internal::StoreInstance(&options, 1, "TOY", &first, false);
    String value("x");
    void* pointer = nullptr;
    ASSERT_NE(nullptr, options.Get("adapters/TOY/instance", value, pointer));
    EXPECT_EQ(&first, pointer);
    EXPECT_TRUE(value.IsEmpty());
    options.Set("adapters/TOY/instance", "", &second);
    EXPECT_EQ(&second, internal::FindStoredInstance(&options, 1, "TOY"));
    EXPECT_EQ(nullptr, internal::FindStoredInstance(&options, 1, "OTHER"));

    int thing = 0;
    options.Set("a/b", "1", &thing);
    const auto copy = internal::CopyOptions(&options);
    EXPECT_EQ(&second, internal::FindStoredInstance(copy.get(), 1, "TOY"));
    ASSERT_NE(nullptr, copy->Get("a/b", value, pointer));
    EXPECT_EQ("1", Utf8(value));
    EXPECT_EQ(&thing, pointer);
}

}  // namespace zorvex_test
