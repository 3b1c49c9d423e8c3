#include "runtime/NumberText.h"

#include <locale.h>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <string>

namespace zorvex_api::number
{

namespace
{

constexpr bool IsDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

constexpr bool IsHexDigit(char16_t unit)
{
    return IsDigit(unit) || (unit >= u'a' && unit <= u'f') || (unit >= u'A' && unit <= u'F');
}

constexpr char16_t Lower(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

/// Walks over the longest prefix that is a number, as the C library defines it.
class Scanner
{
public:
    explicit Scanner(TextView text) : m_text(text) {}

    /// Length of the number, sign included; 0 for none. `plain` is set for a decimal one.
    size_t Scan(bool& plain)
    {
        Sign();
        if (Word(u"infinity") || Word(u"inf") || Nan() || Hexadecimal())
        {
            plain = false;
            return m_at;
        }
        plain = true;
        return Digits(IsDigit, u'e') ? m_at : 0;
    }

private:
    char16_t Peek(size_t ahead = 0) const
    {
        return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : u'\0';
    }

    void Sign() { m_at += Peek() == u'+' || Peek() == u'-' ? 1 : 0; }

    bool Word(TextView word)
    {
        for (size_t i = 0; i < word.size(); ++i)
        {
            if (Lower(Peek(i)) != word[i])
            {
                return false;
            }
        }
        m_at += word.size();
        return true;
    }

    bool Nan()
    {
        if (!Word(u"nan"))
        {
            return false;
        }
        if (Peek() == u'(')
        {
            size_t i = 1;
            while (IsDigit(Peek(i)) || (Lower(Peek(i)) >= u'a' && Lower(Peek(i)) <= u'z') ||
                   Peek(i) == u'_')
            {
                ++i;
            }
            m_at += Peek(i) == u')' ? i + 1 : 0;
        }
        return true;
    }

    bool Hexadecimal()
    {
        const size_t start = m_at;
        if (Peek() != u'0' || Lower(Peek(1)) != u'x')
        {
            return false;
        }
        m_at += 2;
        if (Digits(IsHexDigit, u'p'))
        {
            return true;
        }
        m_at = start;  // the "0" alone is the number
        return false;
    }

    bool Digits(bool (*isDigit)(char16_t), char16_t exponent)
    {
        const size_t whole = Run(isDigit);
        size_t fraction = 0;
        if (Peek() == u'.' && (whole != 0 || isDigit(Peek(1))))
        {
            ++m_at;
            fraction = Run(isDigit);
        }
        if (whole + fraction == 0)
        {
            return false;
        }
        if (Lower(Peek()) == exponent)
        {
            const size_t sign = Peek(1) == u'+' || Peek(1) == u'-' ? 1 : 0;
            if (IsDigit(Peek(1 + sign)))
            {
                m_at += 1 + sign;
                Run(IsDigit);
            }
        }
        return true;
    }

    size_t Run(bool (*isDigit)(char16_t))
    {
        const size_t start = m_at;
        while (isDigit(Peek()))
        {
            ++m_at;
        }
        return m_at - start;
    }

    TextView m_text;
    size_t m_at = 0;
};

size_t SkipSpace(TextView text)
{
    size_t i = 0;
    while (i < text.size() && IsSpace(text[i]))
    {
        ++i;
    }
    return i;
}

/// The C library's own reading, for what is rare: limits, infinities, hexadecimal numbers.
double ByCLibrary(const char* text)
{
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text, nullptr, cLocale);
}

double Convert(const char* begin, size_t length, bool plain)
{
    double value = 0.0;
    const char* first = *begin == '+' ? begin + 1 : begin;
    if (plain && std::from_chars(first, begin + length, value).ec == std::errc())
    {
        return value;
    }
    return ByCLibrary(begin);
}

size_t Finish(char* out, const std::to_chars_result& result)
{
    *result.ptr = '\0';
    return static_cast<size_t>(result.ptr - out);
}

void AppendAscii(const char* text, size_t length, std::u16string& out)
{
    out.append(text, text + length);
}

}  // namespace

size_t FormatDouble16g(double value, char* out)
{
    // Whole numbers of up to 15 digits are their own "%.16g" text, and by far the most frequent.
    constexpr double kWhole = 1e15;
    if (std::fabs(value) < kWhole && value == std::trunc(value) &&
        (value != 0.0 || !std::signbit(value)))
    {
        return Finish(out, std::to_chars(out, out + kMaxText - 1, static_cast<long long>(value)));
    }
    return Finish(out,
                  std::to_chars(out, out + kMaxText - 1, value, std::chars_format::general, 16));
}

size_t FormatDoubleShortest(double value, char* out)
{
    return Finish(out, std::to_chars(out, out + kMaxText - 1, value));
}

size_t FormatInt(long long value, char* out)
{
    return Finish(out, std::to_chars(out, out + kMaxText - 1, value));
}

String DoubleToString(double value)
{
    std::u16string text;
    AppendDouble(value, text);
    return ToString(text);
}

String IntToString(long long value)
{
    std::u16string text;
    AppendInt(value, text);
    return ToString(text);
}

void AppendDouble(double value, std::u16string& out)
{
    char text[kMaxText];
    AppendAscii(text, FormatDouble16g(value, text), out);
}

void AppendInt(long long value, std::u16string& out)
{
    char text[kMaxText];
    AppendAscii(text, FormatInt(value, text), out);
}

ParsedDouble ParseDouble(TextView text)
{
    const TextView rest = text.substr(SkipSpace(text));
    bool plain = true;
    const size_t length = Scanner(rest).Scan(plain);
    if (length == 0)
    {
        return {0.0, text.data()};
    }
    char small[64];
    std::string large;
    char* bytes = small;
    if (length >= sizeof small)
    {
        large.resize(length);
        bytes = large.data();
    }
    for (size_t i = 0; i < length; ++i)
    {
        bytes[i] = static_cast<char>(rest[i]);
    }
    bytes[length] = '\0';
    return {Convert(bytes, length, plain), rest.data() + length};
}

ParsedInt ParseInt(TextView text)
{
    size_t i = SkipSpace(text);
    const bool negative = i < text.size() && text[i] == u'-';
    i += i < text.size() && (text[i] == u'-' || text[i] == u'+') ? 1 : 0;
    const size_t first = i;
    const int64_t limit = negative ? -static_cast<int64_t>(INT32_MIN) : INT32_MAX;
    int64_t value = 0;
    bool overflow = false;
    for (; i < text.size() && IsDigit(text[i]); ++i)
    {
        value = value * 10 + (text[i] - u'0');
        if (value > limit)
        {
            overflow = true;
            value = limit;
        }
    }
    if (i == first)
    {
        return {0, text.data(), false};
    }
    return {static_cast<int32_t>(negative ? -value : value), text.data() + i, overflow};
}

}  // namespace zorvex_api::number
