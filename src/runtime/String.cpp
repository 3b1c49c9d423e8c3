#include "zorvex_api/String.h"

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <cwctype>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "runtime/Text.h"
#include "runtime/Utf8.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{

namespace
{

constexpr int kOutOfRange = 16;
constexpr int kInvalidArgument = 19;
constexpr int kUndecodable = 528;

enum Encoding
{
    kWide = 0,
    kLocal = 1,
    kUtf8 = 2
};

/// A text made by an edit starts in the record's own block; a longer one gets a block of its own.
unsigned short* InlineText(StringImpl* impl)
{
    return reinterpret_cast<unsigned short*>(impl + 1);
}

size_t TextBytes(size_t units)
{
    return (units + 1) * sizeof(unsigned short);
}

int CheckedLength(size_t units)
{
    if (units > static_cast<size_t>(INT_MAX - 1))
    {
        throw std::bad_alloc();
    }
    return static_cast<int>(units);
}

/// A record with room for `units` units, the text not yet written.
StringImpl* NewImpl(size_t units)
{
    const int length = CheckedLength(units);
    void* const place = Allocator::allocate(sizeof(StringImpl) + TextBytes(units));
    auto* const impl = ::new (place) StringImpl{{}, nullptr, length, length, nullptr, 1, 0};
    impl->wide = InlineText(impl);
    impl->wide[units] = 0;
    return impl;
}

/// A record for a text, or null for an empty one.
StringImpl* NewImpl(TextView text)
{
    if (text.empty())
    {
        return nullptr;
    }
    StringImpl* const impl = NewImpl(text.size());
    std::memcpy(impl->wide, text.data(), text.size() * sizeof(unsigned short));
    return impl;
}

StringImpl* NewBorrowing(const char16_t* text)
{
    void* const place = Allocator::allocate(sizeof(StringImpl));
    return ::new (place)
        StringImpl{{}, const_cast<unsigned short*>(AsUnits(text)), 0, 0, nullptr, 1, 0};
}

StringImpl* NewFromLocal(const char* text, size_t length)
{
    std::u16string units;
    utf8::DecodeLenient(std::string_view(text, strnlen(text, length)), units);
    return NewImpl(units);
}

void FreeNarrow(StringImpl& impl)
{
    if (impl.narrow != nullptr)
    {
        Allocator::deallocate(impl.narrow);
        impl.narrow = nullptr;
    }
}

void FreeText(StringImpl& impl)
{
    if (impl.capacity != 0 && impl.wide != InlineText(&impl))
    {
        Allocator::deallocate(impl.wide);
    }
}

/// Makes room for `capacity` units in a block of the text's own, keeping the first `length`.
void MoveText(StringImpl& impl, size_t length, size_t capacity)
{
    auto* const text = static_cast<unsigned short*>(Allocator::allocate(TextBytes(capacity)));
    std::memcpy(text, impl.wide, length * sizeof(unsigned short));
    text[length] = 0;
    FreeText(impl);
    impl.wide = text;
    impl.capacity = CheckedLength(capacity);
    impl.length = static_cast<int>(length);
}

char* MakeNarrow(TextView text)
{
    auto* const bytes = static_cast<char*>(Allocator::allocate(utf8::EncodedSize(text) + 1));
    *utf8::Encode(text, utf8::kPlain, bytes) = '\0';
    return bytes;
}

TextView ViewOf(const char16_t* text)
{
    return text != nullptr ? TextView(text) : TextView(u"", 0);
}

/// -1, 0 or 1: units against bytes by their signed values, the terminators included.
int CompareWithNarrow(TextView left, const char* right)
{
    const char* bytes = right != nullptr ? right : "";
    for (size_t i = 0;; ++i)
    {
        const int unit = i < left.size() ? left[i] : 0;
        const int byte = static_cast<signed char>(bytes[i]);
        if (unit != byte || unit == 0)
        {
            return (unit > byte) - (unit < byte);
        }
    }
}

bool DecodeStrict(const char* data, int length, std::u16string& units)
{
    return utf8::Decode(std::string_view(data, static_cast<size_t>(length)), units);
}

/// `text` once through UTF-8, with the narrow form ready.
void RebuildThroughUtf8(TextView text, unsigned flags, String& out)
{
    std::string bytes;
    utf8::AppendEncoded(text, flags, bytes);
    std::u16string units(utf8::StoredUnits(bytes), u'\0');
    utf8::DecodeStored(bytes, units.data());
    out = ToString(units);
    static_cast<void>(static_cast<const char*>(out));
}

template <class Left, class Right>
String Sum(const Left& left, const Right& right)
{
    String sum(left);
    sum += right;
    return sum;
}

}  // namespace

