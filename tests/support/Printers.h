#pragma once

/// How GoogleTest shows the library's values when an expectation fails, and what tests match.

#include <iosfwd>
#include <string>
#include <vector>

#include "zorvex_api/Array.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

void PrintTo(const String& text, std::ostream* out);
void PrintTo(const Result& result, std::ostream* out);

}  // namespace zorvex_api

namespace zorvex_test
{

/// A text in UTF-8; empty for an empty one.
std::string Utf8(const zorvex_api::String& text);

/// The entries of a Result, each as "SEVERITY code: message".
std::vector<std::string> Messages(const zorvex_api::Result& result);

/// The texts of an array, in UTF-8.
std::vector<std::string> Texts(const zorvex_api::Array<zorvex_api::String>& texts);

}  // namespace zorvex_test
