#include "zorvex_api/ClassDescriptor.h"

#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/FieldData.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{

namespace
{

/// Whether another class would change the form in which a content element holds its values.
bool ChangesContent(const FieldDescriptor& field, const String& className)
{
    if (field.Type() != zorvexFieldContentElement ||
        FieldData::FormOf(field) == FieldData::Form::None)
    {
        return false;
    }
    FieldDescriptor other(nullptr, field.Name(), field.Type(), field.Prefix(), false);
    other.SetClass(className, false, false);
    return other.KnownClassValue() != field.KnownClassValue();
}

/// Whether objects can hold values of an own field of the class.
bool IsHeldByObjects(const ClassDescriptorImpl& impl, const FieldDescriptor& field)
{
    return field.WasUsed() && impl.IsUsedByObjects();
}

/// Appends the fields of one class in their order; the built-in `load` and `location` stand for the
/// external reference, once.
class FieldCollector
{
public:
    FieldCollector(Array<FieldInfo>& out, unsigned int flags) : m_out(out), m_flags(flags) {}

    void AddId()
    {
        m_idDone = true;
        m_out.Add(FieldInfo(FieldDescriptor::BuiltIn(FieldDescriptor::kId)));
    }

    template <class Fields>
    void AddAll(const Fields& fields)
    {
        for (FieldDescriptor* field : fields)
        {
            if ((static_cast<unsigned int>(field->Kind()) & m_flags) == 0 ||
                (field->IsBuiltIn() && m_idDone))
            {
                continue;
            }
            if (field->Type() == zorvexFieldExternalReference)
            {
                AddExternalReference();
                continue;
            }
            m_out.Add(FieldInfo(field));
            if (m_flags == field_kind::kContent)
            {
                return;
            }
        }
    }

private:
    void AddExternalReference()
    {
        if (!m_externalDone)
        {
            m_externalDone = true;
            m_out.Add(FieldInfo(FieldDescriptor::BuiltIn(FieldDescriptor::kLoad)));
            m_out.Add(FieldInfo(FieldDescriptor::BuiltIn(FieldDescriptor::kLocation)));
        }
    }

    Array<FieldInfo>& m_out;
    unsigned int m_flags;
    bool m_externalDone = false;
    bool m_idDone = false;
};

bool HasBuiltInId(const ClassDescriptorImpl& impl)
{
    return impl.IsIdObject() && !impl.IsDocumentBase();
}

/// The field that a public look-up answers with; null when there is none.
FieldDescriptor* FindPublicField(const ClassDescriptorImpl& impl, TextView name, unsigned int flags)
{
    const int mask = static_cast<int>(flags) & field_kind::kAll;
    if (name == u"id" && HasBuiltInId(impl))
    {
        return FieldDescriptor::BuiltIn(FieldDescriptor::kId);
    }
    const ClassLayout& layout = impl.Layout();
    if (flags == field_kind::kContent)
    {
        return layout.Content();
    }
    // Among fields of exactly that name an attribute comes before an element.
    FieldDescriptor* found =
        layout.FindField(FieldQuery(name, mask & field_kind::kAttribute), true);
    if (found == nullptr)
    {
        found = layout.FindField(name, mask);
    }
    if (found == nullptr || found->Type() != zorvexFieldExternalReference)
    {
        return found;
    }
    if (name == u"load")
    {
        return FieldDescriptor::BuiltIn(FieldDescriptor::kLoad);
    }
    return name == u"location" ? FieldDescriptor::BuiltIn(FieldDescriptor::kLocation) : nullptr;
}

Result UnknownProperty()
{
    return Result(6);
}

}  // namespace

ClassDescriptor::ClassDescriptor(ClassDescriptorImpl* impl) : m_impl(impl) {}
ClassDescriptor::~ClassDescriptor()
{
    delete m_impl;
}

ClassDescriptorImpl* ClassDescriptor::GetImplementation() const
{
    return m_impl;
}

// --- the registry -------------------------------------------------------------------------------

ClassDescriptor* ClassDescriptor::FindByName(const String& name)
{
    ClassRegistry::Fill();
    return ClassRegistry::FindByName(View(name));
}

