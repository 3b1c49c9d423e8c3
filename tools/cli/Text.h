#pragma once

#include <string>

#include "zorvex_api/String.h"

namespace zorvex_cli
{

/// The text as UTF-8, empty for an empty String.
std::string ToUtf8(const zorvex_api::String& text);

/// UTF-8 text of a command line as a String. Bytes that are no UTF-8 stay single characters.
zorvex_api::String FromUtf8(const std::string& text);

/// `text` fit for one line of a terminal: control characters become blanks.
std::string OneLine(const std::string& text);

}  // namespace zorvex_cli
