#pragma once

#include <vector>

#include "objectmodel/FieldDescriptor.h"
#include "runtime/Text.h"

namespace zorvex_api
{

/// Lists of numbers in the text of an attribute.
namespace attribute_numbers
{

/// Whether the ints of a field are logical values, "true" or "false" in text.
bool IsLogical(const FieldDescriptor& field);

/// Calls `visit(token)` for each piece between the units of `separators`.
template <class Visit>
void ForEachToken(TextView text, TextView separators, Visit visit)
{
    size_t at = 0;
    while ((at = text.find_first_not_of(separators, at)) != TextView::npos)
    {
        size_t end = text.find_first_of(separators, at);
        end = end == TextView::npos ? text.size() : end;
        visit(text.substr(at, end - at));
        at = end;
    }
}

/// "false" is 0, anything else 1.
void ReadLogicals(TextView text, std::vector<int>& out);
/// All tokens between white space; false at the first that doesn't fit in 32 bits, with those
/// before it in `out`.
bool ReadInts(TextView text, std::vector<int>& out);
/// Up to the first text that is no number, one character past each.
void ReadDoubles(TextView text, std::vector<double>& out);

/// Exactly `count` values: an unreadable one is 0 and takes one character, a missing one is 0,
/// what is left over is ignored.
void ReadFixedLogicals(TextView text, int* out, int count);
/// False for a number that doesn't fit in 32 bits.
bool ReadFixedInts(TextView text, int* out, int count);
void ReadFixedDoubles(TextView text, double* out, int count);

/// The values of a field's default.
std::vector<int> DefaultInts(const FieldDescriptor& field);
std::vector<double> DefaultDoubles(const FieldDescriptor& field);

}  // namespace attribute_numbers
}  // namespace zorvex_api
