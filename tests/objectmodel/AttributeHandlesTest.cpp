#include "objectmodel/AttributeStore.h"
#include "objectmodel/TestObjects.h"
#include "transport/ToyAdapter.h"

using namespace zorvex_api;
using namespace zorvex_test;
using testing::ElementsAre;

namespace
{

/// References to things that only the adapter of their format understands.
class AttributeHandlesTest : public ToyTest
{
protected:
    void SetUp() override
    {
        ToyTest::SetUp();
        m_representation = Make(u"Representation");
        ToyAdapter::s_behaviour = [this](ToyAdapter&, PluginProcessData& data)
        {
            void* handles = nullptr;
            void* located = nullptr;
            data.Get(internal::kHandlesSlot, handles);
            data.Get(internal::kLocatedSlot, located);
            auto& things = *static_cast<Array<Handle>*>(handles);
            if (data.m_operation == ZORVEX_OP_ADAPTER_LOCATE)
            {
                *static_cast<Array<Handle>*>(located) = things;
                return true;
            }
            if (data.m_operation == ZORVEX_OP_ADAPTER_DESTROY)
            {
                for (const Handle& handle : things)
                {
                    m_destroyed.push_back(handle.GetData());
                }
                return true;
            }
            return false;
        };
    }
    void TearDown() override
    {
        m_representation.reset();
        ToyTest::TearDown();
    }
    Result Set(const std::vector<int*>& things)
    {
        Array<Handle> handles;
        for (int* thing : things)
        {
            handles.Add(Handle(thing, u"TOY"));
        }
        return m_representation->SetAttributeValue(u"baseRef", Reference(u"plate.toy", handles));
    }

    std::unique_ptr<Object> m_representation;
    std::vector<void*> m_destroyed;
    int m_things[3] = {};
};

TEST_F(AttributeHandlesTest, AThingDiesWithTheLastReferenceAndNotBefore)
{
    ASSERT_TRUE(Set({&m_things[0], &m_things[1]}).Ok());
    Reference read;
    ASSERT_TRUE(m_representation->GetAttributeValue(u"baseRef", read).Ok());
    EXPECT_EQ(2, read.GetHandles().GetSize());
    EXPECT_EQ("plate.toy", Utf8(read.GetString()));

    ASSERT_TRUE(Set({&m_things[1], &m_things[2]}).Ok());
    EXPECT_THAT(m_destroyed, ElementsAre(&m_things[0]));
    m_representation->DeleteAttribute(u"baseRef");
    EXPECT_THAT(m_destroyed, ElementsAre(&m_things[0], &m_things[1], &m_things[2]));
}

TEST_F(AttributeHandlesTest, DetachedThingsStayAlive)
{
    ASSERT_TRUE(Set({&m_things[0], &m_things[1]}).Ok());
    Array<Handle> detached;
    attribute_store::DetachTargets(*ClassData::Of(m_representation.get()), u"baseRef", detached);
    EXPECT_EQ(2, detached.GetSize());
    EXPECT_EQ("plate.toy", Text(*m_representation, u"baseRef"));
    m_representation->DeleteAttribute(u"baseRef");
    EXPECT_TRUE(m_destroyed.empty());
}

TEST_F(AttributeHandlesTest, AnExternalReferenceTakesOneThing)
{
    const std::string message =
        "ERROR 2: Unable to set attribute, multiple handles in ExternalReference: \"location\".";
    Array<Handle> handles;
    handles.Add(Handle(&m_things[0], u"TOY"));
    const Reference one(u"plate.toy", handles);
    handles.Add(Handle(&m_things[1], u"TOY"));
    ASSERT_TRUE(m_representation->SetAttributeValue(u"location", one).Ok());
    EXPECT_THAT(Messages(m_representation->SetAttributeValue(u"location", Reference(handles))),
                ElementsAre(message));
    Array<Reference> two;
    two.Add(Reference(handles[0]));
    two.Add(Reference(handles[1]));
    EXPECT_THAT(Messages(m_representation->SetAttributeValue(u"location", two)),
                ElementsAre(message));
    Reference read;
    ASSERT_TRUE(m_representation->GetAttributeValue(u"location", read).Ok());
    EXPECT_EQ(&m_things[0], read.GetHandle().GetData());
    EXPECT_TRUE(m_destroyed.empty());
}

}  // namespace
