#pragma once

#include <string>

#include "zorvex_api/Result.h"

namespace zorvex_cli
{

/// What the command's process gives back.
enum ExitCode
{
    kGood = 0,
    kFindings = 1,  ///< findings, or a Result that isn't Ok
    kUsage = 2      ///< the command line makes no sense
};

/// Writes the entries of `result` to standard error, one a line, as `severity code: text`.
void Report(const zorvex_api::Result& result);

/// Writes one line of the same form.
void Report(zorvex_api::ErrorSeverity severity, int code, const std::string& text);

/// The word for a severity, as "warning".
const char* SeverityName(zorvex_api::ErrorSeverity severity);

/// The number of entries of `result` of this severity or a graver one.
int Count(const zorvex_api::Result& result, zorvex_api::ErrorSeverity least);

}  // namespace zorvex_cli