ClassDescriptor* ClassDescriptor::FindByClass(short classValue)
{
    ClassRegistry::Fill();
    return ClassRegistry::FindByClass(classValue);
}

int ClassDescriptor::NumberOfClassDescriptors()
{
    ClassRegistry::Fill();
    return ClassRegistry::Count();
}

ClassDescriptor* ClassDescriptor::GetClassDescriptor(int index)
{
    ClassRegistry::Fill();
    return ClassRegistry::ByIndex(index);
}

Result ClassDescriptor::Reset()
{
    ClassRegistry::Fill();
    ClassRegistry::ReleaseRuntimeClasses(nullptr);
    return Result();
}

Result ClassDescriptor::Reset(const String& namespaceURI)
{
    ClassRegistry::Fill();
    const TextView uri = View(namespaceURI);
    if (ClassRegistry::ReleaseRuntimeClasses(&uri) == 0)
    {
        ClassRegistry::ReleaseRuntimeClass(ClassRegistry::Lookup(uri));
    }
    return Result();
}

// --- names --------------------------------------------------------------------------------------

const String& ClassDescriptor::GetName() const
{
    return m_impl->Name();
}

int ClassDescriptor::SetName(const String& name)
{
    m_impl->SetName(name);
    return 1;
}

const String& ClassDescriptor::GetVersion() const
{
    return m_impl->Version();
}

const String& ClassDescriptor::GetSchemaFile() const
{
    return m_impl->SchemaFile();
}

int ClassDescriptor::SetVersion(const String& version)
{
    m_impl->SetVersion(version);
    return 1;
}

const String& ClassDescriptor::GetOutputName() const
{
    return m_impl->OutputName();
}

int ClassDescriptor::SetOutputName(const String& name)
{
    m_impl->SetOutputName(name);
    return 1;
}

const String& ClassDescriptor::GetNamespace() const
{
    return m_impl->NamespaceUri();
}
const String& ClassDescriptor::GetNamespacePrefix() const
{
    return m_impl->NamespacePrefix();
}

int ClassDescriptor::SetNamespace(const String& uri, const String& prefix)
{
    m_impl->SetNamespace(uri, prefix);
    return 1;
}

const String& ClassDescriptor::GetQualifiedName() const
{
    return m_impl->QualifiedName();
}
const String& ClassDescriptor::GetSchemaName() const
{
    return m_impl->SchemaName();
}

int ClassDescriptor::SetSchemaName(const String& name)
{
    m_impl->SetSchemaName(name);
    return 1;
}

// --- the class ----------------------------------------------------------------------------------

short ClassDescriptor::GetClass() const
{
    return m_impl->Value();
}
int ClassDescriptor::GetIsAbstract() const
{
    return m_impl->IsAbstract();
}

int ClassDescriptor::SetIsAbstract(int isAbstract)
{
    m_impl->SetAbstract(isAbstract != 0);
    return 1;
}

int ClassDescriptor::GetDeprecated() const
{
    return m_impl->IsDeprecated();
}

int ClassDescriptor::SetDeprecated(int deprecated)
{
    m_impl->SetDeprecated(deprecated != 0);
    return 1;
}

ClassLink ClassDescriptor::GetBaseClass() const
{
    const ClassDescriptorImpl* base = m_impl->Base();
    return ClassLink(m_impl->BaseName(), base != nullptr ? base->Descriptor() : nullptr);
}

int ClassDescriptor::SetBaseClass(const String& name)
{
    m_impl->SetBaseClass(name);
    return 1;
}

ClassLink ClassDescriptor::GetEquivalenceClass() const
{
    const ClassDescriptorImpl* other = m_impl->Equivalence();
    return ClassLink(m_impl->EquivalenceName(), other != nullptr ? other->Descriptor() : nullptr);
}

int ClassDescriptor::SetEquivalenceClass(const String& name)
{
    m_impl->SetEquivalenceClass(name);
    return 1;
}

int ClassDescriptor::SetMakeFunction(Object* (*make)())
{
    m_impl->SetMakeFunction(make);
    return 1;
}

Object* ClassDescriptor::MakeObject() const
{
    return m_impl->MakeObject();
}