String::String(const String& other) : Allocator(), m_impl(NewImpl(View(other))) {}

String::String(const char* text)
    : m_impl(text != nullptr ? NewFromLocal(text, std::strlen(text)) : nullptr)
{
}

String::String(const char* text, int length)
    : m_impl(text != nullptr && length > 0 ? NewFromLocal(text, static_cast<size_t>(length))
                                           : nullptr)
{
}

String::String(const unsigned short* text) : m_impl(NewImpl(ViewOf(AsChar16(text)))) {}
String::String(const char16_t* text) : m_impl(NewImpl(ViewOf(text))) {}
String::String(const unsigned short* text, int length) : String(AsChar16(text), length) {}

String::String(const char16_t* text, int length) : m_impl(nullptr)
{
    if (length < -1)
    {
        throw Exception(kOutOfRange);
    }
    Set(text, length);
}

String::String(unsigned short unit, int count) : m_impl(nullptr)
{
    if (count > 0)
    {
        m_impl = NewImpl(std::u16string(static_cast<size_t>(count), static_cast<char16_t>(unit)));
    }
}

String::String(const void* data, int length, int encoding) : m_impl(nullptr)
{
    if (length < -1)
    {
        throw Exception(kOutOfRange);
    }
    if (encoding != kWide && encoding != kLocal && encoding != kUtf8)
    {
        throw Exception(kInvalidArgument);
    }
    if (Set(data, length, encoding) == 0)
    {
        throw Exception(kUndecodable);
    }
}

String& String::operator=(const String& other)
{
    if (this != &other)
    {
        Adopt(NewImpl(View(other)));
    }
    return *this;
}

String& String::operator=(String&& other) noexcept
{
    if (this != &other)
    {
        Adopt(std::exchange(other.m_impl, nullptr));
    }
    return *this;
}

String& String::operator=(const char* text)
{
    Adopt(text != nullptr ? NewFromLocal(text, std::strlen(text)) : nullptr);
    return *this;
}

String& String::operator=(const unsigned short* text)
{
    return *this = AsChar16(text);
}

String& String::operator=(const char16_t* text)
{
    Adopt(NewImpl(ViewOf(text)));
    return *this;
}

char16_t* StringAccess::NewText(String& empty, size_t units)
{
    empty.m_impl = NewImpl(units);
    return const_cast<char16_t*>(AsChar16(empty.m_impl->wide));
}

void String::Drop() noexcept
{
    FreeNarrow(*m_impl);
    FreeText(*m_impl);
    Allocator::deallocate(m_impl);
    m_impl = nullptr;
}

/// Replaces the record. The new one was made before, so its text may come from the old one.
void String::Adopt(StringImpl* impl) noexcept
{
    if (m_impl != nullptr)
    {
        Drop();
    }
    m_impl = impl;
}

int String::Set(const char* text, int length)
{
    if (length < 0 && m_impl != nullptr)
    {
        return 0;
    }
    Adopt(text != nullptr && length > 0 ? NewFromLocal(text, static_cast<size_t>(length))
                                        : nullptr);
    return 1;
}

int String::Set(const unsigned short* text, int length)
{
    return Set(AsChar16(text), length);
}

