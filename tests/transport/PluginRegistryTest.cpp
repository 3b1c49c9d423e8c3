#include <atomic>
#include <thread>

#include "ToyAdapter.h"
#include "transport/PluginDescriptorImpl.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "zorvex_api/URIResolver.h"
#include "zorvex_api/URIResolverRef.h"

namespace zorvex_test
{

using namespace zorvex_api;
using testing::ElementsAre;

namespace
{

std::vector<std::string> AdapterNames()
{
    Array<PluginDescriptor*> descriptors;
    PluginDescriptor::GetDescriptors(1, descriptors);
    std::vector<std::string> names;
    for (const PluginDescriptor* descriptor : descriptors)
    {
        names.push_back(Utf8(descriptor->GetName()));
    }
    return names;
}

std::string Property(const PluginDescriptor& descriptor, const char* name)
{
    Configuration properties;
    descriptor.GetProperties(properties);
    String value("(not set)");
    properties.Get(name, value);
    return Utf8(value);
}

PluginDescriptor* FindDescriptor(const char* name)
{
    Array<PluginDescriptor*> descriptors;
    PluginDescriptor::GetDescriptors(descriptors);
    for (PluginDescriptor* descriptor : descriptors)
    {
        if (descriptor->GetName() == name)
        {
            return descriptor;
        }
    }
    return nullptr;
}

/// An adapter that says it is TOY too, and names another base.
class DeepToy : public Adapter
{
public:
    PluginDescriptor* GetPluginDescriptor() override { return ToyAdapter::s_descriptor; }
    static int Initialise(void* argument)
    {
        auto* descriptor = static_cast<PluginDescriptor*>(argument);
        descriptor->SetType(1);
        descriptor->SetName("TOY");
        descriptor->SetBase(ToyAdapter::s_descriptor);
        descriptor->SetInstanceFunction([]() -> void* { return new DeepToy; });
        return 1;
    }
};

class LoadingCallback : public PluginDescriptorCallback
{
public:
    int operator()(const int& type, const String& name) override
    {
        asked.push_back(std::to_string(type) + " " + Utf8(name));
        if (name != "TOY")
        {
            return 0;
        }
        node = std::make_unique<LinkNode>(&ToyAdapter::Initialise, LinkNode::kPlugin);
        return 1;
    }

