#include "objectmodel/TestObjects.h"
#include "zorvex_api/Transf.h"

using namespace zorvex_api;
using namespace zorvex_test;
using testing::ElementsAre;

namespace
{

class TransformTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        m_transform = Make(u"Transform");
    }
    void TearDown() override
    {
        m_transform.reset();
        SessionTest::TearDown();
    }

    std::string SetAndGet(const char* type, const char* text)
    {
        m_transform->SetAttributeValue(u"type", String(type));
        const Result result = m_transform->SetContent(String(text));
        return result.Ok() ? Text(*m_transform, u"Content") : Messages(result).front();
    }
    void Read(double (&matrix)[4][4])
    {
        Transf value;
        ASSERT_TRUE(m_transform->GetContent(value).Ok());
        value.ToMatrix4x4(matrix);
    }

    std::unique_ptr<Object> m_transform;
};

TEST_F(TransformTest, EachTypeHasItsPlaceInTheMatrix)
{
    double m[4][4];
    EXPECT_EQ("1 0 0 0 0 1 0 0 0 0 1 0 5 6 7 1", SetAndGet("", "1 0 0 0 0 1 0 0 0 0 1 0 5 6 7 1"));
    Read(m);
    EXPECT_EQ(5.0, m[0][3]);
    EXPECT_EQ(7.0, m[2][3]);

    EXPECT_EQ("1 2 3", SetAndGet("translate", "1 2 3 4"));
    Read(m);
    EXPECT_EQ(3.0, m[2][3]);
    EXPECT_EQ(1.0, m[3][3]);

    EXPECT_EQ("0 1 0 -1 0 0 0 0 1", SetAndGet("rotate", "0 1 0 -1 0 0 0 0 1"));
    Read(m);
    EXPECT_EQ(1.0, m[1][0]);
    EXPECT_EQ(-1.0, m[0][1]);

    EXPECT_EQ("2", SetAndGet("scale", "2"));
    Read(m);
    EXPECT_EQ(0.5, m[3][3]);
}

TEST_F(TransformTest, MissingNumbersAreTheIdentitysAndBlanksStoreNothing)
{
    EXPECT_EQ("2 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1", SetAndGet("", "2 x 3"));
    EXPECT_EQ("4 0 0", SetAndGet("translate", "4"));
    ASSERT_TRUE(m_transform->SetContent(u" \n\t").Ok());
    EXPECT_EQ("4 0 0", Text(*m_transform, u"Content"));
}

TEST_F(TransformTest, BadTypesAndScalesAreReported)
{
    EXPECT_EQ("ERROR 2: 0 scale transform specified.", SetAndGet("scale", "0"));
    EXPECT_EQ("ERROR 2: 0 scale transform specified.", SetAndGet("scale", "abc"));
    EXPECT_EQ("ERROR 2: Unknown transformation type.", SetAndGet("shear", "1"));
}

TEST_F(TransformTest, AScaleReadsBackAsItWasWritten)
{
    for (const char* text : {"49", "0.001", "3", "1e-07", "25.4", "0.3333333333333333", "-7"})
    {
        EXPECT_EQ(text, SetAndGet("scale", text));
    }
}

TEST_F(TransformTest, AMatrixThatTheTypeCannotExpressResetsTheType)
{
    double matrix[4][4] = {{1, 0, 0, 4}, {0, 1, 0, 5}, {0, 0, 1, 6}, {0, 0, 0, 1}};
    Transf move;
    move.FromMatrix4x4(matrix);
    m_transform->SetAttributeValue(u"type", u"translate");
    ASSERT_TRUE(m_transform->SetContent(move).Ok());
    EXPECT_EQ("4 5 6", Text(*m_transform, u"Content"));
    EXPECT_EQ("translate", Text(*m_transform, u"type"));

    m_transform->SetAttributeValue(u"type", u"rotate");
    ASSERT_TRUE(m_transform->SetContent(move).Ok());
    EXPECT_EQ("general", Text(*m_transform, u"type"));
    EXPECT_EQ("1 0 0 0 0 1 0 0 0 0 1 0 4 5 6 1", Text(*m_transform, u"Content"));
}

TEST_F(TransformTest, NumbersThatTheTypeCannotExpressResetItToo)
{
    const double numbers[] = {2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 4, 5, 6, 1};
    m_transform->SetAttributeValue(u"type", u"translate");
    EXPECT_FALSE(m_transform->SetContent(Array<double>(9, numbers)).Ok());
    EXPECT_EQ("translate", Text(*m_transform, u"type"));
    ASSERT_TRUE(m_transform->SetContent(Array<double>(16, numbers)).Ok());
    EXPECT_EQ("2 0 0 0 0 1 0 0 0 0 1 0 4 5 6 1", Text(*m_transform, u"Content"));
}

TEST_F(TransformTest, OtherMatricesAreListsOfNumbers)
{
    const auto control = Make(u"ViewControl");
    Transf read;
    ASSERT_TRUE(control->SetAttributeValue(u"ViewMatrix", Transf(0.5)).Ok());
    EXPECT_EQ("1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 2", Text(*control, u"ViewMatrix"));
    ASSERT_TRUE(control->GetAttributeValue(u"ViewMatrix", read).Ok());
    EXPECT_EQ(2.0, read.GetScale());
}

}  // namespace