int String::Set(const char16_t* text, int length)
{
    if (length < -1 || (length < 0 && m_impl != nullptr))
    {
        return 0;
    }
    if (text == nullptr || length == 0)
    {
        Empty();
        return 1;
    }
    Adopt(length == -1 ? NewBorrowing(text) : NewImpl(TextView(text, static_cast<size_t>(length))));
    return 1;
}

int String::Set(const void* data, int length, int encoding)
{
    switch (encoding)
    {
        case kWide:
            return Set(static_cast<const char16_t*>(data), length);
        case kLocal:
            return Set(static_cast<const char*>(data), length);
        case kUtf8:
            return SetUTF8(static_cast<const char*>(data), length);
        default:
            return 0;
    }
}

int String::SetUTF8(const char* text)
{
    return SetUTF8(text, text != nullptr ? CheckedLength(std::strlen(text)) : 0);
}

int String::SetUTF8(const char* text, int length)
{
    if (length < 0 && m_impl != nullptr)
    {
        return 0;
    }
    std::u16string units;
    if (text != nullptr && length > 0 && !DecodeStrict(text, length, units))
    {
        return 0;
    }
    String made = ToString(units);
    static_cast<void>(static_cast<const char*>(made));  // keeps the bytes as the narrow form
    *this = std::move(made);
    return 1;
}

String::operator const unsigned short*() const
{
    return m_impl != nullptr ? m_impl->wide : nullptr;
}

const unsigned short* String::GetData() const
{
    return m_impl != nullptr ? m_impl->wide : nullptr;
}

unsigned short* String::GetData()
{
    if (m_impl == nullptr)
    {
        return nullptr;
    }
    StringImpl& impl = Editable();
    impl.exposed = 1;
    return impl.wide;
}

String::operator const char*() const
{
    const TextView text = View(*this);
    if (text.empty())
    {
        return nullptr;
    }
    if (m_impl->exposed != 0)
    {
        FreeNarrow(*m_impl);
    }
    // Several threads may ask for the form of a shared constant at once: the first one stays.
    char* narrow = __atomic_load_n(&m_impl->narrow, __ATOMIC_ACQUIRE);
    if (narrow != nullptr)
    {
        return narrow;
    }
    char* const made = MakeNarrow(text);
    if (!__atomic_compare_exchange_n(&m_impl->narrow, &narrow, made, false, __ATOMIC_ACQ_REL,
                                     __ATOMIC_ACQUIRE))
    {
        Allocator::deallocate(made);
        return narrow;
    }
    return made;
}

unsigned short& String::operator[](int index)
{
    if (m_impl == nullptr)
    {
        throw Exception(kOutOfRange);
    }
    StringImpl& impl = Editable();
    impl.exposed = 1;
    impl.length = 0;  // the caller may write a terminator
    return impl.wide[index];
}

const unsigned short& String::operator[](int index) const
{
    if (m_impl == nullptr)
    {
        throw Exception(kOutOfRange);
    }
    return m_impl->wide[index];
}

int String::GetLength() const
{
    return static_cast<int>(View(*this).size());
}
int String::IsEmpty() const
{
    // Without counting a borrowed text; one with a known length isn't empty.
    const bool empty =
        m_impl == nullptr || m_impl->wide == nullptr ||
        (__atomic_load_n(&m_impl->length, __ATOMIC_RELAXED) == 0 && m_impl->wide[0] == 0);
    return empty ? 1 : 0;
}

int String::Compare(const String& other) const
{
    if (m_impl == nullptr || other.m_impl == nullptr)
    {
        return m_impl == nullptr ? -other.GetLength() : GetLength();
    }
    const TextView left = View(*this);
    const TextView right = View(other);
    for (size_t i = 0;; ++i)
    {
        const int leftUnit = i < left.size() ? left[i] : 0;
        const int rightUnit = i < right.size() ? right[i] : 0;
        if (leftUnit != rightUnit || i >= left.size() || i >= right.size())
        {
            return leftUnit - rightUnit;
        }
    }
}

