#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "runtime/SessionState.h"
#include "runtime/StoredText.h"
#include "runtime/StringData.h"
#include "runtime/XmlPlatform.h"
#include "support/CountingAllocator.h"
#include "support/Printers.h"
#include "support/ScratchFolder.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/LinkNode.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Session.h"

namespace zorvex_api
{
namespace
{

using zorvex_test::CountingAllocator;
using zorvex_test::ScratchFolder;

int Start(std::vector<const char*> options, std::vector<const char*> libraries = {})
{
    return Initialise(static_cast<int>(libraries.size()), libraries.data(),
                      static_cast<int>(options.size()), options.data(), nullptr, nullptr);
}

const char* const kExtension = ZORVEX_TEST_PLUGIN_DIR "/libsession_extension.so";
/// The same as a name without what the platform puts around it.
const char* const kExtensionName = ZORVEX_TEST_PLUGIN_DIR "/session_extension";

/// Leaves no session behind, whatever a test did.
class InitialiseTest : public testing::Test
{
protected:
    void TearDown() override
    {
        Terminate();
        Allocator::RegisterHandlers(nullptr, nullptr);
    }

    CountingAllocator hooks;  // here, since they must outlive the session
};

TEST_F(InitialiseTest, HooksComeInPairsAndOnce)
{
    EXPECT_EQ(80, Initialise(0, nullptr, nullptr, &hooks));
    EXPECT_EQ(80, Initialise(0, nullptr, &hooks, nullptr));
    EXPECT_EQ(85, Terminate());
    EXPECT_EQ(0, Initialise(0, nullptr, &hooks, &hooks));
    EXPECT_GT(hooks.Live(), 0);
    EXPECT_EQ(80, Initialise(0, nullptr, &hooks, &hooks));
    EXPECT_EQ(0, Terminate());
    EXPECT_EQ(0, hooks.Live());
    EXPECT_EQ(80, Initialise(0, nullptr, &hooks, &hooks));  // the first pair stays registered
    EXPECT_EQ(0, Initialise(0, nullptr, nullptr, nullptr));
    EXPECT_GT(hooks.Live(), 0);
    EXPECT_EQ(0, Terminate());
    EXPECT_EQ(0, hooks.Live());
}

TEST_F(InitialiseTest, TerminateWithoutSessionSaysSo)
{
    EXPECT_EQ(85, Terminate());
    EXPECT_EQ(0, Start({}));
    EXPECT_EQ(0, Terminate());
    EXPECT_EQ(85, Terminate());
}

struct Flags
{
    bool multithreading;
    bool pooling;
    bool compression;
};

void ExpectFlags(const Flags& expected, std::vector<const char*> options)
{
    const std::string first = options.empty() ? "" : options[0];
    ASSERT_EQ(0, Start(options)) << first;
    EXPECT_EQ(expected.multithreading, SessionState::Multithreading()) << first;
    EXPECT_EQ(expected.pooling, SessionState::Pooling()) << first;
    EXPECT_EQ(expected.compression, SessionState::Compression()) << first;
    EXPECT_EQ(0, Terminate());
}

TEST_F(InitialiseTest, OptionsSetTheFlagsOfTheSession)
{
    ExpectFlags({false, true, true}, {});
    ExpectFlags({true, false, true}, {"multithreading=TRUE"});
    ExpectFlags({true, false, true}, {"multithreading is true"});  // no pair, but tested
    ExpectFlags({false, true, true}, {"Multithreading=true"});
    ExpectFlags({false, true, true}, {"multithreading=true1"});
    ExpectFlags({false, false, false}, {"__performance/improvements/on=False"});
    ExpectFlags({false, true, true}, {"__Performance/improvements/on=false", "a=b=c", "", "=x"});
}

TEST_F(InitialiseTest, SessionsFollowEachOther)
{
    for (int round = 0; round < 20; ++round)
    {
        ASSERT_EQ(0, Start({}));
        EXPECT_TRUE(XmlPlatform::IsUp());
        const ClassDescriptor* const view = ClassDescriptor::FindByName("ProductRevisionView");
        ASSERT_NE(nullptr, view);
        EXPECT_EQ(view, ClassDescriptor::FindByClass(view->GetClass()));
        const std::unique_ptr<Object> object(view->MakeObject());
        EXPECT_TRUE(object->SetAttributeValue("name", String("round")).Ok());
        ASSERT_EQ(0, Terminate());
        EXPECT_FALSE(XmlPlatform::IsUp());
    }  // the object goes after its session
    EXPECT_FALSE(stored::AnyAlive());
}

TEST_F(InitialiseTest, ClassesComeInTheOrderOfTheChain)
{
    ASSERT_EQ(0, Start({}));
    // The chain has the library's own classes, and those of libraries that earlier tests loaded.
    std::vector<short> values;
    for (const LinkNode* node = LinkNode::m_pHeadNode; node != nullptr; node = node->GetNext())
    {
        if (node->GetKind() == LinkNode::kClass)
        {
            ASSERT_NE(nullptr, node->GetDescriptor());
            values.push_back(static_cast<ClassDescriptor*>(node->GetDescriptor())->GetClass());
        }
    }
    EXPECT_LE(1033u, values.size());
    EXPECT_EQ(static_cast<int>(values.size()), ClassDescriptor::NumberOfClassDescriptors());
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
    EXPECT_EQ(values[0], ClassDescriptor::FindByName("Object")->GetClass());
    EXPECT_EQ(values[1], ClassDescriptor::FindByName("Configuration")->GetClass());
}

TEST_F(InitialiseTest, StorageStaysAsItIsWhileFieldTextExists)
{
    ASSERT_EQ(0, Start({}));
    auto kept = std::make_unique<Configuration>();
    kept->Set("held/over", "two sessions");
    ASSERT_EQ(0, Terminate());
    ASSERT_EQ(0, Start({"__performance/improvements/on=false"}));
    EXPECT_TRUE(SessionState::Pooling() && SessionState::Compression());
    String value;
    EXPECT_NE(nullptr, kept->Get("held/over", value));
    EXPECT_EQ(value, "two sessions");
    kept.reset();
    ASSERT_EQ(0, Terminate());
    ASSERT_EQ(0, Start({"__performance/improvements/on=false"}));
    EXPECT_FALSE(SessionState::Pooling() || SessionState::Compression());
}

TEST_F(InitialiseTest, SecondInitialiseOfASessionReadsOptionsAgain)
{
    ASSERT_EQ(0, Start({}));
    const ClassDescriptor* const before = ClassDescriptor::FindByName("Product");
    EXPECT_EQ(0, Start({"multithreading=true"}));
    EXPECT_TRUE(SessionState::Multithreading());
    EXPECT_EQ(before, ClassDescriptor::FindByName("Product"));
    EXPECT_EQ(84, Start({}, {"no-such-library"}));
    EXPECT_EQ(0, Terminate());
}

TEST_F(InitialiseTest, EnhancedSchemaSupportNeedsItsLibrary)
{
    EXPECT_EQ(84, Start({"adapters/ZORVEX/initial_schema_support=Enhanced"}));
    EXPECT_EQ(0, Terminate());
    EXPECT_EQ(0, Start({"adapters/ZORVEX/initial_schema_support=standard"}));
}

/// A variable of the extension library.
int& Extension(const char* name)
{
    static int missing;
    void* const symbol = dlsym(dlopen(kExtension, RTLD_NOW | RTLD_NOLOAD), name);
    EXPECT_NE(nullptr, symbol) << name;
    return symbol != nullptr ? *static_cast<int*>(symbol) : missing;
}

TEST_F(InitialiseTest, FailuresOfLibrariesDoNotStopTheOthers)
{
    const ScratchFolder folder;
    const std::string schema = zorvex_test::Utf8(folder.Write("gauges.XSD", "<not-a-schema/>"));
    // An earlier test may have loaded the library, which stays and counts on.
    const bool loaded = dlopen(kExtension, RTLD_NOW | RTLD_NOLOAD) != nullptr;
    const int starts = loaded ? Extension("extension_starts") : 0;
    const int stops = loaded ? Extension("extension_stops") : 0;
    EXPECT_EQ(84, Start({}, {"no-such-library", schema.c_str(), kExtension}));
    ASSERT_NE(nullptr, ClassDescriptor::FindByName("http://example.org/gauges:Gauge"));
    EXPECT_EQ(starts + 1, Extension("extension_starts"));
    EXPECT_EQ(0, Terminate());
    EXPECT_EQ(stops + 1, Extension("extension_stops"));
}

TEST_F(InitialiseTest, ExtensionServesEverySession)
{
    const char* library[] = {kExtensionName};
    for (int round = 0; round < 3; ++round)
    {
        Allocator::RegisterHandlers(nullptr, nullptr);
        ASSERT_EQ(0, Initialise(1, library, &hooks, &hooks));
        {
            const ClassDescriptor* const gauge = ClassDescriptor::FindByName("ga:Gauge");
            ASSERT_NE(nullptr, gauge);
            const std::unique_ptr<Object> object(gauge->MakeObject());
            EXPECT_TRUE(object->SetAttributeValue("reading", 7.5).Ok());
            Array<PluginDescriptor*> adapters;
            PluginDescriptor::GetDescriptors(1, adapters);
            EXPECT_EQ(adapters[adapters.GetSize() - 1]->GetName(), "GAUGE");
        }
        ASSERT_EQ(0, Terminate());
        EXPECT_EQ(0, hooks.Live());
    }
}

TEST_F(InitialiseTest, AdapterThatFailsToStartOrStopIsReported)
{
    ASSERT_EQ(0, Start({}, {kExtension}));
    ASSERT_EQ(0, Terminate());
    Extension("extension_fails") = 1;
    EXPECT_EQ(84, Start({}));
    EXPECT_EQ(84, Terminate());
    EXPECT_TRUE(SessionState::Active());  // nothing was released
    EXPECT_NE(nullptr, ClassDescriptor::FindByName("Product"));
    Extension("extension_fails") = 0;
    EXPECT_EQ(0, Terminate());
}

int g_lateStarts = 0;

class LateAdapter : public Adapter
{
public:
    void Process(PluginProcessData* data) override
    {
        g_lateStarts += data->m_operation == ZORVEX_OP_ADAPTER_INITALISE ? 1 : 0;
    }
};

int InitLateAdapter(void* argument)
{
    auto* const descriptor = static_cast<PluginDescriptor*>(argument);
    descriptor->SetType(1);
    descriptor->SetName("LATE");
    descriptor->SetBase(Adapter::GetStaticPluginDescriptor());
    descriptor->SetInstanceFunction([]() -> void* { return new LateAdapter; });
    return 1;
}

TEST_F(InitialiseTest, AdapterThatRaisesDoesNotKeepTheOthersFromStarting)
{
    ASSERT_EQ(0, Start({}, {kExtension}));
    ASSERT_EQ(0, Terminate());
    const LinkNode node(&InitLateAdapter, LinkNode::kPlugin);
    g_lateStarts = 0;
    Extension("extension_raises") = 1;
    EXPECT_EQ(84, Start({}));
    Extension("extension_raises") = 0;
    EXPECT_EQ(1, g_lateStarts);
    EXPECT_EQ(0, Terminate());
}

short g_lateClass = 0;

int InitLate(void* argument)
{
    auto* const record = static_cast<ClassInitRecord*>(argument);
    record->staticClass = &g_lateClass;
    g_lateClass = record->descriptor->GetClass();
    record->descriptor->SetName("LateGauge");
    record->descriptor->SetBaseClass("Object");
    return 1;
}

TEST_F(InitialiseTest, ClassOfALateLibraryIsThereAtTheNextAccessAndGoesWithIt)
{
    ASSERT_EQ(0, Start({}));
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName("LateGauge"));
    {
        const LinkNode node(&InitLate, LinkNode::kClass);
        const ClassDescriptor* const late = ClassDescriptor::FindByName("LateGauge");
        ASSERT_NE(nullptr, late);
        EXPECT_EQ(late, ClassDescriptor::FindByClass(g_lateClass));
    }
    EXPECT_EQ(nullptr, ClassDescriptor::FindByName("LateGauge"));
    EXPECT_EQ(0, Terminate());
}

TEST_F(InitialiseTest, LookUpOutsideASessionFillsTheMetadata)
{
    ASSERT_NE(nullptr, ClassDescriptor::FindByName("Product"));
    EXPECT_EQ(0, Start({"__performance/improvements/on=false"}));
    EXPECT_FALSE(SessionState::Pooling() || SessionState::Compression());
    EXPECT_NE(nullptr, ClassDescriptor::FindByName("Product"));
    EXPECT_EQ(0, Terminate());
    ASSERT_NE(nullptr, ClassDescriptor::FindByName("Product"));
    EXPECT_EQ(85, Terminate());
    EXPECT_EQ(0, Start({}));
    EXPECT_TRUE(SessionState::Pooling() && SessionState::Compression());
}

int g_numberedClasses = 0;

int InitNumbered(void* argument)
{
    auto* const record = static_cast<ClassInitRecord*>(argument);
    record->descriptor->SetName(String::Format("Numbered%d", g_numberedClasses++));
    record->descriptor->SetBaseClass("Object");
    return 1;
}

TEST_F(InitialiseTest, RefusedMemoryIsAnsweredByACodeAndLeavesNothing)
{
    ASSERT_EQ(0, Initialise(0, nullptr, &hooks, &hooks));
    const long long needed = hooks.Total();
    ASSERT_EQ(0, Terminate());
    for (long long nth = 1; nth < needed; nth = nth * 5 / 4 + 1)
    {
        hooks.RefuseNth(nth);
        EXPECT_NE(0, Start({})) << nth;
        hooks.RefuseNth(0);
        Terminate();
        ASSERT_EQ(0, Start({})) << nth;
        EXPECT_NE(nullptr, ClassDescriptor::FindByName("Product")) << nth;
        ASSERT_EQ(0, Terminate()) << nth;
        EXPECT_EQ(0, hooks.Live()) << nth;
    }
}

TEST_F(InitialiseTest, RefusedMemoryWhileAnOptionIsSetLeavesNothing)
{
    ASSERT_EQ(0, Initialise(0, nullptr, &hooks, &hooks));
    int refused = 0;
    for (int nth = 1; nth <= 12; ++nth)
    {
        Configuration options;
        hooks.RefuseNth(nth);
        try
        {
            options.Set(u"stores/left", u"a text of its own");
        }
        catch (const std::bad_alloc&)
        {
            ++refused;
        }
        hooks.RefuseNth(0);
    }
    EXPECT_GT(refused, 0);
    EXPECT_EQ(0, Terminate());
    EXPECT_EQ(0, hooks.Live());
}

TEST_F(InitialiseTest, MoreClassesThanTheTablesTakeLeaveTheSessionDown)
{
    const int before = ClassDescriptor::NumberOfClassDescriptors();
    std::vector<std::unique_ptr<LinkNode>> nodes;
    for (int count = before; count < 7978; ++count)
    {
        nodes.push_back(std::make_unique<LinkNode>(&InitNumbered, LinkNode::kClass));
    }
    EXPECT_EQ(0, Start({}));
    EXPECT_EQ(0, Terminate());
    nodes.push_back(std::make_unique<LinkNode>(&InitNumbered, LinkNode::kClass));
    EXPECT_EQ(83, Start({}));
    EXPECT_FALSE(SessionState::Active());
    EXPECT_EQ(85, Terminate());
    nodes.clear();
    EXPECT_EQ(0, Start({}));
}

}  // namespace
}  // namespace zorvex_api
