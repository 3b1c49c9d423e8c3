#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "document/NamespaceScope.h"
#include "document/ParseLimits.h"
#include "document/ReferenceData.h"
#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "runtime/Text.h"
#include "zorvex_api/Allocator.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Parser.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{

class Configuration;

/// How a second child of a single element field is taken: the option
/// "adapters/ZORVEX/import/multiple_sub_elements", as the strictness of ClassData::SetOwner.
enum class SubElementMode
{
    Refuse = 0,
    Warn = 1,    // "warning"
    Replace = 2  // "none"
};

/// The document reader: turns the events of a parse into a tree of objects.
///
/// Lives for one parse, inside the Parser. Driven by metadata alone; what it looks up for an
/// element name under a class is kept for the rest of the parse. Text is gathered and judged at the
/// next tag; content is stored when its element ends.
class ParserImpl : public Allocator
{
public:
    ParserImpl();
    ~ParserImpl();
    ParserImpl(const ParserImpl&) = delete;
    ParserImpl& operator=(const ParserImpl&) = delete;

    /// Reads the options and the registered namespaces.
    void Prepare();
    /// Whether the reader knows where its objects and messages go.
    bool IsPrepared() const { return objects != nullptr && result != nullptr; }

    void StartElement(TextView name, const Parser::UCharList& names,
                      const Parser::UCharList& values);
    void EndElement();
    void Characters(TextView text);
    /// After the parse: what a document that was cut off had as text of its open elements, up to
    /// its last tag, is stored. A text that no tag ended isn't known to be whole.
    void Finish();

    // --- given before the parse
    // -------------------------------------------------------------------
    Array<Object*>* objects = nullptr;    // roots, output; owned by the caller
    ReferenceList* references = nullptr;  // output; may be null
    Result* result = nullptr;
    Configuration* options = nullptr;                   // may be null
    String path;                                        // the document's name
    Array<ClassDescriptor*>* createdClasses = nullptr;  // output; may be null
    int schemaMode = 0;                                 // an XML schema is being read
    bool forceUtf8 = false;                             // whatever encoding the document declares
    ParseLimits limits;

    // --- state that callers ask for
    // ---------------------------------------------------------------
    std::u16string lastId;  // the last id read

private:
    /// What an element name means below a class.
    enum class PlanKind
    {
        Field,           // `field` takes an object of `descriptor`
        ContentElement,  // `field` of type 13 takes the element's text
        Other            // decided anew each time
    };
    struct Plan
    {
        const ClassDescriptorImpl* parent;
        const NamespaceScope::Name* ns;
        std::uint32_t parentGeneration;
        std::uint32_t namesGeneration;
        PlanKind kind;
        FieldDescriptor* field;
        ClassDescriptor* descriptor;
        const String* remembered;  // the name the object is written under; null: worked out later
    };
    /// A name as it stands in the document, split once.
    struct ElementName
    {
        std::u16string raw;
        TextView prefix;  // over `raw`
        TextView local;
        std::vector<Plan> plans;
        bool isSchema = false;            // the local name is "schema"
        ElementName* follower = nullptr;  // the name that came after it last
    };
    /// What the attributes of a class's elements turned out to be, in the order of the last
    /// element: the next one mostly has the same.
    struct AttributeGuess
    {
        std::u16string name;
        FieldDescriptor* field;  // null for the id
    };
    struct AttributeGuesses
    {
        std::uint32_t generation = 0;
        std::vector<AttributeGuess> attributes;

        bool Hold(std::size_t index, const char16_t* name) const;
        void Learn(std::size_t index, TextView name, FieldDescriptor* field);
    };
    /// Where an element's name belongs.
    struct ElementNamespace
    {
        NamespaceScope::Name* name = nullptr;  // null: none
        bool known = false;
        bool assumed = false;
    };
    /// An open element that has an object.
    struct Frame
    {
        ClassData* data = nullptr;
        bool convertsBound = false;  // a BoxBound: its corners become centre and half size
        bool embeddedSchema = false;
        std::u16string gathered;  // content so far; the buffer is used again
    };
    /// Takes the place of an object while a content element is open: the element holds text alone.
    struct SAXContainerObject
    {
        enum class Form
        {
            Field,
            LowCorner,
            HighCorner,
            Centre,
            Radius
        };
        Form form = Form::Field;
        FieldDescriptor* field = nullptr;
        std::u16string gathered;
    };

