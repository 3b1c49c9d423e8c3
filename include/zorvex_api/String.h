#pragma once

#include <cstddef>
#include <initializer_list>
#include <string_view>
#include <type_traits>

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"

namespace zorvex_api
{

template <class T>
class Array;
struct StringAccess;
struct StringImpl;

/// The library's text: 16-bit code units, with a narrow form in UTF-8 made on demand.
///
/// A value: copying copies the text. Units aren't checked; a surrogate pair is two units.
/// Reading a String whose text doesn't change is safe from several threads.
///
/// Where an operation takes a length: 0 is the empty text, -1 (wide form only) borrows the
/// caller's buffer, which must outlive the String and is copied at the first change.
class ZORVEX_API String : public Allocator
{
    class Nothing
    {
        Nothing();
    };

public:
    String() noexcept : m_impl(nullptr) {}
    String(std::nullptr_t) noexcept : m_impl(nullptr) {}
    String(const String& other);
    String(String&& other) noexcept : m_impl(other.m_impl) { other.m_impl = nullptr; }
    /// Text in UTF-8; a byte that isn't part of a well-formed sequence becomes the unit of the
    /// same value. Null gives the empty text.
    String(const char* text);
    /// As above, from at most `length` bytes; a length below 1 gives the empty text.
    String(const char* text, int length);
    /// Copies up to the terminator.
    String(const unsigned short* text);
    String(const char16_t* text);
    /// Copies `length` units; -1 borrows `text`; 0 gives the empty text.
    /// Raises code 16 for a length below -1.
    String(const unsigned short* text, int length);
    String(const char16_t* text, int length);
    /// `count` copies of `unit`; a count below 1 gives the empty text.
    String(unsigned short unit, int count);
    /// Text in the given encoding: 0 wide units (length in units, as above), 1 local code page,
    /// 2 UTF-8. Raises code 16 for a length below -1, 19 for an unknown encoding, 528 for UTF-8
    /// that doesn't decode.
    String(const void* data, int length, int encoding);
    ~String()
    {
        if (m_impl != nullptr)
        {
            Drop();
        }
    }

    String& operator=(const String& other);
    String& operator=(String&& other) noexcept;
    String& operator=(const char* text);
    String& operator=(const unsigned short* text);
    String& operator=(const char16_t* text);
    String& operator=(std::nullptr_t) noexcept
    {
        Empty();
        return *this;
    }
    /// `text = {}` empties the text; no other list can be given.
    String& operator=(std::initializer_list<Nothing>) noexcept { return *this = nullptr; }

    /// The `Set` operations replace the content and return 1. They return 0 and leave the text
    /// as it was for a negative length when there is content, for a wide length below -1, for an
    /// unknown encoding and for UTF-8 that doesn't decode. A length of -1 borrows a wide text.
    int Set(const char* text, int length);
    int Set(const unsigned short* text, int length);
    int Set(const char16_t* text, int length);
    int Set(const void* data, int length, int encoding);
    int SetUTF8(const char* text);
    int SetUTF8(const char* text, int length);

    /// The wide text with its terminator; null for an empty String. It lives until the next
    /// change of this String.
    operator const unsigned short*() const;
    /// As above, for writing: a borrowed text is copied first.
    unsigned short* GetData();
    const unsigned short* GetData() const;
    /// The text in UTF-8, null for an empty String. It lives until the next change of this
    /// String. A high surrogate that no low one follows is left out.
    operator const char*() const;

    /// A unit, with no range check. Raises code 16 on a String without content.
    unsigned short& operator[](int index);
    const unsigned short& operator[](int index) const;

    /// Number of 16-bit units.
    int GetLength() const;
    int IsEmpty() const;

    /// The difference of the first unequal units, the terminator counting as 0. When only one
    /// side has content, the length of that one, negative if it is the other.
    int Compare(const String& other) const;
    /// -1, 0 or 1. A `char` counts with its signed value, so this serves ASCII only.
    int Compare(const char* other) const;
    bool operator<(const String& other) const;

    /// Index of the first occurrence, or -1.
    int Find(const String& text) const;
    /// Index of the last occurrence, overlapping ones included, or -1.
    int FindLast(const String& text) const;
    /// Non-zero for a text that begins, or ends, with `text`.
    int StartsWith(const String& text) const;
    int EndsWith(const String& text) const;

    String& operator+=(const String& text);
    String& operator+=(unsigned short unit);
    String& operator+=(const char* text);
    String& operator+=(const char16_t* text);
    void Empty() noexcept;
    /// Replaces every occurrence from left to right, never looking at inserted text again.
    /// Returns the number of replacements.
    int Replace(const String& from, const String& to);
    int Replace(const char* from, const char* to);
    int Replace(const String& from, const char* to) { return Replace(from, String(to)); }
    int Replace(const char* from, const String& to) { return Replace(String(from), to); }
    int Replace(unsigned short from, unsigned short to);

