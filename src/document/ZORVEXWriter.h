#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/WriterShape.h"
#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "transport/TextStream.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{
class Adapter;
class Configuration;
class Pointer;
class Stream;
class URIResolver;
struct ExternalRep;
}  // namespace zorvex_api

namespace zorvex_adapter
{

using zorvex_api::ClassData;
using zorvex_api::ClassDescriptorImpl;
using zorvex_api::FieldData;
using zorvex_api::FieldDescriptor;
using zorvex_api::Object;
using zorvex_api::Result;

/// Writes an object tree as a document, by metadata alone.
///
/// Made when the target is open, deleted before the target is closed. Reads the tree without
/// changing it, apart from the texts of references that following them saves. A failed write raises
/// the Exception of TextStream.
class ZORVEXWriter
{
public:
    /// `adapter` stands below the adapter of the document; `document` is the pointer of the save
    /// under way. `options` may be null. None is owned; all outlive the writer.
    ZORVEXWriter(zorvex_api::Adapter* adapter, zorvex_api::Configuration* options,
                 zorvex_api::Stream* stream, const zorvex_api::Pointer& document);
    ~ZORVEXWriter();
    ZORVEXWriter(const ZORVEXWriter&) = delete;
    ZORVEXWriter& operator=(const ZORVEXWriter&) = delete;

    /// Writes the document of this root; what goes wrong beside the stream is merged into `result`.
    void Write(Object* root, Result& result);

private:
    /// An open element: where its content stands in hand.
    struct Frame
    {
        ClassData* data;
        std::shared_ptr<WriterShape> shape;  // null: the element has no content
        std::size_t step;                    // of the shape's contents
        std::size_t records;                 // where the object's fields begin in m_records
        int child;                           // next child of the field in hand
        unsigned disturbances;               // when the fields were looked up
        WriterName name;
    };

    /// A prefix that stands for a namespace from an open element on.
    struct Binding
    {
        std::string_view prefix;
        zorvex_api::String uri;
        std::size_t depth;  // elements open around it
    };

    // --- namespaces (WriterNamespaces.cpp)
    void WriteNamespaces(Object* root);
    void WriteNamespace(const ClassData& data, const zorvex_api::String& prefix,
                        const zorvex_api::String& uri);
    void WriteOwnNamespace(const ClassData& data, const ClassDescriptorImpl& descriptor,
                           std::string_view prefix);
    void CloseNamespaces();
    const Binding* FindBinding(std::string_view prefix) const;
    void Bind(const zorvex_api::String& prefix, const zorvex_api::String& uri);

    // --- elements
    void WriteTree();
    void OpenElement(ClassData& data, FieldDescriptor* field, const WriterName& name, bool isRoot);
    void CloseElement();
    bool WriteNextContent();
    bool WriteNextChild(Frame& frame, WriterStep& step, const FieldData& stored);
    void WriteContent(ClassData& data, const WriterStep& step, const FieldData& stored);
    void WriteValueText(const WriterStep& step);
    WriterClass& ClassOf(const ClassDescriptorImpl& descriptor);
    const FieldData* RecordOf(const Frame& frame, const WriterStep& step) const;
    WriterName NameOfRoot(const ClassDescriptorImpl& descriptor);
    WriterName NameOfChild(ClassData& child, WriterStep& step);
    WriterName NameOf(ClassData& child, FieldDescriptor* field);
    std::string_view PrefixOf(const ClassDescriptorImpl& descriptor);
    std::string_view KeepText(const zorvex_api::String& text);

    // --- attributes (WriterAttributes.cpp)
    void WriteAttributes(ClassData& data, bool writesId, const WriterShape& shape,
                         const Frame& frame, const FieldDescriptor* holdingField);
    void WriteField(ClassData& data, const WriterStep& step, const FieldData* stored);
    std::string_view ValueOf(ClassData& data, const WriterStep& step, const FieldData* stored);
    void AppendUris(ClassData& data, FieldDescriptor& field, const FieldData& stored);
    void AppendUriList(ClassData& data, FieldDescriptor& field,
                       const zorvex_api::Array<zorvex_api::ExternalRep*>& list);
    void AppendUri(ClassData& data, FieldDescriptor& field, int index,
                   const zorvex_api::ExternalRep* rep);
    bool IsInTree(ClassData& object);
    void AppendForeignUri(ClassData& data, FieldDescriptor& field, int index);
    const zorvex_api::Pointer& PointerOf(Object* root);

    void ReportReplacements();

    zorvex_api::Adapter* m_adapter;
    zorvex_api::Configuration* m_options;
    const zorvex_api::Pointer& m_document;
    Result m_result;
    bool m_treatEmptyAsSet = false;
    bool m_xmlOnly = false;
    bool m_pointers = false;
    bool m_hasExternalReference = false;
    bool m_writesNamespaces = true;
    int m_referenceMode = 2;
    std::string m_value;                     // the value in hand, UTF-8
    std::u16string m_wide;                   // scratch
    const ClassData* m_treeRoot = nullptr;   // of the tree that is written
    const Object* m_parentInTree = nullptr;  // of the last object found in it
    unsigned m_parentFoundAt = 0;            // m_disturbances then
    std::vector<Frame> m_frames;
    std::vector<FieldData*> m_records;  // the fields of the open elements
    // Raised whenever the application could have changed the tree: fields are looked up anew then.
    unsigned m_disturbances = 0;
    std::unordered_map<const ClassDescriptorImpl*, std::unique_ptr<WriterClass>> m_classes;
    WriterClass* m_lastClass = nullptr;
    std::vector<Binding> m_bindings;                                              // outermost first
    std::unordered_map<std::string_view, std::vector<std::size_t>> m_bindingsOf;  // by prefix
    bool m_prefixesClash = false;  // two namespaces of the tree have the same prefix
    std::unordered_map<const ClassDescriptorImpl*, std::string> m_prefixes;
    std::unordered_map<std::string, std::unique_ptr<std::string>> m_texts;  // names that are kept
    std::unique_ptr<zorvex_api::Pointer> m_rootPointer;
    zorvex_api::TextStream m_textStream;  // last: it writes the prolog when it is made
};

}  // namespace zorvex_adapter
