#pragma once

namespace zorvex_api
{

class URIResolver;

namespace internal
{

// The session's default resolver. Holders nest: the innermost one's resolver is the default, and
// what was the default before is it again when that holder ends.

URIResolver* GetDefaultResolver();
/// Replaces all that holders have set; null for none.
void SetDefaultResolver(URIResolver* resolver);
void PushDefaultResolver(URIResolver* resolver);
void PopDefaultResolver(URIResolver* resolver);
/// The resolver dies: it can't be the default any more.
void ForgetDefaultResolver(URIResolver* resolver) noexcept;

}  // namespace internal
}  // namespace zorvex_api
