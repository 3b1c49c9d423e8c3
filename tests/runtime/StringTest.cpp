#include "zorvex_api/String.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "runtime/Text.h"
#include "support/Printers.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using zorvex_test::Texts;
using zorvex_test::Utf8;

template <class Action>
int RaisedCode(Action&& action)
{
    try
    {
        action();
    }
    catch (const Exception& exception)
    {
        return exception.GetCode();
    }
    return 0;
}

TEST(StringTest, EveryWayToBeEmptyIsTheSame)
{
    const String empties[] = {String(),
                              String(nullptr),
                              String(""),
                              String(u""),
                              String(static_cast<const unsigned short*>(nullptr)),
                              String(u"", -1),
                              String(u"abc", 0),
                              String("abc", -3),
                              String(u'x', 0),
                              String("abc", 0, 2)};
    for (const String& left : empties)
    {
        EXPECT_EQ(0, left.GetLength());
        EXPECT_EQ(nullptr, static_cast<const char*>(left));
        for (const String& right : empties)
        {
            EXPECT_EQ(left, right);
            EXPECT_FALSE(left < right);
            EXPECT_EQ(0, left.Compare(right));
        }
    }
}

TEST(StringTest, NarrowTextIsUtf8AndIllFormedBytesStandForThemselves)
{
    EXPECT_EQ(String("Schr\xC3\xA4nke \xF0\x9F\x94\xA9"), u"Schr\u00e4nke \U0001F529");
    EXPECT_EQ(String("a\xE4z"), u"a\u00e4z");
    EXPECT_EQ(String("\xC3"), u"\u00c3");
    EXPECT_EQ(String("abcdef", 3), "abc");
    EXPECT_EQ(String("ab", 100), "ab");  // ends at the terminator
    EXPECT_STREQ("a\xC3\xA4", String(u"a\u00e4"));
}

TEST(StringTest, HighSurrogateWithoutLowOneIsLostInTheNarrowForm)
{
    EXPECT_STREQ("a", String(u"a\xD83D"));
    EXPECT_STREQ("ab", String(u"a\xD83D"
                              u"b"));
    EXPECT_STREQ("\xED\xB4\xA9", String(u"\xDD29"));
    EXPECT_EQ(String(u"x\xDD29").GetUTF8String(), u"x\xDD29");
}

TEST(StringTest, EncodingsAreToldApartAndChecked)
{
    const char16_t wide[] = u"\u00e4b";
    EXPECT_EQ(String(wide, 1, 0), u"\u00e4");
    EXPECT_EQ(String("\xC3\xA4"
                     "b",
                     3, 2),
              u"\u00e4b");
    EXPECT_EQ(String("\xE4", 1, 1), u"\u00e4");

    EXPECT_EQ(528, RaisedCode([] { String("\xE4", 1, 2); }));
    EXPECT_EQ(528, RaisedCode([] { String("\xED\xA0\x80", 3, 2); }));  // a surrogate
    EXPECT_EQ(528, RaisedCode([] { String("\xC0\x80", 2, 2); }));      // overlong
    EXPECT_EQ(19, RaisedCode([] { String("x", 1, 7); }));
    EXPECT_EQ(16, RaisedCode([] { String("x", -2, 1); }));
    EXPECT_EQ(16, RaisedCode([] { String(u"x", -2); }));
}

TEST(StringTest, SetKeepsTheTextWhenItRefuses)
{
    String text("old");
    EXPECT_EQ(0, text.SetUTF8("\xE4"));
    EXPECT_EQ(0, text.Set("x", 1, 9));
    EXPECT_EQ(0, text.Set(u"x", -1));
    EXPECT_EQ(0, text.Set("x", -1));
    EXPECT_EQ(text, "old");
    EXPECT_EQ(1, text.SetUTF8("n\xC3\xA9w", 3));
    EXPECT_EQ(text, u"n\u00e9");
    EXPECT_EQ(1, text.Set(u"wide", 2));
    EXPECT_EQ(text, "wi");
    text = nullptr;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(0, text.Set(u"wide", -2));
    EXPECT_EQ(1, text.Set(u"wide", -1));
    EXPECT_EQ(text, "wide");
}

