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

constexpr TextView kOption = u"adapters/ZORVEX/import/max_documents";
constexpr long kStandardLimit = 1000;

thread_local long t_depth = 0;
thread_local long t_limit = kStandardLimit;

/// A value that isn't a number above 0 leaves the standard.
long ReadLimit(Configuration* options)
{
    String value;
    if (options == nullptr || options->Get(ToString(kOption), value) == nullptr)
    {
        return kStandardLimit;
    }
    const long limit = std::strtol(ToUtf8(value).c_str(), nullptr, 10);
    return limit > 0 ? limit : kStandardLimit;
}

}  // namespace

LoadDepth::LoadDepth(Configuration* options)
{
    if (t_depth == 0)
    {
        t_limit = ReadLimit(options);
    }
    ++t_depth;
}

LoadDepth::~LoadDepth()
{
    --t_depth;
}

bool LoadDepth::Allows(const String& uri, Result& result) const
{
    if (t_depth <= t_limit && (t_depth == 1 || HasStackSpace()))
    {
        return true;
    }
    const std::string name = ToUtf8(uri);
    const std::string option = ToUtf8(kOption);
    if (t_depth > t_limit)
    {
        result.AddError(
            4, String::Format("Unable to load: \"%s\": a chain of more than %ld documents that "
                              "refer to each other (option \"%s\")",
                              name.c_str(), t_limit, option.c_str()));
        return false;
    }
    result.AddError(
        4,
        String::Format("Unable to load: \"%s\": the stack of this thread has no room for a chain "
                       "of more than %ld documents that refer to each other (option \"%s\" "
                       "allows %ld)",
                       name.c_str(), t_depth - 1, option.c_str(), t_limit));
    return false;
}

}  // namespace zorvex_api::internal
