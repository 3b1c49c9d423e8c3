#pragma once

namespace zorvex_api::internal
{

/// Whether the stack of this thread has room for one more level of a recursion that runs a parser
/// or a writer at each level. True where the size of the stack isn't known.
bool HasStackSpace() noexcept;

}  // namespace zorvex_api::internal