TEST(StringTest, BorrowedTextIsSharedUntilItIsChanged)
{
    char16_t buffer[] = u"plate";
    String borrowed(buffer, -1);
    EXPECT_EQ(AsUnits(buffer), static_cast<const unsigned short*>(borrowed));
    borrowed[0] = u'P';
    EXPECT_EQ(borrowed, "Plate");
    EXPECT_EQ(std::u16string(u"plate"), buffer);

    String appended(buffer, -1);
    appended += "s";
    String replaced(buffer, -1);
    EXPECT_EQ(1, replaced.Replace(u'p', u'P'));
    String written(buffer, -1);
    written.GetData()[1] = u'L';
    EXPECT_EQ(std::u16string(u"plate"), buffer);
    EXPECT_EQ(appended, "plates");
    EXPECT_EQ(replaced, "Plate");
    EXPECT_EQ(written, "pLate");
}

TEST(StringTest, NarrowFormFollowsEveryChange)
{
    String text("bolt");
    const char* const first = text;
    EXPECT_EQ(first, static_cast<const char*>(text));  // unchanged: the same buffer
    text += 's';
    EXPECT_STREQ("bolts", text);
    text[0] = u'B';
    EXPECT_STREQ("Bolts", text);
    unsigned short* const data = text.GetData();
    EXPECT_STREQ("Bolts", text);
    data[0] = u'V';  // through a pointer handed out before the last cast
    EXPECT_STREQ("Volts", text);
    text[2] = 0;
    EXPECT_EQ(2, text.GetLength());
}

TEST(StringTest, IndexOnNothingRaises)
{
    String empty;
    EXPECT_EQ(16, RaisedCode([&] { empty[0]; }));
    const String constant;
    EXPECT_EQ(16, RaisedCode([&] { constant[0]; }));
}

TEST(StringTest, ComparesUnitByUnitAndNarrowTextBySignedBytes)
{
    EXPECT_EQ(u'b' - u'a', String("b").Compare("a" + String()));
    EXPECT_EQ(-'c', String("ab").Compare(String("abc")));
    EXPECT_EQ(3, String("abc").Compare(String()));
    EXPECT_EQ(-3, String().Compare(String("abc")));
    EXPECT_EQ(-1, String("abc").Compare("abd"));
    EXPECT_EQ(1, String("abc").Compare("ab"));
    EXPECT_FALSE(String(u"\u00e4") == "\xE4");
    EXPECT_TRUE(String("x") != u"y");
    EXPECT_TRUE(String() < String("a"));
    EXPECT_TRUE(String(u"z") < String(u"\u00e4"));
}

TEST(StringTest, OrdersAgainstNarrowAndWideTextByUnitsNotByAddress)
{
    const String bolt("bolt");
    // Each pair of buffers in both orders, so that an order by address can't pass by luck.
    const char narrow[] = "nut\0arm";
    const char16_t wide[] = u"nut\0arm";
    const auto* const units = AsUnits(wide);
    EXPECT_TRUE(bolt < narrow && bolt < wide && bolt < units && bolt < String(narrow));
    EXPECT_TRUE(bolt > narrow + 4 && bolt > wide + 4 && bolt > units + 4);
    EXPECT_TRUE(narrow > bolt && wide > bolt && units > bolt);
    EXPECT_TRUE(narrow + 4 < bolt && wide + 4 < bolt && units + 4 < bolt);
    EXPECT_TRUE(bolt <= "bolt" && bolt >= "bolt" && bolt <= u"bolt" && u"bolt" >= bolt);
    EXPECT_FALSE(bolt <= "arm" || bolt >= narrow || "nut" <= bolt || bolt > String("nut"));
    EXPECT_TRUE(bolt > nullptr && String() <= nullptr && String() >= "");
}

TEST(StringTest, NullAndEmptyBracesStandForTheEmptyText)
{
    String text("bolt");
    EXPECT_TRUE(text != nullptr && nullptr != text);
    text = {};
    EXPECT_TRUE(text == nullptr && nullptr == text);
    EXPECT_TRUE(String(u"", -1) == nullptr);
}

TEST(StringTest, FindsFirstAndLastOverlappingOccurrences)
{
    EXPECT_EQ(1, String("aaa").FindLast("aa"));
    EXPECT_EQ(0, String("aaa").Find("aa"));
    EXPECT_EQ(-1, String("aaa").Find("ab"));
    EXPECT_TRUE(String("abc").EndsWith("abc"));
    EXPECT_TRUE(String("abab").EndsWith("ab"));
    EXPECT_FALSE(String("ab").StartsWith("abc"));
    EXPECT_TRUE(String("ab").StartsWith(""));
    EXPECT_TRUE(String().EndsWith(""));
}

