#include "document/NamespaceScope.h"

#include "objectmodel/Namespace.h"
#include "runtime/NamespaceUris.h"

namespace zorvex_api
{

NamespaceScope::Name* NamespaceScope::Intern(TextView uri)
{
    const auto found = m_nameByUri.find(uri);
    if (found != m_nameByUri.end())
    {
        return found->second;
    }
    Name& name = m_names.emplace_back();
    name.uri = ToString(uri);
    name.view = View(name.uri);
    name.known = Namespace::FindByUri(uri) != nullptr;
    name.isMain = Namespace::IsMain(uri);
    name.isSchemaInstance = uri == uris::kXmlSchemaInstance;
    m_nameByUri.emplace(name.view, &name);
    return &name;
}

void NamespaceScope::BindOutside(TextView prefix, Name* name)
{
    Bind(prefix, name, 0);
}

void NamespaceScope::Bind(TextView prefix, Name* name, unsigned depth)
{
    Prefix* record = nullptr;
    const auto found = m_prefixByText.find(prefix);
    if (found != m_prefixByText.end())
    {
        record = found->second;
    }
    else
    {
        record = &m_prefixes.emplace_back(Prefix{std::u16string(prefix), {}});
        m_prefixByText.emplace(record->text, record);
    }
    record->names.push_back(name);
    m_bindings.push_back({record, depth});
    ++m_version;
}

NamespaceScope::Name* NamespaceScope::Find(TextView prefix) const
{
    const auto found = m_prefixByText.find(prefix);
    if (found == m_prefixByText.end() || found->second->names.empty())
    {
        return nullptr;
    }
    Name* name = found->second->names.back();
    return name->view.empty() ? nullptr : name;
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
        m_bindings.back().prefix->names.pop_back();
        m_bindings.pop_back();
        ++m_version;
    }
}

}  // namespace zorvex_api
