#pragma once

#include <string>

#include "Model.h"

namespace schemagen
{

/// The text with its first letter in upper case.
std::string UpperFirst(std::string text);
/// An accessor's name for a reference field: without a final "Ref" or "Refs", upper case first.
std::string Stem(const std::string& fieldName);
/// "es" after s, x and ch, "ies" for a final y, else "s". A word that is a plural already stays.
std::string Plural(const std::string& name);

/// The C++ name of a class, qualified when it isn't one of `code`. Null gives "IdObject".
std::string ClassText(const Class* target, const std::string& code);
std::string EnumText(const Enumeration& target, const std::string& code);

/// A field in a few words: "double[3], required, default \"1.0\"".
std::string Describe(const Field& field);

/// A C++ literal of 16-bit text, or of bytes. Texts are ASCII.
std::string WideLiteral(const std::string& text);
std::string Literal(const std::string& text);

}  // namespace schemagen
