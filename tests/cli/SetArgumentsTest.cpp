#include "SetArguments.h"

#include <gmock/gmock.h>

namespace zorvex_cli
{
namespace
{

using testing::ElementsAre;

TEST(SetArgumentsTest, AValueThatLooksLikeAnOptionStaysAValue)
{
    EXPECT_THAT(OrderSetArguments({"set", "a.xml", "id1", "x", "-5", "-O", "b.xml"}),
                ElementsAre("set", "-O", "b.xml", "--", "a.xml", "id1", "x", "-5"));
    EXPECT_THAT(OrderSetArguments({"set", "-O", "b.xml", "a.xml", "id1", "x", "--help"}),
                ElementsAre("set", "-O", "b.xml", "--", "a.xml", "id1", "x", "--help"));
    EXPECT_THAT(OrderSetArguments({"set", "a.xml", "id1", "x", "-O", "b.xml", "-5"}),
                ElementsAre("set", "-O", "b.xml", "--", "a.xml", "id1", "x", "-5"));
}

TEST(SetArgumentsTest, OptionsAndOtherCommandsAreLeftAlone)
{
    EXPECT_THAT(OrderSetArguments({"set", "--help"}), ElementsAre("set", "--help"));
    EXPECT_THAT(OrderSetArguments({"get", "a.xml", "id1", "x", "-5"}),
                ElementsAre("get", "a.xml", "id1", "x", "-5"));
    EXPECT_THAT(OrderSetArguments({"set", "--output=b.xml", "--", "-a.xml", "id1", "x", "-5"}),
                ElementsAre("set", "--output=b.xml", "--", "-a.xml", "id1", "x", "-5"));
}

}  // namespace
}  // namespace zorvex_cli
