#include "transport/URIResolverDefault.h"

#include <algorithm>
#include <vector>

namespace zorvex_api::internal
{

namespace
{

// The innermost last; not owned. Unlocked: a multi-threaded session has no default resolver.
std::vector<URIResolver*>& Stack()
{
    static auto* const stack = new std::vector<URIResolver*>;
    return *stack;
}

}  // namespace

URIResolver* GetDefaultResolver()
{
    return Stack().empty() ? nullptr : Stack().back();
}

void SetDefaultResolver(URIResolver* resolver)
{
    Stack().clear();
    if (resolver != nullptr)
    {
        Stack().push_back(resolver);
    }
}

void PushDefaultResolver(URIResolver* resolver)
{
    Stack().push_back(resolver);
}

void PopDefaultResolver(URIResolver* resolver)
{
    auto& stack = Stack();
    const auto last = std::find(stack.rbegin(), stack.rend(), resolver);
    if (last != stack.rend())
    {
        stack.erase(std::next(last).base());
    }
}

void ForgetDefaultResolver(URIResolver* resolver) noexcept
{
    std::erase(Stack(), resolver);
}

}  // namespace zorvex_api::internal
