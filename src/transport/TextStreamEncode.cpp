/// The escapes and the document rules of TextStream.

#include <array>

#include "runtime/Utf8.h"
#include "transport/TextStream.h"

namespace zorvex_api
{

namespace
{

/// Why an ASCII character can need more than being copied.
enum SpecialKind : unsigned int
{
    kMarkup = 1,   // & < "
    kGreater = 2,  // >
    kBlanks = 4,   // tab, line feed, carriage return
    kReturn = 8,   // carriage return
    kControls = 16,
    kMultiByte = 32  // any byte of a sequence
};

constexpr std::array<unsigned char, 256> MakeKinds()
{
    std::array<unsigned char, 256> kinds{};
    for (unsigned int i = 0; i < 32; ++i)
    {
        kinds[i] = kControls;
    }
    kinds['\t'] = kBlanks;
    kinds['\n'] = kBlanks;
    kinds['\r'] = kBlanks | kReturn;
    kinds['&'] = kMarkup;
    kinds['<'] = kMarkup;
    kinds['"'] = kMarkup;
    kinds['>'] = kGreater;
    for (unsigned int i = 128; i < 256; ++i)
    {
        kinds[i] = kMultiByte;
    }
    return kinds;
}

constexpr std::array<unsigned char, 256> kKinds = MakeKinds();
constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

bool IsHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

bool IsLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

bool IsNonCharacter(std::uint32_t unit)
{
    return unit == 0xFFFE || unit == 0xFFFF;
}

bool IsTail(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// A sequence of UTF-8, or what stands in place of one.
struct Sequence
{
    std::size_t length;
    bool isCharacter;  // else malformed, or a surrogate on its own
    std::uint32_t value;
};

/// Reads at the start of `text`, which isn't ASCII.
Sequence ReadSequence(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    const Sequence malformed{1, false, lead};
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
    {
        return malformed;
    }
    std::uint32_t value = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i)
    {
        if (!IsTail(text[i]))
        {
            return malformed;
        }
        value = value << 6 | (static_cast<unsigned char>(text[i]) & 0x3Fu);
    }
    const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    if (overlong || value > 0x10FFFF)
    {
        return malformed;
    }
    return {length, value < 0xD800 || value > 0xDFFF, value};
}

/// Whether the ">" at `index` follows "]]".
template <class View>
bool EndsSection(View text, std::size_t index)
{
    return index >= 2 && text[index - 1] == ']' && text[index - 2] == ']';
}

}  // namespace

unsigned int TextStream::SpecialUnits(Place place) const
{
    unsigned int kinds = kMarkup;
    if (m_escapeGt)
    {
        kinds |= kGreater;
    }
    if (place == Place::kAttribute)
    {
        kinds |= kBlanks;
    }
    if (m_documentRules)
    {
        kinds |= place == Place::kText ? kControls | kGreater | kReturn : kControls;
    }
    return kinds;
}

void TextStream::AppendReplacement(Replacement kind, std::uint32_t unit, std::size_t index)
{
    Replaced& replaced = m_replaced[kind];
    if (!replaced.happened)
    {
        replaced = {true, unit, static_cast<int>(index)};
    }
    m_buffer.append(kind == kControl ? std::string_view(" ") : kReplacementCharacter);
}

/// Appends an ASCII unit that isn't to be copied; `endsSection` says that it stands behind "]]".
void TextStream::EncodeSpecial(unsigned int unit, bool endsSection, std::size_t index)
{
    switch (unit)
    {
        case '&':
            m_buffer.append("&amp;");
            return;
        case '<':
            m_buffer.append("&lt;");
            return;
        case '"':
            m_buffer.append("&quot;");
            return;
        case '>':
            m_buffer.append(m_escapeGt || endsSection ? "&gt;" : ">");
            return;
        case '\t':
            m_buffer.append("&#x9;");
            return;
        case '\n':
            m_buffer.append("&#xA;");
            return;
        case '\r':
            m_buffer.append("&#xD;");
            return;
        default:
            AppendReplacement(kControl, unit, index);
    }
}

void TextStream::EncodeText(TextView text, Place place)
{
    if (m_documentRules)
    {
        EncodeByRules(text, place);
        return;
    }
    unsigned int flags = utf8::kEscape;
    flags |= m_escapeGt ? utf8::kEscapeGreater : 0u;
    flags |= place == Place::kAttribute ? utf8::kEscapeBlanks : 0u;
    AppendEncoded(text, flags);
}

void TextStream::AppendEncoded(TextView text, unsigned int flags)
{
    m_encoded.clear();
    utf8::AppendEncoded(text, flags, m_encoded);
    m_buffer.append(m_encoded);
}

void TextStream::EncodeByRules(TextView text, Place place)
{
    const unsigned int special = SpecialUnits(place);
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const char16_t unit = text[i];
        if (unit < 0x80)
        {
            if ((kKinds[unit] & special) == 0)
            {
                m_buffer.push_back(static_cast<char>(unit));
            }
            else
            {
                EncodeSpecial(unit, EndsSection(text, i), i);
            }
        }
        else if (IsHighSurrogate(unit) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]))
        {
            AppendEncoded(text.substr(i, 2), utf8::kPlain);
            ++i;
        }
        else if (IsHighSurrogate(unit) || IsLowSurrogate(unit))
        {
            AppendReplacement(kLoneSurrogate, unit, i);
        }
        else if (IsNonCharacter(unit))
        {
            AppendReplacement(kNonCharacter, unit, i);
        }
        else if (unit < 0x800)
        {
            const char bytes[] = {static_cast<char>(0xC0 | unit >> 6),
                                  static_cast<char>(0x80 | (unit & 0x3F))};
            m_buffer.append({bytes, sizeof bytes});
        }
        else
        {
            const char bytes[] = {static_cast<char>(0xE0 | unit >> 12),
                                  static_cast<char>(0x80 | (unit >> 6 & 0x3F)),
                                  static_cast<char>(0x80 | (unit & 0x3F))};
            m_buffer.append({bytes, sizeof bytes});
        }
    }
}

