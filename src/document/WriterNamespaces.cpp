#include "document/ZORVEXWriter.h"

#include <unordered_set>

#include "objectmodel/ElementList.h"
#include "objectmodel/Namespace.h"
#include "runtime/MutexLock.h"
#include "runtime/NamespaceUris.h"

namespace zorvex_adapter
{

using namespace zorvex_api;

namespace
{

constexpr int kNamespaceMutex = 6;

/// The namespace URIs that a tree uses: of the classes of its objects, and of the fields that lend
/// their prefix to an element.
class TC
{
public:
    void Visit(ClassData& root)
    {
        std::vector<ClassData*> open{&root};
        while (!open.empty())
        {
            ClassData& data = *open.back();
            open.pop_back();
            if (!open.empty())
            {
                __builtin_prefetch(open.back());
            }
            Enter(data);
            for (FieldData* field = data.fields; field != nullptr; field = field->next)
            {
                if (field->IsSet() && field->descriptor->IsElement())
                {
                    EnterChildren(*field, open);
                }
            }
        }
    }

    bool Uses(const String& uri) const
    {
        return m_uris.find(std::u16string(View(uri))) != m_uris.end();
    }

private:
    void Enter(ClassData& data)
    {
        const ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(data.GetClassDescriptor());
        if (descriptor != m_lastClass && m_classes.insert(descriptor).second)
        {
            m_uris.emplace(View(descriptor->NamespaceUri()));
        }
        m_lastClass = descriptor;
        for (FieldData* field = data.fields; field != nullptr; field = field->next)
        {
            const FieldDescriptor& known = *field->descriptor;
            if (known.IsAttribute() && known.NameView() == u"schemaLocation" && field->IsSet())
            {
                m_uris.emplace(uris::kXmlSchemaInstance);
            }
            else if (!known.IsAttribute() && known.Owner() != nullptr &&
                     !known.Owner()->NamespacePrefix().IsEmpty() &&
                     m_classes.insert(known.Owner()).second)
            {
                m_uris.emplace(View(known.Owner()->NamespaceUri()));
            }
        }
    }

    static void EnterChildren(const FieldData& field, std::vector<ClassData*>& open)
    {
        if (field.descriptor->Type() == zorvexFieldSingleElement)
        {
            if (field.Element() != nullptr)
            {
                open.push_back(ClassData::Of(field.Element()));
            }
            return;
        }
        for (int i = 0; i < field.Elements()->Count(); ++i)
        {
            open.push_back(ClassData::Of(field.Elements()->At(i)));
        }
    }

    std::unordered_set<const ClassDescriptorImpl*> m_classes;
    const ClassDescriptorImpl* m_lastClass = nullptr;
    std::unordered_set<std::u16string> m_uris;
};

}  // namespace

/// Two namespaces of a tree can have the same prefix, or both none. The root's tag declares one,
/// the root's own before others, and none without a prefix but the default or the root's own;
/// elements of the other declare theirs.
void ZORVEXWriter::WriteNamespaces(Object* root)
{
    TC used;
    used.Visit(*ClassData::Of(root));
    const ClassDescriptorImpl& rootClass =
        *ClassDescriptorImpl::Of(ClassData::Of(root)->GetClassDescriptor());
    const String& rootUri = rootClass.NamespaceUri();
    const bool runtimeRoot = rootClass.IsRuntimeClass() && rootClass.NamespacePrefix().IsEmpty();

    const MutexLock lock(kNamespaceMutex);
    for (const Namespace* ns = Namespace::First(); ns != nullptr; ns = ns->Next())
    {
        const bool isRoots = View(ns->Uri()) == View(rootUri);
        const bool lendsDefault = ns->IsDefault() || (runtimeRoot && isRoots);
        if (ns->IsLegacy() || !used.Uses(ns->Uri()))
        {
            continue;
        }
        if (ns->Prefix().IsEmpty() && !lendsDefault)
        {
            m_prefixesClash = true;
            continue;
        }
        const bool leavesToRoot = !isRoots && !rootUri.IsEmpty() &&
                                  View(ns->Prefix()) == View(rootClass.NamespacePrefix());
        if (leavesToRoot || FindBinding(KeepText(ns->Prefix())) != nullptr)
        {
            m_prefixesClash = true;
            continue;
        }
        WriteNamespace(*ClassData::Of(root), ns->Prefix(), ns->Uri());
    }
}

/// Declares a prefix at the element of `data`. The elements of a schema hold their declarations as
/// attributes, which are written with the others.
void ZORVEXWriter::WriteNamespace(const ClassData& data, const String& prefix, const String& uri)
{
    Bind(prefix, uri);
    const String name = prefix.IsEmpty() ? String(u"xmlns") : String(u"xmlns:") + prefix;
    for (const FieldData* field = data.fields; field != nullptr; field = field->next)
    {
        if (field->IsSet() && field->descriptor->XmlNameView() == View(name))
        {
            return;
        }
    }
    m_textStream.WriteNamespace(prefix, uri);
}

/// The declaration of an element whose prefix stands for another namespace here.
void ZORVEXWriter::WriteOwnNamespace(const ClassData& data, const ClassDescriptorImpl& descriptor,
                                     std::string_view prefix)
{
    const String& uri = descriptor.NamespaceUri();
    if (uri.IsEmpty() || prefix != PrefixOf(descriptor))
    {
        return;
    }
    const Binding* bound = FindBinding(prefix);
    if (bound == nullptr || View(bound->uri) != View(uri))
    {
        WriteNamespace(data, descriptor.NamespacePrefix(), uri);
    }
}

const ZORVEXWriter::Binding* ZORVEXWriter::FindBinding(std::string_view prefix) const
{
    const auto found = m_bindingsOf.find(prefix);
    return found != m_bindingsOf.end() && !found->second.empty() ? &m_bindings[found->second.back()]
                                                                 : nullptr;
}

void ZORVEXWriter::Bind(const String& prefix, const String& uri)
{
    const std::string_view kept = KeepText(prefix);
    m_bindingsOf[kept].push_back(m_bindings.size());
    m_bindings.push_back({kept, uri, m_frames.size()});
}

/// Forgets what the element that has just ended declared; the root's declarations stay to the end.
void ZORVEXWriter::CloseNamespaces()
{
    while (!m_bindings.empty() && m_bindings.back().depth == m_frames.size() && !m_frames.empty())
    {
        m_bindingsOf[m_bindings.back().prefix].pop_back();
        m_bindings.pop_back();
    }
}

}  // namespace zorvex_adapter
