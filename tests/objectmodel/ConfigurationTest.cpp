#include <tuple>

#include "objectmodel/ConfigurationStack.h"
#include "objectmodel/TestObjects.h"
#include "runtime/PagingHooks.h"
#include "zorvex_api/ConfigurationRef.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Session.h"

using namespace zorvex_api;
using namespace zorvex_test;

namespace
{

class ConfigurationTest : public SessionTest
{
};

std::string Value(const Configuration& options, const String& path)
{
    String value(u"unchanged");
    return options.Get(path, value) != nullptr ? Utf8(value) : "none, " + Utf8(value);
}

TEST_F(ConfigurationTest, PathsAddressNodesAndEmptyPartsDoNotCount)
{
    Configuration options;
    options.Set(u"a/b", u"1");
    EXPECT_EQ("", Value(options, u"a"));
    EXPECT_EQ("1", Value(options, u"a/b"));
    options.Set(u"/a//b/", u"2");
    EXPECT_EQ("2", Value(options, u"a/b"));
    EXPECT_EQ(1, options.NumberOfConfigurations());
    EXPECT_EQ(1, options.GetConfiguration(0)->NumberOfConfigurations());

    EXPECT_EQ("none, unchanged", Value(options, u""));
    EXPECT_EQ("none, unchanged", Value(options, u"a/c"));
    EXPECT_EQ("none, unchanged", Value(options, u"A/b"));
    EXPECT_EQ(nullptr, options.Set(u"//", u"3"));
}

TEST_F(ConfigurationTest, OnlyTheFirstNodeOfANameIsLookedInto)
{
    Configuration options;
    ASSERT_TRUE(options.AddConfiguration()->SetName(u"a").Ok());
    Configuration* second = options.AddConfiguration();
    ASSERT_TRUE(second->SetName(u"a").Ok());
    second->Set(u"b", u"1");
    EXPECT_EQ("none, unchanged", Value(options, u"a/b"));
}

TEST_F(ConfigurationTest, ANodeCarriesAPointer)
{
    Configuration options;
    int thing = 0;
    options.Set(u"call/back", u"yes", &thing);
    String value;
    void* pointer = nullptr;
    ASSERT_NE(nullptr, options.Get(u"call/back", value, pointer));
    EXPECT_EQ(&thing, pointer);
}

TEST_F(ConfigurationTest, ChildrenAreKnownByIndex)
{
    Configuration options;
    options.Set(u"a", u"1");
    options.Set(u"b", u"2");
    EXPECT_EQ(nullptr, options.GetConfiguration(2));
    EXPECT_EQ(nullptr, options.GetConfiguration(-1));
    try
    {
        options.DeleteConfiguration(5);
        ADD_FAILURE() << "no exception";
    }
    catch (const Exception& exception)
    {
        EXPECT_EQ(16, exception.GetCode());
    }
    EXPECT_EQ(2, options.AddConfiguration(nullptr).GetCode());
    options.DeleteConfiguration(0);
    EXPECT_EQ("b", Utf8(options.GetConfiguration(0)->GetName()));
    options.DeleteConfigurations();
    EXPECT_EQ(0, options.NumberOfConfigurations());
}

TEST_F(ConfigurationTest, AnOwnerThatTakesNoOptionsRefusesThem)
{
    const auto owner = Make(u"Application");
    EXPECT_THROW(Configuration(owner.get()), Exception);
}

TEST_F(ConfigurationTest, TheInnermostConfigurationIsActiveAndEntriesLeaveByIdentity)
{
    Configuration outer;
    Configuration inner;
    auto first = std::make_unique<ConfigurationRef>(&outer);
    auto second = std::make_unique<ConfigurationRef>(&inner);
    EXPECT_EQ(&inner, ConfigurationRef::GetActiveConfiguration());
    first.reset();
    EXPECT_EQ(&inner, ConfigurationRef::GetActiveConfiguration());
    second.reset();
    EXPECT_EQ(nullptr, ConfigurationRef::GetActiveConfiguration());
}

TEST_F(ConfigurationTest, AConfigurationThatDiesIsNoLongerActive)
{
    auto options = std::make_unique<Configuration>();
    options->Set(u"adapters/ZORVEX/empty_attributes", u"treat_as_set");
    const ConfigurationRef active(options.get());
    EXPECT_TRUE(configuration_stack::EmptyIsValue());
    options.reset();
    EXPECT_EQ(nullptr, ConfigurationRef::GetActiveConfiguration());
    EXPECT_FALSE(configuration_stack::EmptyIsValue());
}

TEST_F(ConfigurationTest, ChangesOfTheActiveConfigurationAreSeenAtOnce)
{
    Configuration options;
    Configuration* node = options.Set(u"below", u"");
    const ConfigurationRef active(node);
    EXPECT_FALSE(configuration_stack::EmptyIsValue());
    node->Set(u"adapters/ZORVEX/empty_attributes", u"treat_as_set");
    EXPECT_TRUE(configuration_stack::EmptyIsValue());
    {
        Configuration other;
        const ConfigurationRef inner(&other);
        EXPECT_FALSE(configuration_stack::EmptyIsValue());
    }
    EXPECT_TRUE(configuration_stack::EmptyIsValue());
    node->DeleteConfigurations();
    EXPECT_FALSE(configuration_stack::EmptyIsValue());
}

TEST_F(ConfigurationTest, TheCallbacksOfSerialisationAreLookedForThroughTheStack)
{
    Configuration outer;
    Configuration inner;
    int callbacks = 0;
    outer.Set(u"serialise/callbacks", u"", &callbacks);
    inner.Set(u"serialise/callbacks", u"");
    EXPECT_EQ(nullptr, configuration_stack::SerialiseCallbacks());
    const ConfigurationRef first(&outer);
    const ConfigurationRef second(&inner);
    EXPECT_EQ(&callbacks, configuration_stack::SerialiseCallbacks());
}

TEST_F(ConfigurationTest, OptionsThatOutliveTheSessionTakeNoNewNodes)
{
    auto options = std::make_unique<Configuration>();
    options->Set(u"a/b", u"1");
    ASSERT_EQ(0, Terminate());
    EXPECT_EQ(nullptr, options->Set(u"a/c", u"2"));
    EXPECT_EQ(1, options->GetConfiguration(0)->NumberOfConfigurations());
    EXPECT_EQ("none, unchanged", Value(*options, u"a/c"));
    EXPECT_EQ("1", Value(*options, u"a/b"));
    options.reset();
    ASSERT_EQ(0, Initialise(0, nullptr, nullptr, nullptr));
}

/// Notes what the stack of options tells the paging service, and can raise.
class ToyPaging : public PagingService
{
public:
    ToyPaging() { PagingHooks::Set(this); }
    ~ToyPaging() override { PagingHooks::Set(nullptr); }

