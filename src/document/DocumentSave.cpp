#include "document/DocumentSave.h"

#include <cstdint>
#include <memory>

#include "document/ZORVEXWriter.h"
#include "objectmodel/ClassData.h"
#include "transport/DocumentPointer.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/MemoryStream.h"
#include "zorvex_api/Parser.h"
#include "zorvex_api/Session.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_adapter
{

using namespace zorvex_api;
using namespace zorvex_api::internal;

namespace
{

constexpr char16_t kMode[] = u"adapters/ZORVEX/export/mode";
constexpr char16_t kTransform[] = u"adapters/ZORVEX/export/transform";
constexpr char16_t kSdkVersion[] = u"adapters/ZORVEX/export/zorvex_sdk_version";
constexpr char16_t kApplicationName[] = u"ZORVEX SDK";
constexpr double kSchemaVersion = 6.0;

bool HasOption(Configuration* options, const char16_t* path)
{
    String ignored;
    return options != nullptr && options->Get(path, ignored) != nullptr;
}

bool OptionContains(Configuration* options, const char16_t* path, TextView part)
{
    String text;
    return options != nullptr && options->Get(path, text) != nullptr &&
           View(text).find(part) != TextView::npos;
}

bool OptionIs(Configuration* options, const char16_t* path, const char16_t* value)
{
    String text;
    return options != nullptr && options->Get(path, text) != nullptr && text == value;
}

/// A stream that answers 0 has failed like one that throws.
void Require(int answer)
{
    if (answer == 0)
    {
        throw Exception(258, u"Failure writing out to stream");
    }
}

Object* FindApplication(Object& header)
{
    Array<Object*> applications;
    header.GetElementsByField(u"Application", applications);
    for (int i = 0; i < applications.GetSize(); ++i)
    {
        String name;
        applications[i]->GetAttributeValue(u"name", name);
        if (name == kApplicationName)
        {
            return applications[i];
        }
    }
    return nullptr;
}

}  // namespace

DocumentSave::DocumentSave(Adapter& adapter, Object* object, const PluginProcessData& data)
    : m_adapter(adapter),
      m_object(object),
      m_root(object->GetRoot()),
      m_result(GetSlot<Result>(data, kResultSlot) != nullptr ? *GetSlot<Result>(data, kResultSlot)
                                                             : m_unheard),
      m_options(GetSlot<Configuration>(data, kOptionsSlot)),
      m_resolver(FindStoredResolver(m_options))
{
}

DocumentSave::~DocumentSave()
{
    delete m_stream;
}

void DocumentSave::Run()
{
    if (m_adapter.GetContext().IsEmpty())
    {
        m_result.AddError(4, u"ZORVEX Adapter: invalid context.");
        return;
    }
    try
    {
        RunSteps();
    }
    catch (...)
    {
        m_result.AddError(
            4, String(u"ZORVEX Adapter: Exception whilst saving stream ") + m_adapter.GetContext());
    }
    RemoveHeader();
    if (m_stream != nullptr)
    {
        Deregister();  // it wasn't closed: nothing new stands under the pointer
    }
}

void DocumentSave::RunSteps()
{
    if (!OpenStream())
    {
        return;
    }
    PrepareRoot();
    m_adapter.ConstructPointer(m_pointer);
    if (!WritesPart())
    {
        Register();
    }
    if (!HasOption(m_options, kTransform))
    {
        WriteDocument(m_stream);
        RemoveHeader();
        CloseStream();
        return;
    }
    MemoryStream written;
    WriteDocument(&written);
    RemoveHeader();
    if (Transform(&written))
    {
        CloseStream();
    }
}

/// Whether an object below the root is written alone: no document stands under the pointer then.
bool DocumentSave::WritesPart() const
{
    return m_object != m_root && OptionContains(m_options, kMode, u"xml_only") &&
           !OptionContains(m_options, kMode, u"pointers");
}

/// Before the write: what is saved with this document may refer back to it.
void DocumentSave::Register()
{
    if (HasStreamElement(m_pointer))
    {
        return;
    }
    m_remembered = GetDocumentPointer(m_root) == nullptr;
    RememberDocumentPointer(m_root, m_pointer);
    if (m_resolver != nullptr)
    {
        const Handle root(m_root);
        Array<Handle> found;
        m_resolver->FindObjects(m_pointer, found);
        m_registered = found.Lookup(root) < 0;
        m_wasKnown = m_resolver->FindPointer(root, m_known) != 0;
        m_resolver->RegisterObject(root, m_pointer);
    }
}

void DocumentSave::Deregister()
{
    if (m_remembered)
    {
        ForgetDocumentPointer(m_root);
    }
    if (m_registered)
    {
        // Of its other places only the first can be told: the rest are read anew when asked for.
        m_resolver->DeregisterObject(Handle(m_root));
        if (m_wasKnown)
        {
            m_resolver->RegisterObject(Handle(m_root), m_known);
        }
    }
}

bool DocumentSave::OpenStream()
{
    Result opened;
    unsigned int mode = kGetStreamToWrite;
    PluginProcessData get;
    get.m_operation = ZORVEX_OP_ADAPTER_GET;
    get.Set(kResultSlot, &opened);
    get.Set(kOptionsSlot, m_options);
    get.Set(kModeSlot, &mode);
    get.Set(kStreamOutSlot, &m_stream);
    if (m_adapter.GetPrevious() != nullptr)
    {
        ProcessLocked(m_adapter.GetPrevious(), get);
    }
    m_result.Merge(opened);
    if (opened.Ok() != 0 && m_stream != nullptr)
    {
        return true;
    }
    if (opened.Ok() != 0)
    {
        Pointer pointer;
        m_adapter.ConstructPointer(pointer);
        m_result.AddError(
            4, String::Format("Unable to save: \"%s\"", ToUtf8(pointer.GetString()).c_str()));
    }
    return false;
}

void DocumentSave::PrepareRoot()
{
    ClassData& data = *ClassData::Of(m_root);
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(data.GetClassDescriptor());
    if (impl == nullptr || !impl->IsDocumentBase())
    {
        return;
    }
    m_root->SetAttributeValue(u"schemaVersion", kSchemaVersion);
    if (impl->InMainNamespace() && View(impl->Name()) == u"Document" &&
        OptionIs(m_options, kSdkVersion, u"true"))
    {
        AddHeader();
    }
}

/// The record of this library among the document's applications.
void DocumentSave::AddHeader()
{
    Array<Object*> headers;
    m_root->GetElementsByField(u"Header", headers);
    Object* header = headers.GetSize() > 0 ? headers[0] : nullptr;
    if (header == nullptr)
    {
        m_result.Merge(m_root->AddElement(String(), u"Header", header));
        if (header == nullptr)
        {
            return;
        }
        m_added.push_back(header);
    }
    Object* application = FindApplication(*header);
    if (application == nullptr)
    {
        m_result.Merge(header->AddElement(String(), u"Application", application));
        if (application == nullptr)
        {
            return;
        }
        m_added.insert(m_added.begin(), application);
    }
    const BuildInfo build = GetBuildInfo();
    application->SetAttributeValue(u"name", String(kApplicationName));
    application->SetAttributeValue(u"version", build.GetVersionText());
}

void DocumentSave::RemoveHeader()
{
    for (Object* object : m_added)
    {
        object->SetOwner(nullptr);
        delete object;
    }
    m_added.clear();
}

void DocumentSave::WriteDocument(Stream* target)
{
    ZORVEXWriter writer(m_adapter.GetPrevious(), m_options, target, m_pointer);
    writer.Write(WritesPart() ? m_object : m_root, m_result);
}

/// Passes what was written through the stylesheets and on to the real stream.
bool DocumentSave::Transform(Stream* written)
{
    auto* memory = static_cast<MemoryStream*>(written);
    Require(memory->Rewind());
    int isNew = 0;
    auto* parser = static_cast<Parser*>(FindInstance(kParserPlugin, String(), m_options, isNew));
    const std::unique_ptr<Parser> owned(isNew != 0 ? parser : nullptr);
    if (parser == nullptr)
    {
        m_result.AddError(82, u"Unable to initialise parser.");
        return false;
    }
    Result transformed;
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_PARSER_TRANSFORM_EXPORT;
    data.Set(kResultSlot, &transformed);
    data.Set(kOptionsSlot, m_options);
    data.Set(kStreamSlot, memory);
    {
        const PluginLock lock(parser->GetPluginDescriptor());
        parser->Process(&data);
    }
    m_result.Merge(transformed);
    if (transformed.Ok() == 0)
    {
        return false;
    }
    Require(memory->Rewind());
    std::uint64_t length = 0;
    Require(memory->GetLength64(length));
    constexpr std::uint64_t kPiece = 1U << 30;
    const char* bytes = static_cast<const char*>(memory->GetBuffer());
    for (std::uint64_t at = 0; at < length; at += kPiece)
    {
        const std::uint64_t piece = length - at < kPiece ? length - at : kPiece;
        Require(m_stream->Write(bytes + at, static_cast<int>(piece), 1, 0));
    }
    return true;
}

void DocumentSave::CloseStream()
{
    Require(m_stream->Close());
    delete m_stream;
    m_stream = nullptr;
}

}  // namespace zorvex_adapter
