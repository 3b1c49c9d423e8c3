#pragma once

#include <string>

#include "zorvex_api/FieldInfo.h"

namespace zorvex_cli
{

/// Says what the field expects when `text` is no value of it: what is no number, or the wrong
/// number of them, which the library would store as zeros. Empty when the text can be set, as any
/// text of a field that holds no numbers can.
std::string WhatIsExpected(const zorvex_api::FieldInfo& field, const std::string& text);

}  // namespace zorvex_cli