    bool Configure(Configuration* options, int popped, int starting) override
    {
        calls.push_back({options, popped, starting});
        if (!trouble.empty())
        {
            throw Exception(527, String(trouble.c_str()));
        }
        return false;
    }
    void Stop() override {}
    void Pin(const Object*) override {}
    void Unpin(const Object*) override {}
    void Made(Object*) override {}
    void Ending(Object*) noexcept override {}

    std::vector<std::tuple<Configuration*, int, int>> calls;
    std::string trouble;
};

TEST_F(ConfigurationTest, ThePagingServiceHearsOfEachChangeAndMayRefuse)
{
    Configuration outer;
    Configuration inner;
    inner.Set(u"serialise", u"true");
    ToyPaging paging;
    {
        const ConfigurationRef first(&outer);
        {
            const ConfigurationRef second(&inner);
        }
        paging.trouble = "SQLite serialisation is not supported. Rebuild with it.";
        EXPECT_THROW(ConfigurationRef refused(&inner), Exception);
        EXPECT_EQ(&outer, ConfigurationRef::GetActiveConfiguration());
        paging.trouble = "The disk is full.";
        EXPECT_NO_THROW(ConfigurationRef tolerated(&inner));
        paging.trouble.clear();
    }
    using Call = std::tuple<Configuration*, int, int>;
    EXPECT_THAT(paging.calls,
                testing::ElementsAre(Call(&outer, 0, 0), Call(&inner, 0, 0), Call(&outer, 1, 0),
                                     Call(&inner, 0, 0), Call(&inner, 0, 0), Call(&outer, 1, 0),
                                     Call(nullptr, 0, 0)));
}

}  // namespace
