#pragma once

#include <cstddef>
#include <cstdint>

namespace zorvex_api
{

class Configuration;

/// How much a document may ask of the reader; a document is hostile until proven otherwise.
///
/// Each limit is an option under "adapters/ZORVEX/import/". Passing one ends the parse with error
/// 4 and a text that names the option and its value.
struct ParseLimits
{
    std::uint64_t entityExpansions = 10000;           // "entity_expansion_limit"
    std::uint64_t depth = 1024;                       // "max_depth": nesting of elements
    std::uint64_t valueBytes = 256ULL * 1024 * 1024;  // "max_value": one text or attribute value

    /// Text delivered may be this many times the input read, beyond the allowance.
    static constexpr std::uint64_t kAmplification = 100;
    static constexpr std::uint64_t kAmplificationAllowance = 8ULL * 1024 * 1024;

    static ParseLimits FromOptions(Configuration* options);

    /// Each raises an Exception of code 4.
    [[noreturn]] void FailEntityExpansions() const;
    [[noreturn]] void FailDepth() const;
    [[noreturn]] void FailValue() const;
    [[noreturn]] static void FailAmplification();
};

}  // namespace zorvex_api