int String::Compare(const char* other) const
{
    return CompareWithNarrow(View(*this), other);
}

bool String::operator<(const String& other) const
{
    return View(*this) < View(other);
}

int String::Find(const String& text) const
{
    return static_cast<int>(View(*this).find(View(text)));
}

int String::FindLast(const String& text) const
{
    return static_cast<int>(View(*this).rfind(View(text)));
}

int String::StartsWith(const String& text) const
{
    const TextView start = View(text);
    return View(*this).substr(0, start.size()) == start ? 1 : 0;
}

int String::EndsWith(const String& text) const
{
    const TextView own = View(*this);
    const TextView end = View(text);
    return own.size() >= end.size() && own.substr(own.size() - end.size()) == end ? 1 : 0;
}

/// The record, owned and free of what depends on the present text. There must be one.
StringImpl& String::Editable()
{
    StringImpl& impl = *m_impl;
    if (impl.capacity == 0)
    {
        const size_t length = View(*this).size();
        MoveText(impl, length, length != 0 ? length : 1);
    }
    FreeNarrow(impl);
    impl.exposed = 0;
    return impl;
}

void String::Append(const char16_t* text, size_t length)
{
    if (length == 0)
    {
        return;
    }
    const TextView own = View(*this);
    if (own.empty())
    {
        Adopt(NewImpl(TextView(text, length)));
        return;
    }
    const size_t total = own.size() + length;
    if (m_impl->capacity != 0 && total <= static_cast<size_t>(m_impl->capacity))
    {
        StringImpl& impl = Editable();
        std::memmove(impl.wide + own.size(), text, length * sizeof(unsigned short));
        impl.wide[total] = 0;
        impl.length = static_cast<int>(total);
        return;
    }
    // `text` may be part of the old text, which stays until it has been copied. Long texts that
    // grow again and again get room to spare.
    const size_t capacity = total < 256 ? total : total + total / 2;
    StringImpl* const made = NewImpl(capacity);
    std::memcpy(made->wide, own.data(), own.size() * sizeof(unsigned short));
    std::memcpy(made->wide + own.size(), text, length * sizeof(unsigned short));
    made->wide[total] = 0;
    made->length = static_cast<int>(total);
    Adopt(made);
}

String& String::operator+=(const String& text)
{
    const TextView added = View(text);
    Append(added.data(), added.size());
    return *this;
}

String& String::operator+=(unsigned short unit)
{
    const auto added = static_cast<char16_t>(unit);
    Append(&added, unit != 0 ? 1 : 0);
    return *this;
}

String& String::operator+=(const char* text)
{
    std::u16string units;
    utf8::DecodeLenient(text != nullptr ? text : "", units);
    Append(units.data(), units.size());
    return *this;
}

String& String::operator+=(const char16_t* text)
{
    const TextView added = ViewOf(text);
    Append(added.data(), added.size());
    return *this;
}

void String::Empty() noexcept
{
    Adopt(nullptr);
}

int String::Replace(const String& from, const String& to)
{
    const TextView own = View(*this);
    const TextView search = View(from);
    if (search.empty())
    {
        return 0;
    }
    std::u16string text;
    int count = 0;
    size_t start = 0;
    for (size_t hit = own.find(search); hit != TextView::npos; hit = own.find(search, start))
    {
        text.append(own, start, hit - start).append(View(to));
        start = hit + search.size();
        ++count;
    }
    if (count != 0)
    {
        text.append(own, start);
        Adopt(NewImpl(text));
    }
    return count;
}

int String::Replace(const char* from, const char* to)
{
    return Replace(String(from), String(to));
}

int String::Replace(unsigned short from, unsigned short to)
{
    const TextView own = View(*this);
    if (own.find(static_cast<char16_t>(from)) == TextView::npos)
    {
        return 0;
    }
    StringImpl& impl = Editable();
    int count = 0;
    for (size_t i = 0, size = own.size(); i < size; ++i)
    {
        if (impl.wide[i] == from)
        {
            impl.wide[i] = to;
            ++count;
        }
    }
    return count;
}