    std::vector<std::string> asked;
    std::unique_ptr<LinkNode> node;
};

}  // namespace

class PluginRegistryTest : public SessionTest
{
};

TEST_F(PluginRegistryTest, TheLibrarysAdaptersAreListedInOrderWithoutTheirBase)
{
    EXPECT_THAT(AdapterNames(), ElementsAre("XSD", "ZORVEX", "STREAM", "XPK"));
    Array<PluginDescriptor*> all;
    PluginDescriptor::GetDescriptors(all);
    std::vector<std::string> names;
    for (const PluginDescriptor* descriptor : all)
    {
        names.push_back(std::to_string(descriptor->GetType()) + " " + Utf8(descriptor->GetName()));
        ASSERT_NE(nullptr, descriptor->GetBase());
        EXPECT_EQ(descriptor->GetType(), descriptor->GetBase()->GetType());
    }
    EXPECT_THAT(names, ElementsAre("1 XSD", "1 ZORVEX", "1 STREAM", "2 Xerces", "1 XPK"));
    EXPECT_EQ("MULTIPLE", Property(*FindDescriptor("Xerces"), "THREADING"));
    EXPECT_EQ("(not set)", Property(*FindDescriptor("Xerces"), "FORMAT"));
    EXPECT_EQ("xpk;zvxxpk", Property(*FindDescriptor("XPK"), "FILE_EXTENSIONS"));
    EXPECT_EQ("Internal STREAM Support", Property(*FindDescriptor("STREAM"), "DESCRIPTION"));
    EXPECT_EQ("(not set)", Property(*FindDescriptor("STREAM"), "FILE_EXTENSIONS"));
    EXPECT_EQ("(not set)", Property(*FindDescriptor("XSD"), "THREADING"));
}

TEST_F(PluginRegistryTest, OnlySingleThreadedPluginsThatWereThereAtTheStartHaveALock)
{
    const LinkNode late(&ToyAdapter::Initialise, LinkNode::kPlugin);
    EXPECT_NE(nullptr, FindDescriptor("XSD")->GetImplementation()->mutex);
    EXPECT_EQ(nullptr, FindDescriptor("ZORVEX")->GetImplementation()->mutex);
    EXPECT_EQ(nullptr, FindDescriptor("TOY")->GetImplementation()->mutex);
    PluginDescriptor::MakeMutexes();
    EXPECT_NE(nullptr, FindDescriptor("TOY")->GetImplementation()->mutex);
}

TEST_F(PluginRegistryTest, ALatePluginIsThereAtOnceAndGoesWithItsNode)
{
    {
        const LinkNode late(&ToyAdapter::Initialise, LinkNode::kPlugin);
        EXPECT_TRUE(late.IsDone());
        EXPECT_THAT(AdapterNames(), ElementsAre("XSD", "ZORVEX", "STREAM", "XPK", "TOY"));
    }
    EXPECT_THAT(AdapterNames(), ElementsAre("XSD", "ZORVEX", "STREAM", "XPK"));

    const LinkNode refusing([](void*) { return 0; }, LinkNode::kPlugin);
    EXPECT_FALSE(refusing.IsDone());
    EXPECT_EQ(4u, AdapterNames().size());
}

TEST_F(PluginRegistryTest, TheDeepestPluginIsChosenAndTheEarliestOfEquals)
{
    const LinkNode first(&ToyAdapter::Initialise, LinkNode::kPlugin);
    const PluginDescriptor* firstDescriptor = ToyAdapter::s_descriptor;
    {
        const LinkNode second(&ToyAdapter::Initialise, LinkNode::kPlugin);
        int isNew = 0;
        const std::unique_ptr<Adapter> adapter(internal::FindAdapter("TOY", nullptr, isNew));
        EXPECT_EQ(1, isNew);
        EXPECT_NE(nullptr, dynamic_cast<ToyAdapter*>(adapter.get()));
        EXPECT_NE(firstDescriptor, ToyAdapter::s_descriptor);
    }
    ToyAdapter::s_descriptor = const_cast<PluginDescriptor*>(firstDescriptor);
    const LinkNode deeper(&DeepToy::Initialise, LinkNode::kPlugin);
    auto* deeperDescriptor = static_cast<PluginDescriptor*>(deeper.GetDescriptor());
    ToyAdapter::s_descriptor->SetBase(deeperDescriptor);  // a circle, which isn't taken
    EXPECT_EQ(Adapter::GetStaticPluginDescriptor(), firstDescriptor->GetBase());
    const std::unique_ptr<Adapter> adapter(
        static_cast<Adapter*>(PluginDescriptor::GetInstance(1, "TOY")));
    EXPECT_NE(nullptr, dynamic_cast<DeepToy*>(adapter.get()));
}

TEST_F(PluginRegistryTest, ResolversAndRepresentationsAreThereWithoutAPlugin)
{
    const std::unique_ptr<URIResolver> resolver(
        static_cast<URIResolver*>(PluginDescriptor::GetInstance(3)));
    EXPECT_NE(nullptr, resolver);
    const std::unique_ptr<Object> representation(
        static_cast<Object*>(PluginDescriptor::GetInstance(4, "GEOMETRY")));
    ASSERT_NE(nullptr, representation);
    EXPECT_EQ("Representation", Utf8(representation->GetElementName()));
    EXPECT_EQ(nullptr, PluginDescriptor::GetInstance(1));
    EXPECT_EQ(nullptr, PluginDescriptor::GetInstance(5));

    const LinkNode barren(
        [](void* descriptor)
        {
            static_cast<PluginDescriptor*>(descriptor)->SetType(3);
            static_cast<PluginDescriptor*>(descriptor)
                ->SetInstanceFunction([]() -> void* { return nullptr; });
            return 1;
        },
        LinkNode::kPlugin);
    const URIResolverRef held;
    EXPECT_NE(nullptr, held.GetURIResolver());
}

TEST_F(PluginRegistryTest, TheCallbackCanBringInAMissingPlugin)
{
    EXPECT_EQ(nullptr, PluginDescriptor::GetInstance(1, "TOY"));
    {
        LoadingCallback callback;
        PluginDescriptor::RegisterCallback(&callback);
        EXPECT_EQ(nullptr, PluginDescriptor::GetInstance(1, "OTHER"));
        const std::unique_ptr<Adapter> adapter(
            static_cast<Adapter*>(PluginDescriptor::GetInstance(1, "TOY")));
        EXPECT_NE(nullptr, adapter);
        EXPECT_THAT(callback.asked, ElementsAre("1 OTHER", "1 TOY"));
    }
    EXPECT_EQ(nullptr, PluginDescriptor::GetInstance(1, "TOY"));  // the callback is gone too
}

TEST_F(PluginRegistryTest, AHeldInstanceIsSharedUntilItIsRemovedOrDies)
{
    const LinkNode late(&ToyAdapter::Initialise, LinkNode::kPlugin);
    PluginDescriptor& descriptor = *ToyAdapter::s_descriptor;
    auto held = std::make_unique<ToyAdapter>();
    descriptor.GetImplementation()->instance = held.get();

    ToyAdapter other;
    descriptor.RemoveInstance(&other);
    int isNew = 1;
    EXPECT_EQ(held.get(), internal::FindAdapter("TOY", nullptr, isNew));
    EXPECT_EQ(0, isNew);

    held.reset();
    EXPECT_EQ(nullptr, descriptor.GetImplementation()->instance);
}

TEST_F(PluginRegistryTest, OnlyTheTypeOfResolversHasADefaultInstance)
{
    int something = 0;
    PluginDescriptor::SetDefaultInstance(1, &something);
    EXPECT_EQ(nullptr, PluginDescriptor::GetDefaultInstance(1));
    EXPECT_EQ(nullptr, PluginDescriptor::GetDefaultInstance(3));
}

TEST_F(PluginRegistryTest, ASingleThreadedPluginRunsOneCallAtATimeAndMayCallItself)
{
    const LinkNode late(&ToyAdapter::Initialise, LinkNode::kPlugin);
    PluginDescriptor::MakeMutexes();
    std::atomic<int> inside{0};
    std::atomic<bool> together{false};
    ToyAdapter::s_behaviour = [&](ToyAdapter& self, PluginProcessData& data)
    {
        together = together || ++inside > 1;
        if (data.m_operation == ZORVEX_OP_ADAPTER_LOAD)
        {
            --inside;
            data.m_operation = ZORVEX_OP_ADAPTER_SAVE;
            internal::ProcessLocked(&self, data);
            ++inside;
        }
        --inside;
        return true;
    };
    const auto call = []
    {
        ToyAdapter adapter;
        for (int i = 0; i < 500; ++i)
        {
            PluginProcessData data;
            data.m_operation = ZORVEX_OP_ADAPTER_LOAD;
            internal::ProcessLocked(&adapter, data);
        }
    };
    {
        std::atomic<int>* const counter = &inside;
        std::thread other(call);
        call();
        other.join();
        EXPECT_EQ(0, *counter);
    }
    EXPECT_FALSE(together);
    ToyAdapter::s_behaviour = nullptr;
}

TEST_F(PluginRegistryTest, NumbersThatAreNoSlotsDoNothing)
{
    int value = 0;
    int other = 0;
    PluginProcessData data;
    for (const int slot : {0, 16, -1, -2})
    {
        void* got = &other;
        data.Get(slot, got);
        EXPECT_EQ(nullptr, got);
    }
    data.Set(16, &value);
    for (const int slot : {17, -3, 18, 1000})
    {
        data.Set(slot, &value);
        void* got = &other;
        data.Get(slot, got);
        EXPECT_EQ(&other, got) << slot;
    }
    EXPECT_EQ(&value, internal::GetSlot<int>(data, 16));
    EXPECT_EQ(nullptr, internal::GetSlot<int>(data, -1));
    EXPECT_EQ(nullptr, internal::GetSlot<int>(data, -2));
}

}  // namespace zorvex_test