TEST(StringTest, ReplaceNeverLooksAtInsertedText)
{
    String four("aaaa");
    EXPECT_EQ(2, four.Replace("aa", "b"));
    EXPECT_EQ(four, "bb");
    String three("aaa");
    EXPECT_EQ(1, three.Replace("aa", "b"));
    EXPECT_EQ(three, "ba");
    String growing("a.a");
    EXPECT_EQ(2, growing.Replace("a", "aa"));
    EXPECT_EQ(growing, "aa.aa");
    EXPECT_EQ(2, growing.Replace("aa", String()));
    EXPECT_EQ(growing, ".");
    EXPECT_EQ(1, growing.Replace(growing, ":"));
    EXPECT_EQ(growing, ":");
    String self("xyx");
    EXPECT_EQ(1, self.Replace(self, self + self));
    EXPECT_EQ(self, "xyxxyx");
}

TEST(StringTest, AppendingPartsOfItselfIsSafe)
{
    String text("ab");
    for (int i = 0; i < 9; ++i)
    {
        text += text;
    }
    EXPECT_EQ(1024, text.GetLength());
    text = static_cast<const char*>(text);
    EXPECT_EQ(1024, text.GetLength());
    text = AsChar16(text) + 1020;
    EXPECT_EQ(text, "abab");
    text += AsChar16(static_cast<const unsigned short*>(text)) + 2;
    EXPECT_EQ(text, "ababab");
}

TEST(StringTest, SubstringRaisesBeyondTheEnd)
{
    const String text("revision");
    EXPECT_EQ(text.Substring(2), "vision");
    EXPECT_EQ(text.Substring(8), "");
    EXPECT_EQ(text.Substring(2, 3), "vis");
    EXPECT_EQ(text.Substring(8, 0), "");
    EXPECT_EQ(16, RaisedCode([&] { text.Substring(9); }));
    EXPECT_EQ(16, RaisedCode([&] { text.Substring(-1); }));
    EXPECT_EQ(16, RaisedCode([&] { text.Substring(2, 7); }));
    EXPECT_EQ(16, RaisedCode([&] { text.Substring(1, 2147483647); }));
}

TEST(StringTest, SplitSkipsEmptyTokens)
{
    Array<String> tokens;
    String("a,,b").Split(",", tokens);
    String(",c,").Split(",", tokens);
    String(",,").Split(",", tokens);
    String("d,;e;f").Split(",;", tokens);
    String("g,h").Split("", tokens);
    EXPECT_THAT(Texts(tokens), ElementsAre("a", "b", "c", "d", "e", "f", "g,h"));
    tokens[0].Split(tokens[0], tokens);
    EXPECT_EQ(7, tokens.GetSize());
    String().Split(",", tokens);
    EXPECT_THAT(Texts(tokens), IsEmpty());
}

TEST(StringTest, LastTokenIsWhatFollowsTheLastSeparator)
{
    EXPECT_EQ(String("a/b/c.xml").GetLastToken("/"), "c.xml");
    EXPECT_EQ(String("a/b/").GetLastToken("/"), "");
    EXPECT_EQ(String("plain").GetLastToken("/"), "plain");
    EXPECT_EQ(String("plain").GetLastToken(""), "plain");
}

TEST(StringTest, FormatGrowsAndReadsUtf8)
{
    EXPECT_EQ(String::Format("%.3d|%s", 36, "\xC3\xA4"), u"036|\u00e4");
    EXPECT_EQ(511, String::Format("%511d", 1).GetLength());
    EXPECT_EQ(512, String::Format("%512d", 1).GetLength());
    EXPECT_EQ(5000, String::Format("%5000d", 1).GetLength());
    EXPECT_TRUE(String::Format("%s", "").IsEmpty());
}

TEST(StringTest, XmlFormEscapesAmpersandLessAndQuoteOnly)
{
    EXPECT_EQ(String("a<b>&\"c'").GetUTF8XMLString(), "a&lt;b>&amp;&quot;c'");
    EXPECT_EQ(String("AbC").LowerCase(), "abc");
    EXPECT_EQ(String("AbC-1").UpperCase(), "ABC-1");
}

TEST(StringTest, SharedConstantCanBeReadFromManyThreads)
{
    const String constant = BorrowConstant(u"ProductRevisionView");
    const String counted(u"Instance", -1);  // its length isn't known yet
    std::vector<std::thread> threads;
    std::vector<int> good(4, 0);
    for (size_t i = 0; i < good.size(); ++i)
    {
        threads.emplace_back(
            [&, i]
            {
                for (int round = 0; round < 1000; ++round)
                {
                    good[i] += std::string(constant) == "ProductRevisionView" &&
                               counted.GetLength() == 8 && Utf8(counted) == "Instance";
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_THAT(good, testing::Each(1000));
}

}  // namespace
}  // namespace zorvex_api
