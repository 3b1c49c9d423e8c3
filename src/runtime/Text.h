#pragma once

/// The one place where units of text change between `unsigned short`, `char16_t` and the XML
/// libraries' unit. The library builds with -fno-strict-aliasing, so that pointers may pass too.

#include <string>
#include <string_view>

#include "zorvex_api/String.h"

namespace zorvex_api
{

using TextView = std::u16string_view;

inline const char16_t* AsChar16(const unsigned short* units)
{
    return reinterpret_cast<const char16_t*>(units);
}

inline const unsigned short* AsUnits(const char16_t* text)
{
    return reinterpret_cast<const unsigned short*>(text);
}

/// The record behind a String. Null, a record with no wide text and one with an empty text are
/// the same to everyone but `String::Compare`.
struct StringImpl : Allocator
{
    unsigned short* wide;  // terminated
    int capacity;          // units without the terminator; 0: borrowed, never written nor freed
    int length;            // units; 0 with a text: not counted yet
    char* narrow;          // cached UTF-8 form, owned, or null
    int useCount;          // always 1
    int exposed;           // 1: a writable pointer was given out, the narrow form can't be kept
};

/// For those who write a new text straight into a String.
struct StringAccess
{
    /// Gives an empty String room for `units` units, more than 0, to be written at once.
    static char16_t* NewText(String& empty, size_t units);
};

namespace internal
{
/// Counts a borrowed text and remembers the length; safe from several threads.
int CountLength(StringImpl& impl) noexcept;
}  // namespace internal

/// The text of a String; never a null pointer. It lives until the String changes.
inline TextView View(const String& text)
{
    StringImpl* impl = text.GetImplementation();
    if (impl == nullptr || impl->wide == nullptr)
    {
        return TextView(u"", 0);
    }
    const int known = __atomic_load_n(&impl->length, __ATOMIC_RELAXED);
    const int length = known != 0 ? known : internal::CountLength(*impl);
    return TextView(AsChar16(impl->wide), static_cast<size_t>(length));
}

inline bool Equals(const String& left, TextView right)
{
    return View(left) == right;
}

String ToString(TextView text);
/// A String that borrows a literal or other constant text; its length is known from the start,
/// so that reading it never writes.
String BorrowConstant(TextView constant);

/// Narrow form; a high surrogate that no low one follows is left out.
std::string ToUtf8(TextView text);
inline std::string ToUtf8(const String& text)
{
    return ToUtf8(View(text));
}
/// A byte that isn't part of a well-formed sequence becomes the unit of the same value.
String FromUtf8(std::string_view text);

/// ASCII only, for names that the formats fix.
TextView Trim(TextView text);
bool EqualsIgnoringAsciiCase(TextView left, TextView right);

}  // namespace zorvex_api
