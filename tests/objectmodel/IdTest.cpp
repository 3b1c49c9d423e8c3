#include "objectmodel/Id.h"

#include <memory>
#include <utility>

#include "objectmodel/ClassData.h"
#include "support/SessionTest.h"
#include "zorvex_api/ClassDescriptor.h"

namespace zorvex_test
{

using zorvex_api::ClassDescriptor;
using zorvex_api::Id;
using zorvex_api::IdValue;
using zorvex_api::Object;
using zorvex_api::TextView;

namespace
{

std::u16string Text(const IdValue& id)
{
    std::u16string out;
    id.AppendTo(out);
    return out;
}

}  // namespace

TEST(IdValueTest, OnlyIdAndOneToNineDigitsWithoutLeadingZeroIsANumber)
{
    for (const TextView text : {u"id1", u"id42", u"id999999999"})
    {
        const IdValue id(text);
        EXPECT_TRUE(id.IsNumeric()) << zorvex_api::ToUtf8(text);
        EXPECT_EQ(text, Text(id));
    }
    for (const TextView text : {u"id", u"id0", u"id007", u"ID42", u"id4a", u"id1234567890", u"i1"})
    {
        const IdValue id(text);
        EXPECT_FALSE(id.IsNumeric()) << zorvex_api::ToUtf8(text);
        EXPECT_EQ(text, Text(id));
    }
    EXPECT_FALSE(IdValue(TextView()).HasValue());
}

TEST(IdValueTest, ANumberOfTenDigitsReadsBackAsItWasMade)
{
    const IdValue made(1000000000u);
    EXPECT_EQ(u"id1000000000", Text(made));
    EXPECT_TRUE(made == IdValue(u"id1000000000"));
    std::uint32_t number = 0;
    EXPECT_FALSE(made.GetNumber(number));
}

TEST(IdValueTest, TextsOfDigitsHaveANumberButAreNoNumber)
{
    std::uint32_t number = 0;
    EXPECT_TRUE(IdValue(u"id007").GetNumber(number));
    EXPECT_EQ(7u, number);
    EXPECT_FALSE(IdValue(u"id007") == IdValue(7u));
    EXPECT_FALSE(IdValue(u"idx").GetNumber(number));
    EXPECT_FALSE(IdValue(0u).GetNumber(number));
}

TEST(IdValueTest, OrderPutsBlankIdsFirstAndTextsAroundAllNumbers)
{
    IdValue none;
    none.SetNone();
    EXPECT_TRUE(none < IdValue(1u));
    EXPECT_FALSE(IdValue(1u) < none);
    EXPECT_TRUE(IdValue(9u) < IdValue(10u));
    EXPECT_TRUE(IdValue(u"abc") < IdValue(5u));
    EXPECT_TRUE(IdValue(5u) < IdValue(u"zed"));
    EXPECT_FALSE(IdValue(u"zed") < IdValue(5u));
    EXPECT_FALSE(none == IdValue());
    EXPECT_TRUE(none == IdValue(none));
}

TEST(IdValueTest, MovesAndOverlappingTextsLeaveTheRightValues)
{
    IdValue text(u"bolt");
    text.Set(text.Text().substr(1));
    EXPECT_EQ(u"olt", Text(text));
    IdValue moved(std::move(text));
    IdValue number(7u);
    number = std::move(moved);
    EXPECT_EQ(u"olt", Text(number));
    number = IdValue(3u);
    EXPECT_EQ(u"id3", Text(number));
}

class IdLinkTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        m_target.reset(ClassDescriptor::FindByName(u"Transform")->MakeObject());
    }

    std::unique_ptr<Object> m_target;

    void TearDown() override
    {
        m_target.reset();
        SessionTest::TearDown();
    }
};

TEST_F(IdLinkTest, ALinkShowsTheTargetsPresentId)
{
    Id id;
    id.SetLink(m_target.get());
    EXPECT_FALSE(id.IsEmpty());
    EXPECT_FALSE(id.Current().HasValue());
    m_target->SetId(u"id8");
    EXPECT_EQ(u"id8", Text(id.Current()));
    m_target->SetId(u"frame");
    EXPECT_EQ(u"frame", Text(id.Current()));
}

TEST_F(IdLinkTest, TheEndOfTheTargetLeavesItsLastIdInEveryCopy)
{
    Id first;
    first.SetLink(m_target.get());
    auto second = std::make_unique<Id>(first);
    Id third(first);
    Id moved(std::move(third));
    second.reset();  // leaves the middle of the chain
    m_target->SetId(u"frame");
    m_target.reset();
    EXPECT_EQ(nullptr, first.Link());
    EXPECT_EQ(u"frame", Text(first.Current()));
    EXPECT_EQ(u"frame", Text(moved.Current()));
    const Id late(moved);
    EXPECT_EQ(u"frame", Text(late.Current()));
}

TEST_F(IdLinkTest, ReplacingTheValueEndsTheLink)
{
    Id id;
    id.SetLink(m_target.get());
    id.Set(u"id5");
    m_target->SetId(u"id6");
    EXPECT_EQ(u"id5", Text(id.Current()));
    id.SetLink(m_target.get());
    id = Id(IdValue(4u));
    EXPECT_EQ(u"id4", Text(id.Current()));
    EXPECT_EQ(nullptr, id.Link());
}

}  // namespace zorvex_test
