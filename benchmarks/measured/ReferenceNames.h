#pragma once

#include <string_view>

namespace zorvex_bench
{

/// Whether an attribute of this name holds references, as "partRef" and "instanceRefs".
inline bool HoldsReferences(std::string_view name)
{
    return name.ends_with("Ref") || name.ends_with("Refs");
}

/// Calls `use` with each id that the text of references names, without its "#".
template <class Use>
void ForEachId(std::string_view text, Use use)
{
    while (!text.empty())
    {
        const std::size_t end = text.find(' ');
        std::string_view id = text.substr(0, end);
        if (id.starts_with('#'))
        {
            id.remove_prefix(1);
        }
        if (!id.empty())
        {
            use(id);
        }
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
    }
}

}  // namespace zorvex_bench
