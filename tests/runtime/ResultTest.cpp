#include "zorvex_api/Result.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "runtime/XmlCharacters.h"
#include "support/Printers.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{
namespace
{

using testing::ElementsAre;
using zorvex_test::Messages;

TEST(ResultTest, CodeZeroIsNeverStored)
{
    Result result(0, "ignored");
    result.AddError(0, SEVERE, "ignored");
    result.AddError(Error(0));
    result.Merge(Result(0));
    result.Merge(result);
    EXPECT_TRUE(result.Ok());
    EXPECT_EQ(0, result.NumberOfErrors());
    EXPECT_EQ(0, result.GetCode());
    EXPECT_EQ(result.GetMessage(), "");

    Result later(5);
    later.GetError(0)->SetCode(0);
    EXPECT_EQ(0, Result(later).NumberOfErrors());
}

TEST(ResultTest, MessagesAndWarningsLeaveItOk)
{
    Result result(517, WARNING, "first");
    result.AddError(7, MESSAGE, "second");
    EXPECT_TRUE(result.Ok());
    EXPECT_EQ(7, result.GetCode());
    EXPECT_EQ(517, Result(517, WARNING, "only").GetCode());
    EXPECT_TRUE(Result(1, UNSET, "x").HasError());

    result.AddError(2, "third");
    EXPECT_FALSE(result.Ok());
    EXPECT_EQ(result.GetMessage(), "first\nsecond\nthird");
    EXPECT_EQ(nullptr, result.GetError(-1));
    EXPECT_EQ(nullptr, result.GetError(3));
}

TEST(ResultTest, MergeAppendsCopiesInOrder)
{
    Result inner(16, "inner");
    Result outer(2, WARNING, "outer");
    outer.Merge(inner);
    inner.GetError(0)->AddMessage(", changed");
    outer.Merge(outer);
    EXPECT_THAT(Messages(outer), ElementsAre("WARNING 2: outer", "ERROR 16: inner"));

    Result moved(4, "lost");
    moved = std::move(outer);
    EXPECT_EQ(2, moved.NumberOfErrors());
    EXPECT_EQ(0, outer.NumberOfErrors());
    moved = static_cast<const Result&>(moved);
    EXPECT_EQ(2, moved.NumberOfErrors());
}

TEST(ResultTest, ErrorAndExceptionAreValues)
{
    int tag = 0;
    Error error(3, FATAL, "a", &tag);
    const Error copy(error);
    error.SetMessage("b");
    EXPECT_EQ(copy.GetMessage(), "a");
    EXPECT_EQ(&tag, copy.GetData());
    EXPECT_EQ(1, Error().GetCode());
    EXPECT_EQ(ERROR, Error().GetSeverity());

    try
    {
        throw Exception(527, "pages");
    }
    catch (Exception& caught)
    {
        Exception kept(16);
        kept = caught;
        caught.SetMessage("");
        EXPECT_EQ(527, kept.GetCode());
        EXPECT_EQ(kept.GetMessage(), "pages");
    }
}

TEST(XmlCharactersTest, FirstForbiddenUnitIsReported)
{
    EXPECT_TRUE(CheckXmlCharacters(u"tab\t line\n return\r \uFFFE \xD800").Ok());
    EXPECT_THAT(Messages(CheckXmlCharacters(u"ab\x1F\x01")),
                ElementsAre("ERROR 520: Invalid Unicode character: ( 0x1f ) index: ( 2 )"));
}

}  // namespace
}  // namespace zorvex_api