int ClassDescriptor::GetConcreteClasses(Array<ClassDescriptor*>& classes) const
{
    if (!m_impl->IsAbstract())
    {
        return 0;
    }
    m_impl->CollectConcreteClasses(classes);
    return 1;
}

int ClassDescriptor::HasContent() const
{
    return m_impl->Layout().Content() != nullptr;
}

Result ClassDescriptor::SetProperty(const String& name, const String& value)
{
    if (name != u"attributeUseOptional")
    {
        return UnknownProperty();
    }
    m_impl->AddOptionalAttribute(value);
    return Result();
}

Result ClassDescriptor::SetProperty(const String& name, void* value)
{
    if (name != u"legacy_class_value")
    {
        return UnknownProperty();
    }
    m_impl->SetLegacyClassValue(static_cast<short*>(value));
    return Result();
}

Result ClassDescriptor::GetProperty(const String&, String&) const
{
    return UnknownProperty();
}
Result ClassDescriptor::GetProperty(const String&, void*&) const
{
    return UnknownProperty();
}

// --- fields -------------------------------------------------------------------------------------

int ClassDescriptor::RegisterField(const String& name, int type)
{
    return m_impl->RegisterField(name, type);
}

int ClassDescriptor::SetFieldClass(const String& field, const String& className,
                                   int searchAllNamespaces)
{
    const auto change = [&](FieldDescriptor& own)
    {
        const bool isOther = ChangesContent(own, className);
        return !(isOther && IsHeldByObjects(*m_impl, own)) &&
               own.SetClass(className, searchAllNamespaces != 0, m_impl->BorrowsTexts());
    };
    return m_impl->ChangeField(View(field), change);
}

int ClassDescriptor::SetFieldDefault(const String& field, const String& value)
{
    return m_impl->ChangeField(View(field), [&](FieldDescriptor& own)
                               { return own.SetDefault(value, m_impl->BorrowsTexts()); });
}

int ClassDescriptor::SetFieldRequired(const String& field, int required)
{
    return m_impl->ChangeField(View(field),
                               [&](FieldDescriptor& own)
                               {
                                   own.SetRequired(required != 0);
                                   return true;
                               });
}

int ClassDescriptor::SetFieldDeprecated(const String& field, int deprecated)
{
    return m_impl->ChangeField(View(field),
                               [&](FieldDescriptor& own)
                               {
                                   own.SetDeprecated(deprecated != 0);
                                   return true;
                               });
}

int ClassDescriptor::SetFieldLength(const String& field, int length)
{
    const auto change = [&](FieldDescriptor& own)
    {
        // Objects hold values in the form that the length asks for.
        const bool isOther = own.Length() != length && FieldData::HoldsNumbers(own);
        return !(isOther && IsHeldByObjects(*m_impl, own)) && own.SetLength(length);
    };
    return m_impl->ChangeField(View(field), change);
}

int ClassDescriptor::SetFieldAllowedValues(const String& field, const char** const values)
{
    return m_impl->ChangeField(View(field), [&](FieldDescriptor& own)
                               { return own.AddAllowedValues(values, m_impl->BorrowsTexts()); });
}

Result ClassDescriptor::GetField(const String& name, FieldInfo& out, unsigned int flags) const
{
    FieldDescriptor* const found = FindPublicField(*m_impl, View(name), flags);
    if (found != nullptr)
    {
        out = FieldInfo(found);
        return Result();
    }
    if (name.IsEmpty())
    {
        return Result(2, String("empty field name"));
    }
    return Result(2, String::Format("%s is not a field of: %s.", ToUtf8(name).c_str(),
                                    ToUtf8(GetName()).c_str()));
}

Result ClassDescriptor::GetFields(Array<FieldInfo>& out, unsigned int flags, int inherited) const
{
    FieldCollector collector(out, flags);
    if ((flags & field_kind::kAttribute) != 0 && HasBuiltInId(*m_impl))
    {
        collector.AddId();
    }
    if (inherited != 0)
    {
        collector.AddAll(m_impl->Layout().DerivedFirst());
    }
    else
    {
        collector.AddAll(m_impl->Fields());
    }
    return Result();
}

int ClassDescriptor::IsField(const String& name, unsigned int flags) const
{
    return FindPublicField(*m_impl, View(name), flags) != nullptr;
}

}  // namespace zorvex_api
