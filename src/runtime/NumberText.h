#pragma once

/// Numbers to text and back, whatever the process's locale is.

#include <cstdint>
#include <string_view>

#include "runtime/Text.h"

namespace zorvex_api::number
{

/// Room for any text of the Format routines, terminator included.
inline constexpr size_t kMaxText = 40;

/// Writes the text of "%.16g" with a terminator; returns its length.
size_t FormatDouble16g(double value, char* out);
/// Writes the shortest text that reads back as the same value; returns its length.
size_t FormatDoubleShortest(double value, char* out);
/// Writes a decimal number with a terminator; returns its length.
size_t FormatInt(long long value, char* out);

String DoubleToString(double value);  ///< by FormatDouble16g
String IntToString(long long value);
void AppendDouble(double value, std::u16string& out);
void AppendInt(long long value, std::u16string& out);

struct ParsedDouble
{
    double value;         ///< 0 when there is no number
    const char16_t* end;  ///< behind the number; the start of the text when there is none
};

struct ParsedInt
{
    int32_t value;        ///< 0 when there is no number; the nearest limit on overflow
    const char16_t* end;  ///< behind the number; the start of the text when there is none
    bool overflow;        ///< the number doesn't fit in 32 bits
};

/// As `wcstod` in the C locale: leading white space, decimal and hexadecimal numbers, "inf",
/// "nan"; too large gives an infinity.
ParsedDouble ParseDouble(TextView text);
/// As `wcstol` with base 10.
ParsedInt ParseInt(TextView text);

/// White space of the C locale.
constexpr bool IsSpace(char16_t unit)
{
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

}  // namespace zorvex_api::number
