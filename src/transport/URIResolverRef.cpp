#include "zorvex_api/URIResolverRef.h"

#include "runtime/SessionState.h"
#include "transport/PluginInstances.h"
#include "transport/PluginSlots.h"
#include "transport/URIResolverDefault.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_api
{

URIResolverRef::URIResolverRef(URIResolver* resolver)
    : m_resolver(resolver), m_ownsResolver(false), m_clearsDefault(false)
{
    const bool shared = !SessionState::Multithreading();
    if (m_resolver == nullptr)
    {
        int isNew = 0;
        m_resolver = internal::FindResolver(nullptr, isNew);
        m_ownsResolver = isNew != 0;
    }
    if (shared && internal::GetDefaultResolver() != m_resolver)
    {
        internal::PushDefaultResolver(m_resolver);
        m_clearsDefault = true;
    }
}

URIResolverRef::~URIResolverRef()
{
    if (m_clearsDefault)
    {
        internal::PopDefaultResolver(m_resolver);
    }
    if (m_ownsResolver)
    {
        internal::ReleaseInstance(internal::kResolverPlugin, m_resolver);
    }
}

URIResolver* URIResolverRef::GetURIResolver() const
{
    return m_resolver;
}

URIResolver* URIResolverRef::operator->() const
{
    return m_resolver;
}

}  // namespace zorvex_api
