#include "runtime/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <random>
#include <string>

#include "support/Printers.h"

namespace zorvex_api::number
{
namespace
{

double AnyDouble(std::mt19937_64& random)
{
    const uint64_t bits = random();
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

void ExpectSameTextAsPrintf(double value)
{
    char expected[64];
    std::snprintf(expected, sizeof expected, "%.16g", value);
    char text[kMaxText];
    EXPECT_EQ(std::strlen(expected), FormatDouble16g(value, text));
    EXPECT_STREQ(expected, text);
}

TEST(NumberTextTest, DoublesHaveTheTextOfPrintf)
{
    for (const double value : {0.0,
                               -0.0,
                               1.0,
                               -1.0,
                               0.1,
                               9.7,
                               49.0,
                               1e15,
                               999999999999999.0,
                               -1e15,
                               1e16,
                               1e17,
                               123456789012345678.0,
                               1e-4,
                               1e-5,
                               0.1 + 0.2,
                               1.0 / 3.0,
                               1e308,
                               -1.7976931348623157e308,
                               5e-324,
                               2.2250738585072014e-308,
                               HUGE_VAL,
                               -HUGE_VAL,
                               std::nan("")})
    {
        ExpectSameTextAsPrintf(value);
    }
    std::mt19937_64 random(20241016);
    for (int i = 0; i < 20000; ++i)
    {
        ExpectSameTextAsPrintf(AnyDouble(random));
        ExpectSameTextAsPrintf(static_cast<double>(static_cast<int64_t>(random())) / 1e6);
    }
}

/// The C library's answer for a text of ASCII characters.
void ExpectReadsAsWcstod(const std::string& text)
{
    const std::wstring wide(text.begin(), text.end());
    const std::u16string units(text.begin(), text.end());
    wchar_t* end = nullptr;
    const double expected = std::wcstod(wide.c_str(), &end);
    const ParsedDouble parsed = ParseDouble(units);
    EXPECT_EQ(end - wide.c_str(), parsed.end - units.data()) << '"' << text << '"';
    if (std::isnan(expected))
    {
        EXPECT_TRUE(std::isnan(parsed.value)) << text;
        return;
    }
    EXPECT_EQ(expected, parsed.value) << text;
    EXPECT_EQ(std::signbit(expected), std::signbit(parsed.value)) << text;
}

TEST(NumberTextTest, DoublesAreReadAsTheCLibraryReadsThem)
{
    for (const char* text : {"",
                             " ",
                             "1",
                             " \t\n\v\f\r1.5x",
                             "+2",
                             "-3.25e2",
                             "-0",
                             ".5",
                             "5.",
                             ".",
                             "+",
                             "e5",
                             "1e",
                             "1e+",
                             "1e5.5",
                             "1.5.2",
                             "1e400",
                             "-1e400",
                             "1e-400",
                             "4.9e-324",
                             "inf",
                             "-INF",
                             "infin",
                             "Infinity!",
                             "nan",
                             "NaN(",
                             "nan(ab_1)",
                             "nan(a-b)",
                             "0x",
                             "0x1p4",
                             "-0X.8",
                             "0x1.8p+1z",
                             "0xg",
                             "1,5",
                             "1 2",
                             "--1",
                             "+-1",
                             "0x1p",
                             "1d5",
                             "\x7f"
                             "1",
                             "0.1000000000000000055511151231257827021181583404541015625",
                             "123456789012345678901234567890123456789012345678901234567890123456789"
                             "012345678901234567890"})
    {
        ExpectReadsAsWcstod(text);
    }
    std::mt19937_64 random(7);
    static constexpr char kAlphabet[] = "0123456789+-.eExXpPinfa() ";
    for (int i = 0; i < 20000; ++i)
    {
        std::string text;
        for (size_t length = random() % 9; length != 0; --length)
        {
            text += kAlphabet[random() % (sizeof kAlphabet - 1)];
        }
        ExpectReadsAsWcstod(text);
    }
}

TEST(NumberTextTest, ShortestTextReadsBackAsTheSameValue)
{
    std::mt19937_64 random(11);
    for (int i = 0; i < 5000; ++i)
    {
        const double value = AnyDouble(random);
        char text[kMaxText];
        const size_t length = FormatDoubleShortest(value, text);
        if (!std::isnan(value))
        {
            EXPECT_EQ(value, ParseDouble(std::u16string(text, text + length)).value) << text;
        }
    }
}

TEST(NumberTextTest, WholeNumbersReportWhatDoesNotFit)
{
    struct Case
    {
        const char16_t* text;
        int32_t value;
        ptrdiff_t length;
        bool overflow;
    };
    for (const Case& test :
         {Case{u"", 0, 0, false}, Case{u"  +12,", 12, 5, false}, Case{u"-7", -7, 2, false},
          Case{u"x", 0, 0, false}, Case{u"-", 0, 0, false}, Case{u"0x10", 0, 1, false},
          Case{u"2147483647", INT32_MAX, 10, false}, Case{u"-2147483648", INT32_MIN, 11, false},
          Case{u"2147483648", INT32_MAX, 10, true}, Case{u"-2147483649", INT32_MIN, 11, true},
          Case{u"99999999999999999999999 1", INT32_MAX, 23, true}})
    {
        const TextView text(test.text);
        const ParsedInt parsed = ParseInt(text);
        EXPECT_EQ(test.value, parsed.value) << ToUtf8(text);
        EXPECT_EQ(test.length, parsed.end - text.data()) << ToUtf8(text);
        EXPECT_EQ(test.overflow, parsed.overflow) << ToUtf8(text);
    }
}

}  // namespace
}  // namespace zorvex_api::number
