#pragma once

#include <string>

#include "runtime/Text.h"

namespace zorvex_api
{

class ClassData;

/// The text of a `Transform` element: fewer numbers than the 16 of its matrix, by its "type".
///
/// Text and storage have one order: number k of the stored matrix is row k mod 4, column k div 4.
/// Writing is the exact inverse of reading.
namespace transform_text
{

enum class Kind
{
    General,      // all 16 numbers
    Rotation,     // "rotate", "general3": the 9 of the upper left block
    Translation,  // "translate": the 3 of the last column
    Scale,        // "scale": the reciprocal of the lower right entry
    Unknown,
};

/// Whether the object is of the class whose content follows these rules.
bool AppliesTo(ClassData& object);
/// By the attribute "type"; General when it isn't set, or is "unset".
Kind KindOf(ClassData& object);
Kind KindOf(TextView type);

enum class ReadResult
{
    Done,
    Nothing,  // white space only: `matrix` is as it was
    UnknownType,
    ZeroScale,
};
/// Reads the numbers of a text; those that are missing are the identity's.
ReadResult Read(Kind kind, TextView text, double (&matrix)[16]);

/// Whether the text of `kind` reads back as the matrix, but for the 16 digits of its numbers.
bool Expresses(Kind kind, const double* matrix);

/// Appends the text. An unknown kind writes all numbers, so that nothing is lost.
void Append(Kind kind, const double* matrix, std::string& out);

}  // namespace transform_text
}  // namespace zorvex_api
