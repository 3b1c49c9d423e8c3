#include "document/ParseLimits.h"

#include <charconv>

#include "runtime/Text.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{

namespace
{

constexpr char16_t kEntityOption[] = u"adapters/ZORVEX/import/entity_expansion_limit";
constexpr char16_t kDepthOption[] = u"adapters/ZORVEX/import/max_depth";
constexpr char16_t kValueOption[] = u"adapters/ZORVEX/import/max_value";

/// A limit that isn't a decimal number above 0 leaves the default in force.
void ReadLimit(Configuration& options, const char16_t* path, std::uint64_t& limit)
{
    String text;
    if (options.Get(path, text) == nullptr || text.IsEmpty())
    {
        return;
    }
    const std::string digits = ToUtf8(text);
    const char* const end = digits.data() + digits.size();
    std::uint64_t number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (error == std::errc() && stop == end && number > 0)
    {
        limit = number;
    }
}

[[noreturn]] void Fail(const char16_t* option, std::uint64_t limit)
{
    throw Exception(
        4, String::Format("Limit exceeded: \"%s\" (%llu)", ToUtf8(TextView(option)).c_str(),
                          static_cast<unsigned long long>(limit)));
}

}  // namespace

ParseLimits ParseLimits::FromOptions(Configuration* options)
{
    ParseLimits limits;
    if (options != nullptr)
    {
        ReadLimit(*options, kEntityOption, limits.entityExpansions);
        ReadLimit(*options, kDepthOption, limits.depth);
        ReadLimit(*options, kValueOption, limits.valueBytes);
    }
    return limits;
}

void ParseLimits::FailEntityExpansions() const
{
    Fail(kEntityOption, entityExpansions);
}

void ParseLimits::FailDepth() const
{
    Fail(kDepthOption, depth);
}

void ParseLimits::FailValue() const
{
    Fail(kValueOption, valueBytes);
}

void ParseLimits::FailAmplification()
{
    throw Exception(4,
                    u"Limit exceeded: the entities of the document expand to more than 100 "
                    u"times its size");
}

}  // namespace zorvex_api
