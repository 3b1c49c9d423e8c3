#include "runtime/Utf8.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "runtime/Text.h"

namespace zorvex_api::utf8
{
namespace
{

std::string Encoded(TextView text, unsigned flags)
{
    std::string out = "=";
    AppendEncoded(text, flags, out);
    return out.substr(1);
}

TEST(Utf8Test, FlagsSayWhatIsEscaped)
{
    const TextView text = u"<&\">'\t\n\r";
    EXPECT_EQ("<&\">'\t\n\r", Encoded(text, kPlain));
    EXPECT_EQ("<&\">'\t\n\r", Encoded(text, kEscapeGreater | kEscapeBlanks));
    EXPECT_EQ("&lt;&amp;&quot;>'\t\n\r", Encoded(text, kEscape));
    EXPECT_EQ("&lt;&amp;&quot;&gt;'\t\n\r", Encoded(text, kEscape | kEscapeGreater));
    EXPECT_EQ("&lt;&amp;&quot;>'&#x9;&#xA;&#xD;", Encoded(text, kEscape | kEscapeBlanks));
}

TEST(Utf8Test, LengthsChangeAtTheDocumentedUnits)
{
    EXPECT_EQ("\x7F", Encoded(u"\x7F", 0));
    EXPECT_EQ("\xC2\x80", Encoded(u"\x80", 0));
    EXPECT_EQ("\xDF\xBF", Encoded(u"\x7FF", 0));
    EXPECT_EQ("\xE0\xA0\x80", Encoded(u"\x800", 0));
    EXPECT_EQ("\xEF\xBF\xBF", Encoded(u"\xFFFF", 0));
    EXPECT_EQ("\xF0\x90\x80\x80", Encoded(u"\U00010000", 0));
    EXPECT_EQ("\xF4\x8F\xBF\xBF", Encoded(u"\U0010FFFF", 0));
    EXPECT_EQ(
        "\xED\xB0\x80"
        "a",
        Encoded(u"\xDC00\xD800"
                u"a\xDBFF",
                0));
}

TEST(Utf8Test, OnlyWellFormedBytesDecode)
{
    for (const char* bad : {"\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x9F\xBF", "\xE2\x82",
                            "\xED\xA0\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80",
                            "\xF5\x80\x80\x80", "\xF0\x9F\x94", "\xFF", "abcdefghij\xE4klm"})
    {
        std::u16string out = u"kept";
        EXPECT_FALSE(Decode(bad, out)) << testing::PrintToString(std::string(bad));
        EXPECT_EQ(u"kept", out);
        DecodeLenient(bad, out);
        EXPECT_EQ(u"kept", out.substr(0, 4));
        EXPECT_EQ(static_cast<unsigned char>(bad[FindMalformed(bad)]),
                  static_cast<unsigned>(out[4 + FindMalformed(bad)]));
    }
}

TEST(Utf8Test, AnyUnitsSurviveTheStoredForm)
{
    std::mt19937 random(3);
    static constexpr char16_t kPool[] = {u'a',   u'z',   0x7F,   0x80,   0x7FF, 0x800,
                                         0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xFFFF};
    for (int i = 0; i < 20000; ++i)
    {
        std::u16string text(random() % 20, u'\0');
        for (char16_t& unit : text)
        {
            unit = kPool[random() % std::size(kPool)];
        }
        std::string stored(StoredSize(text), '\0');
        EXPECT_EQ(stored.data() + stored.size(), EncodeStored(text, stored.data()));
        std::u16string back(StoredUnits(stored), u'\0');
        EXPECT_EQ(back.data() + back.size(), DecodeStored(stored, back.data()));
        EXPECT_EQ(text, back);
        EXPECT_TRUE(StoredEquals(stored, text));
        EXPECT_FALSE(StoredEquals(stored, text + u"x"));
        EXPECT_FALSE(StoredEquals(stored + "x", text));
    }
}

TEST(Utf8Test, LenientDecodingNeverFailsAndKeepsGoodText)
{
    std::mt19937 random(5);
    for (int i = 0; i < 20000; ++i)
    {
        std::string bytes(random() % 12, '\0');
        for (char& byte : bytes)
        {
            byte = static_cast<char>(random() % 3 == 0 ? random() % 128 : 128 + random() % 128);
        }
        std::u16string strict;
        std::u16string lenient;
        DecodeLenient(bytes, lenient);
        if (Decode(bytes, strict))
        {
            EXPECT_EQ(strict, lenient);
            EXPECT_EQ(bytes, Encoded(strict, 0));
        }
    }
}

}  // namespace
}  // namespace zorvex_api::utf8
