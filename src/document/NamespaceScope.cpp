#include "document/NamespaceScope.h"

#include <algorithm>

#include "objectmodel/Namespace.h"
#include "runtime/NamespaceUris.h"

namespace zorvex_api
{

NamespaceScope::Name* NamespaceScope::Intern(TextView uri)
{
    for (Name& name : m_names)
    {
        if (name.view == uri)
        {
            return &name;
        }
    }
    Name& name = m_names.emplace_back();
    name.uri = ToString(uri);
    name.view = View(name.uri);
    name.known = Namespace::FindByUri(uri) != nullptr;
    name.isMain = Namespace::IsMain(uri);
    name.isSchemaInstance = uri == uris::kXmlSchemaInstance;
    return &name;
}

void NamespaceScope::BindOutside(TextView prefix, Name* name)
{
    Bind(prefix, name, 0);
}

void NamespaceScope::Bind(TextView prefix, Name* name, unsigned depth)
{
    m_bindings.push_back({std::u16string(prefix), name, depth});
    ++m_version;
}

NamespaceScope::Name* NamespaceScope::Find(TextView prefix) const
{
    const auto found = std::find_if(m_bindings.rbegin(), m_bindings.rend(),
                                    [prefix](const Binding& b) { return b.prefix == prefix; });
    if (found == m_bindings.rend() || found->name->view.empty())
    {
        return nullptr;
    }
    return found->name;
}

void NamespaceScope::RefreshKnown()
{
    for (Name& name : m_names)
    {
        name.known = Namespace::FindByUri(name.view) != nullptr;
    }
}

void NamespaceScope::Close(unsigned depth)
{
    while (!m_bindings.empty() && m_bindings.back().depth >= depth && depth > 0)
    {
        m_bindings.pop_back();
        ++m_version;
    }
}

}  // namespace zorvex_api