void TextStream::EncodeUtf8(std::string_view text, Place place)
{
    bool happenedBefore[kReplacementKinds];
    for (int kind = 0; kind < kReplacementKinds; ++kind)
    {
        happenedBefore[kind] = m_replaced[kind].happened;
    }
    CopyUtf8(text, place);
    for (int kind = 0; kind < kReplacementKinds; ++kind)
    {
        Replaced& replaced = m_replaced[kind];
        if (replaced.happened && !happenedBefore[kind])
        {
            const auto byteIndex = static_cast<std::size_t>(replaced.index);
            replaced.index = static_cast<int>(utf8::StoredUnits(text.substr(0, byteIndex)));
        }
    }
}

/// Leaves the index of a new replacement in bytes.
void TextStream::CopyUtf8(std::string_view text, Place place)
{
    const unsigned int special = SpecialUnits(place) | kMultiByte;
    std::size_t copied = 0;  // what stands in front is in the buffer
    const auto copyUpTo = [&](std::size_t end)
    { m_buffer.append(text.substr(copied, end - copied)); };
    for (std::size_t i = 0; i < text.size();)
    {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((kKinds[byte] & special) == 0)
        {
            ++i;
            continue;
        }
        if (byte < 0x80)
        {
            copyUpTo(i);
            EncodeSpecial(byte, EndsSection(text, i), i);
            copied = ++i;
            continue;
        }
        const Sequence sequence = ReadSequence(text.substr(i));
        const bool isForbidden = m_documentRules && IsNonCharacter(sequence.value);
        if (sequence.isCharacter && !isForbidden)
        {
            i += sequence.length;
            continue;
        }
        copyUpTo(i);
        AppendReplacement(sequence.isCharacter ? kNonCharacter : kLoneSurrogate, sequence.value, i);
        i += sequence.length;
        copied = i;
    }
    copyUpTo(text.size());
}

}  // namespace zorvex_api
