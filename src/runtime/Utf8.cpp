#include "runtime/Utf8.h"

#include <cstdint>
#include <cstring>

namespace zorvex_api::utf8
{

namespace
{

using Byte = unsigned char;

constexpr bool IsHigh(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLow(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr bool IsTail(Byte byte)
{
    return (byte & 0xC0) == 0x80;
}

/// Number of bytes below 128 at the start, found eight at a time.
size_t AsciiRun(const Byte* bytes, const Byte* end)
{
    const Byte* p = bytes;
    while (end - p >= 8)
    {
        uint64_t word;
        std::memcpy(&word, p, 8);
        if ((word & 0x8080808080808080ULL) != 0)
        {
            break;
        }
        p += 8;
    }
    if (end - p < 8 && end - bytes >= 8)
    {
        uint64_t word;
        std::memcpy(&word, end - 8, 8);  // its first bytes are ASCII, as seen
        if ((word & 0x8080808080808080ULL) == 0)
        {
            return static_cast<size_t>(end - bytes);
        }
    }
    while (p != end && *p < 0x80)
    {
        ++p;
    }
    return static_cast<size_t>(p - bytes);
}

enum class Surrogates
{
    kRefused,
    kKept
};

/// Reads one character; returns its length in bytes, or 0 for an ill-formed sequence.
template <Surrogates kSurrogates>
int ReadOne(const Byte* p, const Byte* end, char32_t& value)
{
    const Byte lead = p[0];
    const ptrdiff_t left = end - p;
    if (lead < 0x80)
    {
        value = lead;
        return 1;
    }
    if (lead >= 0xC2 && lead <= 0xDF && left >= 2 && IsTail(p[1]))
    {
        value = static_cast<char32_t>((lead & 0x1F) << 6 | (p[1] & 0x3F));
        return 2;
    }
    if ((lead & 0xF0) == 0xE0 && left >= 3 && IsTail(p[1]) && IsTail(p[2]))
    {
        value = static_cast<char32_t>((lead & 0x0F) << 12 | (p[1] & 0x3F) << 6 | (p[2] & 0x3F));
        const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
        const bool good = value >= 0x800 && (kSurrogates == Surrogates::kKept || !surrogate);
        return good ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4 && left >= 4 && IsTail(p[1]) && IsTail(p[2]) && IsTail(p[3]))
    {
        value = static_cast<char32_t>((lead & 0x07) << 18 | (p[1] & 0x3F) << 12 |
                                      (p[2] & 0x3F) << 6 | (p[3] & 0x3F));
        return value >= 0x10000 && value <= 0x10FFFF ? 4 : 0;
    }
    return 0;
}

char16_t* WriteUnits(char32_t value, char16_t* out)
{
    if (value < 0x10000)
    {
        *out++ = static_cast<char16_t>(value);
        return out;
    }
    *out++ = static_cast<char16_t>(0xD7C0 + (value >> 10));
    *out++ = static_cast<char16_t>(0xDC00 + (value & 0x3FF));
    return out;
}

/// Eight bytes to eight units at once.
void WidenEight(const Byte* from, char16_t* out)
{
    using Bytes = std::uint8_t __attribute__((vector_size(8)));
    using Units = std::uint16_t __attribute__((vector_size(16)));
    Bytes bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    const Units units = __builtin_convertvector(bytes, Units);
    std::memcpy(out, &units, sizeof units);
}

char16_t* Widen(const Byte* from, size_t count, char16_t* out)
{
    if (count >= 8)
    {
        for (size_t i = 0; i + 8 < count; i += 8)
        {
            WidenEight(from + i, out + i);
        }
        WidenEight(from + count - 8, out + count - 8);  // may repeat some
        return out + count;
    }
    for (size_t i = 0; i < count; ++i)
    {
        out[i] = from[i];
    }
    return out + count;
}

/// What a unit below 128 becomes when it is escaped, or an empty text.
std::string_view Escape(char16_t unit, unsigned flags)
{
    if ((flags & kEscape) == 0)
    {
        return {};
    }
    switch (unit)
    {
        case u'&':
            return "&amp;";
        case u'<':
            return "&lt;";
        case u'"':
            return "&quot;";
        case u'>':
            return (flags & kEscapeGreater) != 0 ? "&gt;" : std::string_view();
        case u'\t':
            return (flags & kEscapeBlanks) != 0 ? "&#x9;" : std::string_view();
        case u'\n':
            return (flags & kEscapeBlanks) != 0 ? "&#xA;" : std::string_view();
        case u'\r':
            return (flags & kEscapeBlanks) != 0 ? "&#xD;" : std::string_view();
        default:
            return {};
    }
}

enum class LoneHigh
{
    kDropped,
    kKept
};

/// Goes through a text and calls, for each piece, one of `ascii(unit)`, `two(unit)`,
/// `three(unit)` and `pair(value)`.
template <LoneHigh kLoneHigh, class Sink>
void ForEachPiece(TextView text, Sink&& sink)
{
    const size_t size = text.size();
    for (size_t i = 0; i < size; ++i)
    {
        const char16_t unit = text[i];
        if (unit < 0x80)
        {
            sink.Ascii(unit);
        }
        else if (unit < 0x800)
        {
            sink.Two(unit);
        }
        else if (!IsHigh(unit))
        {
            sink.Three(unit);
        }
        else if (i + 1 < size && IsLow(text[i + 1]))
        {
            ++i;
            sink.Pair(0x10000 + (static_cast<char32_t>(unit - 0xD800) << 10) + (text[i] - 0xDC00));
        }
        else if (kLoneHigh == LoneHigh::kKept)
        {
            sink.Three(unit);
        }
    }
}

struct SizeSink
{
    unsigned flags;
    size_t size = 0;

    void Ascii(char16_t unit)
    {
        const std::string_view escape = Escape(unit, flags);
        size += escape.empty() ? 1 : escape.size();
    }
    void Two(char16_t) { size += 2; }
    void Three(char16_t) { size += 3; }
    void Pair(char32_t) { size += 4; }
};

struct WriteSink
{
    unsigned flags;
    char* out;

    void Put(unsigned byte) { *out++ = static_cast<char>(byte); }
    void Ascii(char16_t unit)
    {
        const std::string_view escape = Escape(unit, flags);
        if (escape.empty())
        {
            Put(unit);
            return;
        }
        std::memcpy(out, escape.data(), escape.size());
        out += escape.size();
    }
    void Two(char16_t unit)
    {
        Put(0xC0u | unit >> 6);
        Put(0x80u | (unit & 0x3Fu));
    }
    void Three(char16_t unit)
    {
        Put(0xE0u | unit >> 12);
        Put(0x80u | (unit >> 6 & 0x3Fu));
        Put(0x80u | (unit & 0x3Fu));
    }
    void Pair(char32_t value)
    {
        Put(0xF0u | value >> 18);
        Put(0x80u | (value >> 12 & 0x3Fu));
        Put(0x80u | (value >> 6 & 0x3Fu));
        Put(0x80u | (value & 0x3Fu));
    }
};

const Byte* Begin(std::string_view bytes)
{
    return reinterpret_cast<const Byte*>(bytes.data());
}

}  // namespace

size_t EncodedSize(TextView text, unsigned flags) noexcept
{
    SizeSink sink{flags};
    ForEachPiece<LoneHigh::kDropped>(text, sink);
    return sink.size;
}

char* Encode(TextView text, unsigned flags, char* out) noexcept
{
    WriteSink sink{flags, out};
    ForEachPiece<LoneHigh::kDropped>(text, sink);
    return sink.out;
}

void AppendEncoded(TextView text, unsigned flags, std::string& out)
{
    const size_t start = out.size();
    out.resize(start + EncodedSize(text, flags));
    Encode(text, flags, out.data() + start);
}

bool Decode(std::string_view bytes, std::u16string& out)
{
    if (FindMalformed(bytes) != bytes.size())
    {
        return false;
    }
    const size_t start = out.size();
    out.resize(start + StoredUnits(bytes));
    DecodeStored(bytes, out.data() + start);
    return true;
}

void DecodeLenient(std::string_view bytes, std::u16string& out)
{
    const size_t start = out.size();
    out.resize(start + bytes.size());  // a unit takes at least one byte
    char16_t* to = out.data() + start;
    const Byte* p = Begin(bytes);
    const Byte* const end = p + bytes.size();
    while (p != end)
    {
        const size_t run = AsciiRun(p, end);
        to = Widen(p, run, to);
        p += run;
        if (p == end)
        {
            break;
        }
        char32_t value = *p;
        const int length = ReadOne<Surrogates::kRefused>(p, end, value);
        to = WriteUnits(length != 0 ? value : *p, to);
        p += length != 0 ? length : 1;
    }
    out.resize(static_cast<size_t>(to - out.data()));
}

size_t FindMalformed(std::string_view bytes) noexcept
{
    const Byte* const begin = Begin(bytes);
    const Byte* const end = begin + bytes.size();
    const Byte* p = begin;
    while (p != end)
    {
        p += AsciiRun(p, end);
        if (p == end)
        {
            break;
        }
        char32_t value = 0;
        const int length = ReadOne<Surrogates::kRefused>(p, end, value);
        if (length == 0)
        {
            break;
        }
        p += length;
    }
    return static_cast<size_t>(p - begin);
}

size_t StoredSize(TextView text) noexcept
{
    SizeSink sink{kPlain};
    ForEachPiece<LoneHigh::kKept>(text, sink);
    return sink.size;
}

char* EncodeStored(TextView text, char* out) noexcept
{
    WriteSink sink{kPlain, out};
    ForEachPiece<LoneHigh::kKept>(text, sink);
    return sink.out;
}

size_t StoredUnits(std::string_view stored) noexcept
{
    size_t units = 0;
    const Byte* p = Begin(stored);
    const Byte* const end = p + stored.size();
    while (p != end)
    {
        const size_t run = AsciiRun(p, end);
        units += run;
        p += run;
        for (; p != end && *p >= 0x80; ++p)
        {
            // Each character counts by its first byte; four-byte ones are two units.
            units += IsTail(*p) ? 0 : (*p >= 0xF0 ? 2 : 1);
        }
    }
    return units;
}

char16_t* DecodeStored(std::string_view stored, char16_t* out) noexcept
{
    const Byte* p = Begin(stored);
    const Byte* const end = p + stored.size();
    while (p != end)
    {
        const size_t run = AsciiRun(p, end);
        out = Widen(p, run, out);
        p += run;
        char32_t value = 0;
        while (p != end && *p >= 0x80)
        {
            const int length = ReadOne<Surrogates::kKept>(p, end, value);
            if (length == 0)
            {
                return out;  // not a stored text
            }
            out = WriteUnits(value, out);
            p += length;
        }
    }
    return out;
}

bool StoredEquals(std::string_view stored, TextView text) noexcept
{
    const Byte* p = Begin(stored);
    const Byte* const end = p + stored.size();
    size_t i = 0;
    while (p != end)
    {
        char32_t value = 0;
        const int length = ReadOne<Surrogates::kKept>(p, end, value);
        char16_t units[2];
        const auto count = static_cast<size_t>(WriteUnits(value, units) - units);
        if (length == 0 || text.substr(i, count) != TextView(units, count))
        {
            return false;
        }
        p += length;
        i += count;
    }
    return i == text.size();
}

}  // namespace zorvex_api::utf8
