#include "document/ZORVEXWriter.h"

#include "document/UnknownClass.h"
#include "objectmodel/AttributeStore.h"
#include "objectmodel/ElementList.h"
#include "runtime/StoredText.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Pointer.h"

namespace zorvex_adapter
{

using namespace zorvex_api;

namespace
{

String OptionText(Configuration* options, const char16_t* path)
{
    String value;
    if (options != nullptr)
    {
        options->Get(path, value);
    }
    return value;
}

int ReferenceModeOf(const String& text)
{
    if (text == u"off")
    {
        return 0;
    }
    return text == u"translate" ? 1 : 2;
}

bool Contains(const String& text, TextView part)
{
    return View(text).find(part) != TextView::npos;
}

}  // namespace

ZORVEXWriter::ZORVEXWriter(Adapter* adapter, Configuration* options, Stream* stream,
                           const Pointer& document)
    : m_adapter(adapter), m_options(options), m_document(document), m_textStream(stream, options, 0)
{
    m_referenceMode = ReferenceModeOf(OptionText(options, u"adapters/ZORVEX/references"));
    const String mode = OptionText(options, u"adapters/ZORVEX/export/mode");
    m_xmlOnly = Contains(mode, u"xml_only");
    m_pointers = Contains(mode, u"pointers");
    m_writesNamespaces = OptionText(options, u"adapters/ZORVEX/export/namespace_list") != u"false";
    m_treatEmptyAsSet = OptionText(options, u"adapters/ZORVEX/empty_attributes") == u"treat_as_set";
    m_textStream.SetBuffering(true);
    m_textStream.SetDocumentRules(true);
}

ZORVEXWriter::~ZORVEXWriter() = default;

void ZORVEXWriter::Write(Object* root, Result& result)
{
    ClassData& data = *ClassData::Of(root);
    m_treeRoot = data.Root();
    const ClassDescriptorImpl& descriptor = *ClassDescriptorImpl::Of(data.GetClassDescriptor());
    const WriterName name = NameOfRoot(descriptor);
    m_textStream.WriteStartTag(name.prefix, name.text, true, false);
    if (m_writesNamespaces)
    {
        WriteNamespaces(root);
    }
    OpenElement(data, nullptr, name, true);
    WriteTree();
    m_textStream.FlushBuffer();
    if (m_xmlOnly && m_hasExternalReference)
    {
        m_result.AddError(520, WARNING, u"Object contains an external reference.");
    }
    ReportReplacements();
    result.Merge(m_result);
}

void ZORVEXWriter::ReportReplacements()
{
    for (int kind = 0; kind < TextStream::kReplacementKinds; ++kind)
    {
        const TextStream::Replaced& replaced =
            m_textStream.GetReplaced(static_cast<TextStream::Replacement>(kind));
        if (replaced.happened)
        {
            m_result.AddError(520, WARNING,
                              String::Format("Invalid Unicode character: ( %#x ) index: ( %d )",
                                             static_cast<unsigned>(replaced.unit), replaced.index));
        }
    }
}

// --- elements ------------------------------------------------------------------------------------

/// Writes what the open elements still hold, deepest first. No recursion: a tree may be deep.
void ZORVEXWriter::WriteTree()
{
    while (!m_frames.empty())
    {
        if (!WriteNextContent())
        {
            CloseElement();
        }
    }
}

WriterClass& ZORVEXWriter::ClassOf(const ClassDescriptorImpl& descriptor)
{
    if (m_lastClass != nullptr && &m_lastClass->Descriptor() == &descriptor &&
        m_lastClass->IsCurrent())
    {
        return *m_lastClass;
    }
    std::unique_ptr<WriterClass>& kept = m_classes[&descriptor];
    if (kept == nullptr || !kept->IsCurrent())
    {
        kept = std::make_unique<WriterClass>(descriptor);
    }
    m_lastClass = kept.get();
    return *kept;
}

/// The start tag up to its ">"; the root's has been begun already.
void ZORVEXWriter::OpenElement(ClassData& data, FieldDescriptor* field, const WriterName& name,
                               bool isRoot)
{
    const ClassDescriptorImpl& descriptor = *ClassDescriptorImpl::Of(data.GetClassDescriptor());
    if (!isRoot)
    {
        m_textStream.WriteStartTag(name.prefix, name.text, false, false);
        if (m_prefixesClash)
        {
            WriteOwnNamespace(data, descriptor, name.prefix);
        }
    }
    WriterClass& known = ClassOf(descriptor);
    Frame frame{&data, nullptr, 0, m_records.size(), 0, m_disturbances, name};
    const std::shared_ptr<WriterShape>& shape = known.ShapeOf(data, m_records);
    if (shape->contents.empty())
    {
        WriteAttributes(data, known.WritesId(), *shape, frame, field);
        m_records.resize(frame.records);
    }
    else
    {
        frame.shape = shape;
        WriteAttributes(data, known.WritesId(), *shape, frame, field);
    }
    m_textStream.Write(std::string_view(">"));
    m_frames.push_back(std::move(frame));
}

void ZORVEXWriter::CloseElement()
{
    const Frame& frame = m_frames.back();
    m_textStream.WriteEndTag(frame.name.prefix, frame.name.text);
    m_records.resize(frame.records);
    m_frames.pop_back();
    if (m_prefixesClash)
    {
        CloseNamespaces();
    }
}

/// The record of a step's field; null when the object has none.
const FieldData* ZORVEXWriter::RecordOf(const Frame& frame, const WriterStep& step) const
{
    if (step.record < 0)
    {
        return nullptr;
    }
    return frame.disturbances == m_disturbances
               ? m_records[frame.records + static_cast<std::size_t>(step.record)]
               : frame.data->FindField(step.field);
}

/// Takes one step in the innermost open element; false when it has nothing more.
bool ZORVEXWriter::WriteNextContent()
{
    Frame& frame = m_frames.back();
    while (frame.shape != nullptr && frame.step < frame.shape->contents.size())
    {
        WriterStep& step = frame.shape->contents[frame.step];
        const FieldData* stored = RecordOf(frame, step);
        const bool isSet = stored != nullptr && stored->IsSet();
        if (isSet && step.field->IsElement() && WriteNextChild(frame, step, *stored))
        {
            return true;
        }
        if (isSet && !step.field->IsElement())
        {
            WriteContent(*frame.data, step, *stored);
        }
        frame.child = 0;
        ++frame.step;
    }
    return false;
}

/// Opens the next child of an element field; false after the last. The frame moves.
bool ZORVEXWriter::WriteNextChild(Frame& frame, WriterStep& step, const FieldData& stored)
{
    const int index = frame.child++;
    Object* child = nullptr;
    if (step.field->Type() == zorvexFieldSingleElement)
    {
        child = index == 0 ? stored.Element() : nullptr;
    }
    else if (index < stored.Elements()->Count())
    {
        child = stored.Elements()->At(index);
    }
    if (child == nullptr)
    {
        return false;
    }
    ClassData& data = *ClassData::Of(child);
    OpenElement(data, step.field, NameOfChild(data, step), false);
    return true;
}

void ZORVEXWriter::WriteContent(ClassData& data, const WriterStep& step, const FieldData& stored)
{
    FieldDescriptor& field = *step.field;
    m_value.clear();
    attribute_store::AppendUtf8(data, field, stored, m_value);
    if (m_value.empty())
    {
        return;
    }
    if (field.IsContent())
    {
        WriteValueText(step);
        return;
    }
    const std::string_view prefix =
        field.Owner() != nullptr ? PrefixOf(*field.Owner()) : std::string_view();
    m_textStream.WriteStartTag(prefix, step.name, false, false);
    if (m_prefixesClash && field.Owner() != nullptr)
    {
        WriteOwnNamespace(data, *field.Owner(), prefix);
    }
    m_textStream.Write(std::string_view(">"));
    WriteValueText(step);
    m_textStream.WriteEndTag(prefix, step.name);
    if (m_prefixesClash)
    {
        CloseNamespaces();
    }
}

void ZORVEXWriter::WriteValueText(const WriterStep& step)
{
    if (step.plain)
    {
        m_textStream.WritePlainText(m_value);
        return;
    }
    m_textStream.WriteText(std::string_view(m_value));
}

// --- names ---------------------------------------------------------------------------------------

std::string_view ZORVEXWriter::KeepText(const String& text)
{
    std::string utf8 = ToUtf8(text);
    auto& kept = m_texts[utf8];
    if (kept == nullptr)
    {
        kept = std::make_unique<std::string>(std::move(utf8));
    }
    return *kept;
}

std::string_view ZORVEXWriter::PrefixOf(const ClassDescriptorImpl& descriptor)
{
    const auto found = m_prefixes.find(&descriptor);
    if (found != m_prefixes.end())
    {
        return found->second;
    }
    return m_prefixes.emplace(&descriptor, ToUtf8(descriptor.NamespacePrefix())).first->second;
}

WriterName ZORVEXWriter::NameOfRoot(const ClassDescriptorImpl& descriptor)
{
    std::string_view name = descriptor.Utf8OutputName();
    if (descriptor.InMainNamespace() && name == "Document")
    {
        name = "ZORVEX";
    }
    else if (descriptor.InMainNamespace() && name == "RequestDocument")
    {
        name = "ZORVEXRequest";
    }
    return {PrefixOf(descriptor), name};
}

WriterName ZORVEXWriter::NameOfChild(ClassData& child, WriterStep& step)
{
    const ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(child.GetClassDescriptor());
    if (descriptor != step.childClass || child.elementName != step.childElementName)
    {
        step.childName = NameOf(child, step.field);
        step.childClass = descriptor;
        step.childElementName = child.elementName;
    }
    return step.childName;
}

/// The name under which the reader found the child, or what follows from its field and class.
WriterName ZORVEXWriter::NameOf(ClassData& child, FieldDescriptor* field)
{
    const ClassDescriptorImpl& descriptor = *ClassDescriptorImpl::Of(child.GetClassDescriptor());
    const ClassDescriptorImpl* fieldClass = ClassDescriptorImpl::Of(field->Class());
    const bool substitute =
        fieldClass != nullptr && fieldClass != &descriptor && descriptor.IsSubClass(fieldClass);
    const bool hasXmlName = !field->XmlNameView().empty();
    WriterName name{PrefixOf(descriptor), {}};
    if (name.prefix.empty() && hasXmlName && !substitute && !IsUnknownClass(field->Owner()))
    {
        name.prefix = field->Prefix().IsEmpty() ? std::string_view() : KeepText(field->Prefix());
    }
    const String* remembered = child.elementName;
    if (remembered == nullptr)
    {
        name.text = substitute || !hasXmlName ? std::string_view(descriptor.Utf8OutputName())
                                              : std::string_view(field->Utf8XmlName());
    }
    else if (remembered == &descriptor.OutputName())
    {
        name.text = descriptor.Utf8OutputName();
    }
    else if (remembered == &field->XmlName())
    {
        name.text = field->Utf8XmlName();
    }
    else
    {
        name.text = KeepText(*remembered);
    }
    return name;
}

}  // namespace zorvex_adapter
