#include "runtime/NumberText.h"

#include <locale.h>
#include <algorithm>
#include <array>
#include <bit>
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

constexpr double kPowersOfTen[] = {
    1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
};

/// The numbers that documents are full of: digits, perhaps a point, no exponent, and so few of them
/// that both the digits and the power of ten are doubles: then one division rounds correctly.
/// Length of the number; 0 leaves it to the general way.
size_t ParseShort(TextView text, double& value)
{
    constexpr size_t kMaxDigits = 15;
    const char16_t* const begin = text.data();
    const char16_t* const end = begin + text.size();
    const char16_t* at = begin;
    const bool negative = at != end && *at == u'-';
    at += negative ? 1 : 0;
    const char16_t* const first = at;
    uint64_t digits = 0;
    for (; at != end && IsDigit(*at); ++at)
    {
        digits = digits * 10 + (*at - u'0');
    }
    size_t count = static_cast<size_t>(at - first);
    size_t places = 0;
    if (count == 0)
    {
        return 0;
    }
    if (at != end && *at == u'.')
    {
        const char16_t* const fraction = ++at;
        for (; at != end && IsDigit(*at); ++at)
        {
            digits = digits * 10 + (*at - u'0');
        }
        places = static_cast<size_t>(at - fraction);
        count += places;
    }
    const char16_t next = at != end ? Lower(*at) : u'\0';
    if (count > kMaxDigits || next == u'e' || next == u'x')
    {
        return 0;
    }
    const auto whole = static_cast<double>(static_cast<int64_t>(digits));
    const double size = places != 0 ? whole / kPowersOfTen[places] : whole;
    value = negative ? -size : size;
    return static_cast<size_t>(at - begin);
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

namespace
{

__extension__ using Wide = unsigned __int128;

constexpr uint64_t kDigits16 = 10'000'000'000'000'000;  // the first number of more than 16 digits

/// The power of ten of the first digit, for 1e-4 <= value < 1e15. The doubles nearest to 1e-4 to
/// 1e-1 lie above these, so that comparing with them is exact.
int LeadingPower(double value)
{
    if (value < 1.0)
    {
        return value >= 1e-1 ? -1 : value >= 1e-2 ? -2 : value >= 1e-3 ? -3 : -4;
    }
    int power = 0;
    while (value >= kPowersOfTen[power + 1])
    {
        ++power;
    }
    return power;
}

/// The 16 digits of a value within LeadingPower's range, rounded half to even, with no step in
/// floating point: mantissa times a power of five fits in 128 bits, the rest is a shift.
uint64_t RoundTo16Digits(double value, int& power)
{
    constexpr auto kPowersOfFive = []
    {
        std::array<uint64_t, 20> powers{1};
        for (size_t i = 1; i < powers.size(); ++i)
        {
            powers[i] = powers[i - 1] * 5;
        }
        return powers;
    }();
    const auto bits = std::bit_cast<uint64_t>(value);
    const uint64_t mantissa = (bits & ((uint64_t{1} << 52) - 1)) | uint64_t{1} << 52;
    const int exponent = static_cast<int>(bits >> 52) - 1075;  // value = mantissa * 2^exponent
    const int places = 15 - power;                             // 1 to 19
    const int shift = -(exponent + places);  // of mantissa * 5^places, to the right
    const Wide product = static_cast<Wide>(mantissa) * kPowersOfFive[static_cast<size_t>(places)];
    if (shift <= 0)
    {
        return static_cast<uint64_t>(product << -shift);
    }
    auto digits = static_cast<uint64_t>(product >> shift);
    const Wide rest = product & ((Wide{1} << shift) - 1);
    const Wide half = Wide{1} << (shift - 1);
    digits += rest > half || (rest == half && (digits & 1) != 0) ? 1 : 0;
    if (digits == kDigits16)
    {
        digits /= 10;
        ++power;
    }
    return digits;
}

/// "%.16g" of a fraction whose first digit stands between 1e-4 and 1e14, as most do. `end` is
/// behind the last character; null leaves it to the general way.
char* FormatFraction(double value, char* out)
{
    const double size = std::fabs(value);
    if (!(size >= 1e-4 && size < 1e15))
    {
        return nullptr;
    }
    int power = LeadingPower(size);
    uint64_t digits = RoundTo16Digits(size, power);
    char text[16];
    for (int i = 16; i-- > 0; digits /= 10)
    {
        text[i] = static_cast<char>('0' + digits % 10);
    }
    int last = 15;
    while (last > 0 && text[last] == '0')
    {
        --last;
    }
    if (std::signbit(value))
    {
        *out++ = '-';
    }
    if (power < 0)
    {
        *out++ = '0';
        *out++ = '.';
        out = std::fill_n(out, -power - 1, '0');
        return std::copy_n(text, last + 1, out);
    }
    out = std::copy_n(text, power + 1, out);
    if (last > power)
    {
        *out++ = '.';
        out = std::copy_n(text + power + 1, last - power, out);
    }
    return out;
}

}  // namespace

size_t FormatDouble16g(double value, char* out)
{
    // Whole numbers of up to 15 digits are their own "%.16g" text, and by far the most frequent.
    constexpr double kWhole = 1e15;
    constexpr double kOneDigit = 10.0;
    if (value >= 0.0 && value < kOneDigit && !std::signbit(value))
    {
        const int digit = static_cast<int>(value);
        if (value == digit)
        {
            out[0] = static_cast<char>('0' + digit);
            out[1] = '\0';
            return 1;
        }
    }
    if (std::fabs(value) < kWhole && value == std::trunc(value) &&
        (value != 0.0 || !std::signbit(value)))
    {
        return Finish(out, std::to_chars(out, out + kMaxText - 1, static_cast<long long>(value)));
    }
    if (char* const end = FormatFraction(value, out))
    {
        *end = '\0';
        return static_cast<size_t>(end - out);
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
    double value = 0.0;
    if (const size_t used = ParseShort(rest, value))
    {
        return {value, rest.data() + used};
    }
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
