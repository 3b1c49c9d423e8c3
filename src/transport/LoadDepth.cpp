#include "transport/LoadDepth.h"

#include <cstdlib>

#include "runtime/StackSpace.h"
#include "runtime/Text.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Result.h"

namespace zorvex_api::internal
{

namespace
{

constexpr const char* kDepthOption = "adapters/ZORVEX/import/max_documents";
constexpr long kStandardDepth = 1000;
// Documents that lead to each other by ever new names make a tree instead of a chain.
constexpr const char* kCountOption = "adapters/ZORVEX/import/max_all_documents";
constexpr long kStandardCount = 100000;

thread_local long t_depth = 0;
thread_local long t_depthLimit = kStandardDepth;
thread_local long t_count = 0;  // all documents of the outermost load so far
thread_local long t_countLimit = kStandardCount;

/// A value that isn't a number above 0 leaves the standard.
long ReadLimit(Configuration* options, const char* option, long standard)
{
    String value;
    if (options == nullptr || options->Get(option, value) == nullptr)
    {
        return standard;
    }
    const long limit = std::strtol(ToUtf8(value).c_str(), nullptr, 10);
    return limit > 0 ? limit : standard;
}

}  // namespace

LoadDepth::LoadDepth(Configuration* options)
{
    if (t_depth == 0)
    {
        t_depthLimit = ReadLimit(options, kDepthOption, kStandardDepth);
        t_countLimit = ReadLimit(options, kCountOption, kStandardCount);
        t_count = 0;
    }
    ++t_depth;
    ++t_count;
}

LoadDepth::~LoadDepth()
{
    --t_depth;
}

bool LoadDepth::Allows(const String& uri, Result& result) const
{
    const bool fits = t_depth <= t_depthLimit && t_count <= t_countLimit;
    if (fits && (t_depth == 1 || HasStackSpace()))
    {
        return true;
    }
    const std::string name = ToUtf8(uri);
    if (t_depth > t_depthLimit)
    {
        result.AddError(
            4, String::Format("Unable to load: \"%s\": a chain of more than %ld documents that "
                              "refer to each other (option \"%s\")",
                              name.c_str(), t_depthLimit, kDepthOption));
        return false;
    }
    if (t_count > t_countLimit)
    {
        result.AddError(4, String::Format("Unable to load: \"%s\": more than %ld documents in one "
                                          "load (option \"%s\")",
                                          name.c_str(), t_countLimit, kCountOption));
        return false;
    }
    result.AddError(
        4,
        String::Format("Unable to load: \"%s\": the stack of this thread has no room for a chain "
                       "of more than %ld documents that refer to each other (option \"%s\" "
                       "allows %ld)",
                       name.c_str(), t_depth - 1, kDepthOption, t_depthLimit));
    return false;
}

}  // namespace zorvex_api::internal