    /// The text from `start` on, or `count` units of it. Raises code 16 for a negative argument
    /// and for one beyond the end.
    String Substring(int start) const;
    String Substring(int start, int count) const;
    String LowerCase() const;
    String UpperCase() const;
    /// Appends the tokens between separators to `out`. Every unit of `separators` is one; empty
    /// tokens don't count. An empty receiver clears `out`.
    void Split(const String& separators, Array<String>& out) const;
    /// What follows the last separator, or the whole text if there is none.
    String GetLastToken(const String& separators) const;

    /// C `printf` semantics; the result is read as UTF-8.
    static String Format(const char* format, ...) ZORVEX_PRINTF(1, 2);

    /// The same text with its narrow form ready.
    String GetUTF8String() const;
    void GetUTF8String(String& out) const;
    /// The text with "&", "<" and the double quote escaped for XML.
    String GetUTF8XMLString() const;
    void GetUTF8XMLString(String& out) const;

    /// A constant empty String.
    static const String& EmptyString();

    StringImpl* GetImplementation() const { return m_impl; }

private:
    friend struct StringAccess;

    void Drop() noexcept;
    void Adopt(StringImpl* impl) noexcept;
    StringImpl& Editable();
    void Append(const char16_t* text, size_t length);

    StringImpl* m_impl;  // owned; null for an empty text
};

ZORVEX_API bool operator==(const String& left, const String& right);
ZORVEX_API bool operator==(const String& left, const char* right);
ZORVEX_API bool operator==(const String& left, const unsigned short* right);
ZORVEX_API bool operator==(const String& left, const char16_t* right);
inline bool operator==(const char* left, const String& right)
{
    return right == left;
}
inline bool operator==(const unsigned short* left, const String& right)
{
    return right == left;
}
inline bool operator==(const char16_t* left, const String& right)
{
    return right == left;
}
inline bool operator!=(const String& left, const String& right)
{
    return !(left == right);
}
inline bool operator!=(const String& left, const char* right)
{
    return !(left == right);
}
inline bool operator!=(const String& left, const unsigned short* right)
{
    return !(left == right);
}
inline bool operator!=(const String& left, const char16_t* right)
{
    return !(left == right);
}
inline bool operator!=(const char* left, const String& right)
{
    return !(right == left);
}
inline bool operator!=(const unsigned short* left, const String& right)
{
    return !(right == left);
}
inline bool operator!=(const char16_t* left, const String& right)
{
    return !(right == left);
}
inline bool operator==(const String& left, std::nullptr_t)
{
    return left.IsEmpty() != 0;
}
inline bool operator==(std::nullptr_t, const String& right)
{
    return right.IsEmpty() != 0;
}
inline bool operator!=(const String& left, std::nullptr_t)
{
    return left.IsEmpty() == 0;
}
inline bool operator!=(std::nullptr_t, const String& right)
{
    return right.IsEmpty() == 0;
}

namespace internal
{

inline bool Precedes(const String& left, const String& right)
{
    return left.operator<(right);
}
inline bool Precedes(const String& left, const char* right)
{
    return left.Compare(right) < 0;
}
inline bool Precedes(const char* left, const String& right)
{
    return right.Compare(left) > 0;
}

/// A String and something that converts to one, in either order.
template <class Left, class Right>
using IfTexts = std::enable_if_t<
    (std::is_same<Left, String>::value && std::is_convertible<const Right&, String>::value) ||
    (std::is_same<Right, String>::value && std::is_convertible<const Left&, String>::value)>;

}  // namespace internal

/// The order of units, also against narrow and wide text; narrow text counts as in `Compare`.
/// Without these the compiler would turn the String into a pointer and compare addresses.
template <class Left, class Right, class = internal::IfTexts<Left, Right>>
bool operator<(const Left& left, const Right& right)
{
    return internal::Precedes(left, right);
}
template <class Left, class Right, class = internal::IfTexts<Left, Right>>
bool operator>(const Left& left, const Right& right)
{
    return internal::Precedes(right, left);
}
template <class Left, class Right, class = internal::IfTexts<Left, Right>>
bool operator<=(const Left& left, const Right& right)
{
    return !internal::Precedes(right, left);
}
template <class Left, class Right, class = internal::IfTexts<Left, Right>>
bool operator>=(const Left& left, const Right& right)
{
    return !internal::Precedes(left, right);
}

ZORVEX_API String operator+(const String& left, const String& right);
ZORVEX_API String operator+(const String& left, const char* right);
ZORVEX_API String operator+(const char* left, const String& right);
ZORVEX_API String operator+(const String& left, const char16_t* right);
ZORVEX_API String operator+(const char16_t* left, const String& right);

}  // namespace zorvex_api
