#pragma once

/// Conversions between 16-bit text and UTF-8.

#include <cstddef>
#include <string>
#include <string_view>

#include "runtime/Text.h"

namespace zorvex_api::utf8
{

/// Flags of the encoder.
enum EncodeFlags : unsigned
{
    kPlain = 0,
    kEscape = 2,         ///< "&", "<" and the double quote become references
    kEscapeGreater = 4,  ///< with kEscape: ">" too
    kEscapeBlanks = 8    ///< with kEscape: tab, line feed and carriage return too
};

/// Number of bytes that `Encode` writes.
size_t EncodedSize(TextView text, unsigned flags = kPlain) noexcept;
/// Writes the UTF-8 form without a terminator and returns the end. The room must be
/// `EncodedSize` bytes. A high surrogate that no low one follows writes nothing; a low surrogate
/// alone takes three bytes.
char* Encode(TextView text, unsigned flags, char* out) noexcept;
void AppendEncoded(TextView text, unsigned flags, std::string& out);

/// Appends the text of well-formed UTF-8. False, with `out` as it was, for anything else: cut
/// sequences, overlong forms, surrogates, values above U+10FFFF.
bool Decode(std::string_view bytes, std::u16string& out);
/// Appends the text; a byte that isn't part of a well-formed sequence becomes the unit of the
/// same value.
void DecodeLenient(std::string_view bytes, std::u16string& out);
/// Offset of the first byte that isn't part of a well-formed sequence, or the size.
size_t FindMalformed(std::string_view bytes) noexcept;

/// Stored form of field text: as UTF-8, but a lone surrogate is kept, as three bytes, so that
/// nothing is lost between setting and reading a value.
size_t StoredSize(TextView text) noexcept;
char* EncodeStored(TextView text, char* out) noexcept;
/// Number of units of a stored text.
size_t StoredUnits(std::string_view stored) noexcept;
/// Writes exactly `StoredUnits` units and returns the end.
char16_t* DecodeStored(std::string_view stored, char16_t* out) noexcept;
bool StoredEquals(std::string_view stored, TextView text) noexcept;

}  // namespace zorvex_api::utf8
