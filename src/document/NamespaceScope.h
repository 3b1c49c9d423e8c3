#pragma once

#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "runtime/Text.h"

namespace zorvex_api
{

/// Whether an attribute declares a namespace: "xmlns", or a name behind "xmlns:".
inline bool IsNamespaceAttribute(TextView name)
{
    return name.starts_with(u"xmlns") && (name.size() == 5 || name[5] == u':');
}

/// The namespaces in force at one place of a document, the innermost first.
class NamespaceScope
{
public:
    /// A namespace URI that the document uses; one record per URI, so pointers compare.
    struct Name
    {
        String uri;
        TextView view;  // over `uri`
        bool known;     // classes of it can exist: registered with the library
        bool isMain;
        bool isSchemaInstance;
    };

    /// The record of a URI.
    Name* Intern(TextView uri);

    /// Binds a prefix outside the document; the binding added later wins.
    void BindOutside(TextView prefix, Name* name);
    /// Binds a prefix at the open element; it ends with Close(depth).
    void Bind(TextView prefix, Name* name, unsigned depth);
    /// The innermost binding of a prefix, null when there is none. The empty prefix asks for the
    /// default namespace; a binding to the empty URI takes it away.
    Name* Find(TextView prefix) const;
    /// Asks anew which namespaces are known, when classes have come or gone.
    void RefreshKnown();
    /// Drops the bindings of an element that ends.
    void Close(unsigned depth);
    /// The whole scope is searched anew when this differs.
    unsigned Version() const { return m_version; }

private:
    struct Prefix
    {
        std::u16string text;
        std::vector<Name*> names;  // innermost last
    };
    struct Binding
    {
        Prefix* prefix;
        unsigned depth;
    };

    // Views over the records: a document can declare any number of either.
    std::deque<Name> m_names;
    std::deque<Prefix> m_prefixes;
    std::unordered_map<TextView, Name*> m_nameByUri;
    std::unordered_map<TextView, Prefix*> m_prefixByText;
    std::vector<Binding> m_bindings;  // of open elements, outermost first
    unsigned m_version = 0;
};

}  // namespace zorvex_api
