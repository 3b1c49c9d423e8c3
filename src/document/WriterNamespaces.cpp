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
        if (m_classes.insert(descriptor).second)
        {
            m_uris.emplace(View(descriptor->NamespaceUri()));
        }
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
    std::unordered_set<std::u16string> m_uris;
};

}  // namespace

void ZORVEXWriter::WriteNamespaces(Object* root)
{
    TC used;
    used.Visit(*ClassData::Of(root));
    const ClassDescriptorImpl& rootClass =
        *ClassDescriptorImpl::Of(ClassData::Of(root)->GetClassDescriptor());
    const bool runtimeRoot = rootClass.IsRuntimeClass() && rootClass.NamespacePrefix().IsEmpty();

    const MutexLock lock(kNamespaceMutex);
    for (const Namespace* ns = Namespace::First(); ns != nullptr; ns = ns->Next())
    {
        const bool lendsDefault =
            ns->IsDefault() || (runtimeRoot && View(ns->Uri()) == View(rootClass.NamespaceUri()));
        if (ns->IsLegacy() || !used.Uses(ns->Uri()) || (ns->Prefix().IsEmpty() && !lendsDefault))
        {
            continue;
        }
        m_textStream.WriteNamespace(ns->Prefix(), ns->Uri());
    }
}

}  // namespace zorvex_adapter
