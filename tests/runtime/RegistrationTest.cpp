#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

#include "runtime/LinkNodeOwner.h"
#include "runtime/LocalTime.h"
#include "runtime/MutexLock.h"
#include "support/Printers.h"
#include "zorvex_api/BuildInfo.h"
#include "zorvex_api/LinkNode.h"
#include "zorvex_api/Session.h"

namespace zorvex_api
{
namespace
{

int Initialiser(void* argument)
{
    return argument != nullptr ? 1 : 0;
}

/// A registry that notes what it is told, for the time of a test.
class NotingOwner : public LinkNodeOwner
{
public:
    explicit NotingOwner(int kind) : m_kind(kind), m_before(Get(kind)) { Set(kind, this); }
    ~NotingOwner() override { Set(m_kind, m_before); }

    bool IsFilled() const override { return filled; }
    void Joined(LinkNode& node) override
    {
        joined.push_back(&node);
        node.SetDescriptor(this);
    }
    void Ending(LinkNode& node) noexcept override { ended.push_back(&node); }

    bool filled = true;
    std::vector<LinkNode*> joined;
    std::vector<LinkNode*> ended;

private:
    int m_kind;
    LinkNodeOwner* m_before;
};

TEST(LinkNodeTest, NodesJoinAtTheTailAndLeaveFromAnywhere)
{
    LinkNode* const tail = LinkNode::m_pTailNode;
    auto first = std::make_unique<LinkNode>(&Initialiser, LinkNode::kClass);
    auto second = std::make_unique<LinkNode>(&Initialiser, LinkNode::kClass);
    auto third = std::make_unique<LinkNode>(&Initialiser, LinkNode::kClass);
    EXPECT_EQ(tail, first->GetPrevious());
    EXPECT_EQ(third.get(), LinkNode::m_pTailNode);
    second.reset();
    EXPECT_EQ(third.get(), first->GetNext());
    third.reset();
    EXPECT_EQ(first.get(), LinkNode::m_pTailNode);
    EXPECT_EQ(0, first->RunInitialiser(nullptr));
    first.reset();
    EXPECT_EQ(tail, LinkNode::m_pTailNode);
}

TEST(LinkNodeTest, PluginThatComesLateIsRegisteredAtOnce)
{
    NotingOwner owner(LinkNode::kPlugin);
    owner.filled = false;
    const LinkNode early(&Initialiser, LinkNode::kPlugin);
    EXPECT_TRUE(owner.joined.empty());
    owner.filled = true;
    {
        const LinkNode late(&Initialiser, LinkNode::kPlugin);
        EXPECT_EQ(std::vector<LinkNode*>{LinkNode::m_pTailNode}, owner.joined);
    }
    EXPECT_EQ(owner.joined, owner.ended);
}

TEST(LinkNodeTest, FirstLateClassIsMarkedAndPassesTheMarkOn)
{
    NotingOwner owner(LinkNode::kClass);
    LinkNode* const before = LinkNode::m_pRegisterNode;
    LinkNode::m_pRegisterNode = nullptr;
    auto first = std::make_unique<LinkNode>(&Initialiser, LinkNode::kClass);
    auto second = std::make_unique<LinkNode>(&Initialiser, LinkNode::kClass);
    EXPECT_EQ(first.get(), LinkNode::m_pRegisterNode);
    first.reset();
    EXPECT_EQ(second.get(), LinkNode::m_pRegisterNode);
    second.reset();
    EXPECT_EQ(nullptr, LinkNode::m_pRegisterNode);
    EXPECT_TRUE(owner.joined.empty());
    LinkNode::m_pRegisterNode = before;
}

TEST(BuildInfoTest, ReadsDatesInTheirForms)
{
    const BuildInfo library = GetBuildInfo();
    EXPECT_EQ(library.GetVersionText(), "7.2.0.036");
    EXPECT_EQ(2024, library.GetYear());
    EXPECT_EQ(10, library.GetMonth());
    EXPECT_EQ(16, library.GetDay());
    EXPECT_EQ(17, library.GetHour());
    EXPECT_EQ(2, library.GetMinute());
    EXPECT_EQ(41, library.GetSecond());

    const BuildInfo named(1, 2, 3, 1234, "07-Mar-24 01:02:03");
    EXPECT_EQ(2024, named.GetYear());
    EXPECT_EQ(3, named.GetMonth());
    EXPECT_EQ(7, named.GetDay());
    EXPECT_EQ(named.GetVersionText(), "1.2.3.1234");

    BuildInfo copy;
    EXPECT_EQ(0, copy.GetYear());
    copy = named;
    EXPECT_EQ(3, copy.GetSecond());
}

TEST(MutexLockTest, SlotsAreRecursiveAndNumbersOutsideLockNothing)
{
    EXPECT_EQ(nullptr, Mutex::OfSlot(15));
    EXPECT_EQ(nullptr, Mutex::OfSlot(-1));
    const MutexLock nothing(99);
    int counter = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
    {
        threads.emplace_back(
            [&]
            {
                for (int i = 0; i < 5000; ++i)
                {
                    const MutexLock outer(14);
                    const MutexLock inner(14);
                    ++counter;
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(20000, counter);
}

TEST(LocalTimeTest, StampsArePaddedToTheirWidth)
{
    const LocalTime time{2024, 3, 7, 1, 2, 3};
    EXPECT_EQ(time.DateText(), "2024-03-07");
    EXPECT_EQ(time.TimeText(), "01:02:03");
    EXPECT_GE(LocalTime::Now().year, 2024);
}

}  // namespace
}  // namespace zorvex_api
