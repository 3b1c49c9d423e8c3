#include "zorvex_api/TraverseContext.h"

#include "objectmodel/TraverseContextImpl.h"

namespace zorvex_api
{

TraverseContext::TraverseContext() : m_impl(new TraverseContextImpl) {}

TraverseContext::~TraverseContext()
{
    delete m_impl;
}

int TraverseContext::GetFollowURI() const
{
    return m_impl->followURI;
}

void TraverseContext::SetFollowURI(int follow)
{
    m_impl->followURI = follow;
}

TraverseContextImpl* TraverseContext::GetImplementation() const
{
    return m_impl;
}

}  // namespace zorvex_api
