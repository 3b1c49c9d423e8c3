#pragma once

#include <functional>

#include "support/SessionTest.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/LinkNode.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/PluginProcessData.h"

namespace zorvex_test
{

/// The adapter of an invented format, TOY, with the extension "toy". Each test says what it does.
class ToyAdapter : public zorvex_api::Adapter
{
public:
    /// Returns true when it answered the operation; else the base does.
    using Behaviour = std::function<bool(ToyAdapter&, zorvex_api::PluginProcessData&)>;

    ToyAdapter() { ++s_live; }
    ~ToyAdapter() override { --s_live; }

    zorvex_api::PluginDescriptor* GetPluginDescriptor() override { return s_descriptor; }
    void Process(zorvex_api::PluginProcessData* data) override
    {
        if (!s_behaviour || !s_behaviour(*this, *data))
        {
            Adapter::Process(data);
        }
    }

    static int Initialise(void* descriptor)
    {
        s_descriptor = static_cast<zorvex_api::PluginDescriptor*>(descriptor);
        s_descriptor->SetType(1);
        s_descriptor->SetName("TOY");
        s_descriptor->SetBase(Adapter::GetStaticPluginDescriptor());
        s_descriptor->SetInstanceFunction([]() -> void* { return new ToyAdapter; });
        s_descriptor->SetPropertiesFunction(
            [](zorvex_api::PluginDescriptor*, zorvex_api::Configuration* properties)
            {
                properties->Set("FORMAT", "TOY");
                properties->Set("FILE_EXTENSIONS", "Toy xml");
            });
        return 1;
    }

    static inline Behaviour s_behaviour;
    static inline int s_live = 0;
    static inline zorvex_api::PluginDescriptor* s_descriptor = nullptr;
};

/// A session with the format TOY, which came in after the start.
class ToyTest : public SessionTest
{
protected:
    using SessionTest::SessionTest;

    void SetUp() override
    {
        SessionTest::SetUp();
        m_node = std::make_unique<zorvex_api::LinkNode>(&ToyAdapter::Initialise,
                                                        zorvex_api::LinkNode::kPlugin);
    }
    void TearDown() override
    {
        ToyAdapter::s_behaviour = nullptr;
        m_node.reset();
        EXPECT_EQ(0, ToyAdapter::s_live);
        SessionTest::TearDown();
    }

private:
    std::unique_ptr<zorvex_api::LinkNode> m_node;
};

}  // namespace zorvex_test