    // --- elements (ReaderElements.cpp)
    // ------------------------------------------------------------
    ElementName& InternName(TextView raw);
    void OpenNamespaces(const Parser::UCharList& names, const Parser::UCharList& values);
    ElementNamespace FindNamespace();
    void ReportNamespace(const ElementNamespace& ns, TextView rawName);
    void SkipElement();
    void StartRoot(const ElementNamespace& ns, const Parser::UCharList& names,
                   const Parser::UCharList& values);
    ClassDescriptor* FindRootClass(const ElementNamespace& ns);
    void StartChild(const ElementNamespace& ns, const Parser::UCharList& names,
                    const Parser::UCharList& values);
    void StartPlanned(const Plan& plan, const Parser::UCharList& names,
                      const Parser::UCharList& values);
    Plan* FindPlan(const ElementNamespace& ns);
    static bool IsCurrent(const Plan& plan);
    Plan MakePlan(const ElementNamespace& ns);
    void StartSearched(const Plan& plan, const ElementNamespace& ns, const Parser::UCharList& names,
                       const Parser::UCharList& values);
    FieldDescriptor* FindNamedField(const ElementNamespace& ns);
    FieldDescriptor* FindSubstituteField(ClassDescriptor* descriptor);
    ClassDescriptor* ClassOfField(FieldDescriptor* field, const ElementNamespace& ns);
    ClassDescriptor* FindClass(const ElementNamespace& ns);
    void StartOpen(const ElementNamespace& ns, const Parser::UCharList& names,
                   const Parser::UCharList& values);
    void StartUnfielded(ClassDescriptor* found, const ElementNamespace& ns,
                        const Parser::UCharList& names, const Parser::UCharList& values);
    void StartUnderWildcard(ClassDescriptor* found, const ElementNamespace& ns,
                            const Parser::UCharList& names, const Parser::UCharList& values);
    bool StartSchemaInfo(const Parser::UCharList& names, const Parser::UCharList& values);
    void OpenContentElement(SAXContainerObject::Form form, FieldDescriptor* field,
                            const Parser::UCharList& names);
    void OpenObject(ClassDescriptor* descriptor, FieldDescriptor* field, const String* remembered,
                    const Parser::UCharList& names, const Parser::UCharList& values);
    void Attach(ClassData& data, FieldDescriptor* field);
    void AttachByName(ClassData& data);
    void PlaceChild(ClassData& data, FieldDescriptor* field, const Parser::UCharList& names,
                    const Parser::UCharList& values);
    const String* RememberedName(ClassDescriptor* descriptor, FieldDescriptor* field) const;
    Frame& PushFrame(ClassData* data);
    ClassDescriptor* MakeRuntimeClass(const ElementNamespace& ns, ClassDescriptor* base);

    // --- attributes (ReaderAttributes.cpp)
    // --------------------------------------------------------
    void ReadAttributes(ClassData& data, const Parser::UCharList& names,
                        const Parser::UCharList& values);
    AttributeGuesses& GuessesFor(const ClassDescriptorImpl& descriptor);
    bool ReadKnownAttribute(ClassData& data, FieldDescriptor* field, TextView value);
    FieldDescriptor* FindBuiltInAttribute(const ClassLayout& layout, TextView name);
    bool ReadId(ClassData& data, TextView value);
    bool ReadSchemaLocation(ClassData& data, TextView name, TextView value);
    bool ReadRuntimeAttribute(ClassData& data, TextView name, TextView value);
    void SetField(ClassData& data, FieldDescriptor& field, TextView value);
    void NoteReferences(ClassData& data, FieldDescriptor& field);
    void CheckRequired(ClassData& data, const Parser::UCharList& names);
    TextView TakeValue(const unsigned short* value) const;

    // --- text (ReaderText.cpp)
    // --------------------------------------------------------------------
    void FlushText(bool beforeStartTag);
    void JudgeRun(Frame& frame, TextView run, bool beforeStartTag);
    void StoreContent(Frame& frame);
    void CloseContentElement();

    // --- bounds (ReaderBounds.cpp)
    // ----------------------------------------------------------------
    bool StartBound(const Parser::UCharList& names, const Parser::UCharList& values);
    void StoreBoundText(ClassData& bound, SAXContainerObject::Form form, TextView text);
    void ConvertBound(ClassData& bound);

    // --- embedded schemas (ReaderSchema.cpp)
    // ------------------------------------------------------
    bool IsEmbeddedSchemaStart() const;
    void BeginEmbeddedSchema();
    void EndEmbeddedSchema(ClassData& schema);
    void LoadReferencedSchema(ClassData& schema);
    void ReleaseEmbeddedSchema(ClassData& schema);

    // --- messages
    // ---------------------------------------------------------------------------------
    void Warn(int code, const String& text);
    void Fail(int code, const String& text);
    std::string LocalUtf8() const { return ToUtf8(m_name->local); }

    ClassData* Current() const
    {
        return m_depthOpen > 0 ? m_frames[m_depthOpen - 1].data : nullptr;
    }
    Frame& Top() { return m_frames[m_depthOpen - 1]; }
    ClassData* DocumentRoot() const { return m_frames[0].data; }

    std::vector<Frame> m_frames;  // frames above m_depthOpen are kept for their buffers
    std::size_t m_depthOpen = 0;
    SAXContainerObject m_container;
    bool m_inContentElement = false;
    bool m_inDocument = false;
    bool m_ignoreUnknown = true;
    bool m_savedIgnoreUnknown = true;
    bool m_inEmbeddedSchema = false;
    bool m_treatEmptyAsSet = false;
    bool m_checkDocument = true;
    bool m_noNamespaces = false;
    int m_classCount = 0;                // when the embedded schema began
    std::size_t m_schemaReferences = 0;  // references met before it
    SubElementMode m_subElements = SubElementMode::Refuse;
    std::uint64_t m_skipDepth = 0;
    std::uint64_t m_depth = 0;  // open elements, skipped ones included
    NamespaceScope m_scope;
    std::u16string m_text;  // the run of text in hand
    ElementName* m_name = nullptr;
    std::unordered_map<const ClassDescriptorImpl*, AttributeGuesses> m_guesses;
    const ClassDescriptorImpl* m_guessedClass = nullptr;
    AttributeGuesses* m_lastGuesses = nullptr;  // of m_guessedClass
    std::unordered_map<std::u16string_view, std::unique_ptr<ElementName>> m_elementNames;
    unsigned m_defaultVersion = ~0u;  // scope version for which m_default was found
    NamespaceScope::Name* m_default = nullptr;
};

}  // namespace zorvex_api
