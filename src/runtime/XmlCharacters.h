#pragma once

#include "runtime/Text.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{

/// Checks a text for characters that XML forbids: a unit below 32 that is no tab, line feed or
/// carriage return. The Result has code 520 for the first one found.
/// It doesn't check surrogates, nor U+FFFE and U+FFFF.
Result CheckXmlCharacters(TextView text);

}  // namespace zorvex_api
