#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"

namespace zorvex_api
{

class URIResolver;

/// Holds a resolver for the length of a scope, so that the loads in it share what they have loaded.
///
/// In a session that isn't multi-threaded the resolver is the session's default meanwhile.
class ZORVEX_API URIResolverRef : public Allocator
{
public:
    /// Uses `resolver`, which isn't owned and must outlive the scope. With null: the session's
    /// default, or else a new one that lives as long as this holder.
    explicit URIResolverRef(URIResolver* resolver = nullptr);
    ~URIResolverRef();

    URIResolverRef(const URIResolverRef&) = delete;
    URIResolverRef& operator=(const URIResolverRef&) = delete;

    /// The resolver, never null.
    URIResolver* GetURIResolver() const;
    URIResolver* operator->() const;

private:
    URIResolver* m_resolver;
    bool m_ownsResolver;
    bool m_clearsDefault;
};

}  // namespace zorvex_api
