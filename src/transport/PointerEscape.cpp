#include <optional>
#include <string>

#include "transport/PointerImpl.h"
#include "zorvex_api/Pointer.h"

namespace zorvex_api
{

namespace
{

constexpr std::uint32_t kBlank = 1;
constexpr std::uint32_t kHash = 2;
constexpr std::uint32_t kPercent = 4;
constexpr std::uint32_t kByStructure = 8;

/// Appends `text` with each unit of `units` as its escape of the same place in `escapes`.
void AppendEscaped(TextView text, TextView units, const TextView* escapes, std::u16string& out)
{
    for (const char16_t unit : text)
    {
        const std::size_t place = units.find(unit);
        if (place == TextView::npos)
        {
            out.push_back(unit);
        }
        else
        {
            out.append(escapes[place]);
        }
    }
}

void AppendEscaped(TextView text, std::uint32_t mode, std::u16string& out)
{
    for (const char16_t unit : text)
    {
        if (unit == u'%' && (mode & kPercent))
        {
            out.append(u"%25");
        }
        else if (unit == u' ' && (mode & kBlank))
        {
            out.append(u"%20");
        }
        else if (unit == u'#' && (mode & kHash))
        {
            out.append(u"%23");
        }
        else
        {
            out.push_back(unit);
        }
    }
}

/// Keeps what divides the parts, and escapes it inside them.
void AppendEscapedParts(TextView text, std::u16string& out)
{
    static constexpr TextView kQueryEscapes[] = {u"%25", u"%2f", u"%3f", u"%3a", u"%40",
                                                 u"%2c", u"%24", u"%23", u"%20"};
    const internal::PointerParts parts = internal::SplitPointerText(text, false);
    AppendEscaped(parts.location, kPercent | kHash | kBlank, out);
    if (parts.hasQuery)
    {
        out.append(u"?");
        AppendEscaped(parts.query, u"%/?:@,$# ", kQueryEscapes, out);
    }
    if (parts.hasFragment)
    {
        out.append(u"#");
        AppendEscaped(parts.fragment, kPercent | kHash | kBlank, out);
    }
}

std::optional<char16_t> HexDigit(char16_t unit)
{
    if (unit >= u'0' && unit <= u'9')
    {
        return static_cast<char16_t>(unit - u'0');
    }
    const auto lower = static_cast<char16_t>(unit | 0x20);
    if (lower >= u'a' && lower <= u'f')
    {
        return static_cast<char16_t>(lower - u'a' + 10);
    }
    return std::nullopt;
}

/// The value of the digits behind a "%"; nothing when a digit is none or the value would end the
/// text. One digit at the end of the text is the higher one.
std::optional<char16_t> UnitOf(TextView digits)
{
    const std::optional<char16_t> high = digits.empty() ? std::nullopt : HexDigit(digits.front());
    const std::optional<char16_t> low = digits.size() < 2 ? char16_t{0} : HexDigit(digits[1]);
    if (!high || !low || *high * 16 + *low == 0)
    {
        return std::nullopt;
    }
    return static_cast<char16_t>(*high * 16 + *low);
}

void AppendUnescaped(TextView text, std::u16string& out)
{
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const TextView digits = text[i] == u'%' ? text.substr(i + 1, 2) : TextView();
        if (const std::optional<char16_t> unit = UnitOf(digits))
        {
            out.push_back(*unit);
            i += digits.size();
        }
        else
        {
            out.push_back(text[i]);
        }
    }
}

}  // namespace

int Pointer::EscapeString(const String& in, String& out, std::uint32_t mode)
{
    std::u16string escaped;
    if (mode & kByStructure)
    {
        AppendEscapedParts(View(in), escaped);
    }
    else
    {
        AppendEscaped(View(in), mode, escaped);
    }
    out = ToString(escaped);
    return 1;
}

int Pointer::UnescapeString(const String& in, String& out, std::uint32_t mode)
{
    if (mode & kByStructure)
    {
        std::u16string unescaped;
        AppendUnescaped(View(in), unescaped);
        out = ToString(unescaped);
        return 1;
    }
    String text(in);
    if (mode & kBlank)
    {
        text.Replace("%20", " ");
    }
    if (mode & kHash)
    {
        text.Replace("%23", "#");
    }
    if (mode & kPercent)
    {
        text.Replace("%25", "%");
    }
    out = text;
    return 1;
}

}  // namespace zorvex_api
