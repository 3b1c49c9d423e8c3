#include "document/ParserImpl.h"

#include "objectmodel/ClassRegistry.h"
#include "runtime/NamespaceUris.h"
#include "transport/LoadRoutine.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/AdapterRef.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Pointer.h"

namespace zorvex_api
{

namespace
{

constexpr char16_t kSchemaFormat[] = u"XSD";

bool IsMainSchemaClass(ClassDescriptor* descriptor)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(descriptor);
    return impl != nullptr && impl->InMainNamespace() && View(impl->Name()) == u"Schema";
}

}  // namespace

bool ParserImpl::IsEmbeddedSchemaStart() const
{
    return m_name->isSchema && m_inDocument && m_skipDepth == 0 && !m_inEmbeddedSchema &&
           Current() != nullptr && IsMainSchemaClass(Current()->GetClassDescriptor());
}

void ParserImpl::BeginEmbeddedSchema()
{
    m_inEmbeddedSchema = true;
    m_savedIgnoreUnknown = m_ignoreUnknown;
    m_ignoreUnknown = false;
    m_classCount = ClassDescriptor::NumberOfClassDescriptors();
    m_schemaReferences = references != nullptr ? references->size() : 0;
    schemaMode = 1;
}

/// Hands a schema that stood in the document to the schema adapter, which makes its classes.
void ParserImpl::EndEmbeddedSchema(ClassData& schema)
{
    m_inEmbeddedSchema = false;
    m_ignoreUnknown = m_savedIgnoreUnknown;
    schemaMode = 0;

    Pointer pointer(path);
    pointer.EnsureFormat(kSchemaFormat);
    AdapterRef chain(pointer, nullptr, options);
    if (chain.IsValid() == 0)
    {
        Fail(520, u"Unable to load embedded schema file.");
        return;
    }
    Array<Handle> handles;
    handles.Add(Handle(schema.object));
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_ADAPTER_LOAD;
    data.Set(internal::kResultSlot, result);
    data.Set(internal::kOptionsSlot, options);
    data.Set(internal::kHandlesSlot, &handles);
    internal::ProcessLocked(chain.GetAdapter(), data);
}

/// The schema's objects have served: the parent forgets the field that held them, and the classes
/// that only they had go.
void ParserImpl::ReleaseEmbeddedSchema(ClassData& schema)
{
    ClassData* parent = schema.OwnerData();
    schema.SetOwner(nullptr, TextView(), nullptr, false, false, 0);
    if (parent != nullptr)
    {
        const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(parent->GetClassDescriptor());
        if (FieldDescriptor* field = impl->Layout().FindElement(u"schema"))
        {
            field->ForgetClass();
        }
    }
    if (references != nullptr)
    {
        references->resize(m_schemaReferences);  // those met since stand in the schema
    }
    delete schema.object;
    const TextView schemaNamespace = uris::kXmlSchema;
    if (ClassDescriptor::NumberOfClassDescriptors() > m_classCount)
    {
        ClassRegistry::ReleaseRuntimeClasses(&schemaNamespace);
    }
    m_scope.RefreshKnown();
}

/// A "Schema" that names a schema file. A relative name is read against the document's folder.
void ParserImpl::LoadReferencedSchema(ClassData& schema)
{
    String reference;
    schema.object->GetAttributeValue(u"schemaRef", reference);
    if (reference.IsEmpty())
    {
        return;
    }
    Pointer target(reference);
    const Pointer document(path);
    if (target.IsRelative() != 0 && document.HasPath() != 0)
    {
        target.Parse(document.GetNetPath() + String(u"/") + reference);
    }
    const std::unique_ptr<Configuration> schemaOptions = internal::CopyOptions(options);
    schemaOptions->Set(u"format", kSchemaFormat);
    Array<Handle> handles;
    Result loaded;
    internal::LoadDocumentInto(target.GetString(), handles, schemaOptions.get(), loaded,
                               internal::LoadSwitches());
    result->Merge(loaded);
    m_scope.RefreshKnown();
}

}  // namespace zorvex_api