String String::Substring(int start) const
{
    const int length = GetLength();
    if (start < 0 || start > length)
    {
        throw Exception(kOutOfRange);
    }
    return Substring(start, length - start);
}

String String::Substring(int start, int count) const
{
    const TextView own = View(*this);
    const auto length = static_cast<long long>(own.size());
    if (start < 0 || count < 0 || static_cast<long long>(start) + count > length)
    {
        throw Exception(kOutOfRange);
    }
    return ToString(own.substr(static_cast<size_t>(start), static_cast<size_t>(count)));
}

String String::LowerCase() const
{
    std::u16string text(View(*this));
    for (char16_t& unit : text)
    {
        unit = std::iswupper(unit) != 0 ? static_cast<char16_t>(std::towlower(unit)) : unit;
    }
    return ToString(text);
}

String String::UpperCase() const
{
    std::u16string text(View(*this));
    for (char16_t& unit : text)
    {
        unit = std::iswlower(unit) != 0 ? static_cast<char16_t>(std::towupper(unit)) : unit;
    }
    return ToString(text);
}

void String::Split(const String& separators, Array<String>& out) const
{
    if (m_impl == nullptr)
    {
        out.RemoveAll();
        return;
    }
    // A copy: `separators` or this text may stand in `out`.
    const std::u16string own(View(*this));
    const std::u16string marks(View(separators));
    size_t start = own.find_first_not_of(marks);
    while (start != std::u16string::npos)
    {
        const size_t end = own.find_first_of(marks, start);
        out.Add(ToString(TextView(own).substr(start, end - start)));
        start = own.find_first_not_of(marks, end);
    }
}

String String::GetLastToken(const String& separators) const
{
    const TextView own = View(*this);
    const size_t last = own.find_last_of(View(separators));
    return ToString(last == TextView::npos ? own : own.substr(last + 1));
}

String String::Format(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    char small[512];
    const int length = std::vsnprintf(small, sizeof small, format, arguments);
    va_end(arguments);
    String text;
    if (length >= static_cast<int>(sizeof small))
    {
        std::vector<char> large(static_cast<size_t>(length) + 1);
        std::vsnprintf(large.data(), large.size(), format, again);
        text = large.data();
    }
    else if (length > 0)
    {
        text = small;
    }
    va_end(again);
    return text;
}

String String::GetUTF8String() const
{
    String out;
    GetUTF8String(out);
    return out;
}

void String::GetUTF8String(String& out) const
{
    RebuildThroughUtf8(View(*this), utf8::kPlain, out);
}

String String::GetUTF8XMLString() const
{
    String out;
    GetUTF8XMLString(out);
    return out;
}

void String::GetUTF8XMLString(String& out) const
{
    RebuildThroughUtf8(View(*this), utf8::kEscape, out);
}

const String& String::EmptyString()
{
    static const String empty;
    return empty;
}

bool operator==(const String& left, const String& right)
{
    return View(left) == View(right);
}

bool operator==(const String& left, const char* right)
{
    return CompareWithNarrow(View(left), right) == 0;
}

bool operator==(const String& left, const unsigned short* right)
{
    return View(left) == ViewOf(AsChar16(right));
}

bool operator==(const String& left, const char16_t* right)
{
    return View(left) == ViewOf(right);
}

String operator+(const String& left, const String& right)
{
    return Sum(left, right);
}

String operator+(const String& left, const char* right)
{
    return Sum(left, right);
}

String operator+(const char* left, const String& right)
{
    return Sum(left, right);
}

String operator+(const String& left, const char16_t* right)
{
    return Sum(left, right);
}

String operator+(const char16_t* left, const String& right)
{
    return Sum(left, right);
}

}  // namespace zorvex_api
