#include "SourceEmitter.h"

#include <map>
#include <set>

#include "Naming.h"

namespace schemagen
{

namespace
{

const char kNotice[] = "// Generated from the vocabulary of the schemas; don't edit.\n";

const char* TypeCode(Kind kind)
{
    switch (kind)
    {
        case Kind::Logical:
            return "zorvexFieldLogical";
        case Kind::Int:
            return "zorvexFieldInt";
        case Kind::Double:
            return "zorvexFieldDouble";
        case Kind::String:
            return "zorvexFieldString";
        case Kind::Reference:
            return "zorvexFieldSingleReference";
        case Kind::References:
            return "zorvexFieldMultipleReference";
        case Kind::Element:
            return "zorvexFieldSingleElement";
        case Kind::Elements:
            return "zorvexFieldMultipleElement";
        case Kind::Uri:
            return "zorvexFieldSingleURI";
        case Kind::Uris:
            return "zorvexFieldMultipleURI";
        case Kind::External:
            return "zorvexFieldExternalReference";
        case Kind::Content:
            return "zorvexFieldContentElement";
        case Kind::Matrix:
            return "zorvexFieldMatrix";
        case Kind::Vector:
            return "zorvexFieldVector";
        case Kind::Enum:
            break;
    }
    return "0";
}

// The length that the initialiser sets; nothing where it sets none.
std::string LengthText(const Field& field)
{
    if (field.length)
    {
        return std::to_string(*field.length);
    }
    if (field.kind == Kind::Vector)
    {
        return "3";
    }
    if (field.kind == Kind::Content && field.classNames.front() == "String")
    {
        return "1";
    }
    return "FieldRow::kNoLength";
}

std::string FieldClassText(const Field& field)
{
    if (field.kind == Kind::Enum)
    {
        return field.enumeration->TypeName();
    }
    if (field.kind == Kind::Content)
    {
        return field.classNames.front();
    }
    return field.qualifiedClasses;
}

std::string OrNull(const std::string& text)
{
    return text.empty() ? "nullptr" : WideLiteral(text);
}

std::string FieldRowText(const Field& field)
{
    std::string flags;
    flags += field.required ? "FieldRow::kRequired" : "";
    flags += field.deprecated
                 ? (flags.empty() ? "FieldRow::kDeprecated" : " | FieldRow::kDeprecated")
                 : "";
    std::string type = "nullptr, nullptr";
    if (field.enumeration != nullptr)
    {
        const std::string code = field.enumeration->CodeName() + "::";
        type = "&" + code + "zorvexFieldEnum" + field.enumeration->TypeName() + ", &" + code +
               field.enumeration->name + "::Values";
    }
    return "    {" + WideLiteral(field.name) + ", " + OrNull(FieldClassText(field)) + ", " +
           OrNull(field.defaultText.value_or("")) + ", " + type + ", " + TypeCode(field.kind) +
           ", " + LengthText(field) + ", " + (flags.empty() ? "FieldRow::kNone" : flags) + "},\n";
}

std::string Unique(const Class& item)
{
    return item.CodeName() + "_" + item.name;
}

std::string InitialiserName(const Class& item)
{
    return "Initialise_" + Unique(item);
}

class ClassSourceWriter
{
public:
    explicit ClassSourceWriter(const std::vector<const Class*>& classes) : m_classes(classes) {}

    std::string Text() const
    {
        return kNotice + Includes() + "\n" + Members() +
               "namespace zorvex_api::internal\n{\n\nnamespace\n{\n\n" + Modules() + Rows() +
               "}  // namespace\n\n" + Initialisers() + "}  // namespace zorvex_api::internal\n";
    }

private:
    std::string Includes() const
    {
        std::set<std::string> lines = {"#include \"schema/ClassTable.h\"\n",
                                       "#include \"schema/GeneratedClasses.h\"\n",
                                       "#include \"zorvex_api/FieldInfo.h\"\n"};
        for (const Class* item : m_classes)
        {
            lines.insert("#include \"" + item->CodeName() + "/" + item->name + ".h\"\n");
        }
        std::string text;
        for (const std::string& line : lines)
        {
            text += line;
        }
        return text;
    }

    std::string Members() const
    {
        std::string text;
        for (const Class* item : m_classes)
        {
            const std::string& name = item->name;
            const std::string number = "zorvexClass" + name;
            text += "namespace " + item->CodeName() + "\n{\nshort " + number + " = 0;\n";
            if (!item->legacyName.empty())
            {
                text += "short zorvexClass" + item->legacyName + " = 0;\n";
            }
            text += name + "::" + name + "()\n{\n    InitData(" + number + ");\n}\n" + name +
                    "::" + name + "(Object* owner) : " + name + "()\n{\n" +
                    "    const Result result = typed::Attach(*this, owner);\n" +
                    "    if (!result.Ok())\n    {\n        InitData(0);\n" +
                    "        typed::RaiseNotAttached(result);\n    }\n}\n" + name + "::~" + name +
                    "() = default;\n}  // namespace " + item->CodeName() + "\n\n";
        }
        return text;
    }

    std::string Modules() const
    {
        std::string text;
        std::set<const Module*> done;
        for (const Class* item : m_classes)
        {
            const Module* module = item->module;
            if (done.insert(module).second)
            {
                const Namespace& space = *module->code->xmlNamespace;
                text += "const ModuleRow k" + module->name + " = {" + WideLiteral(module->version) +
                        ", " + WideLiteral(space.uri) + ", " + WideLiteral(space.prefix) + "};\n\n";
            }
        }
        return text;
    }

    std::string Rows() const
    {
        std::string text;
        std::string rows = "const ClassRow kClasses[] = {\n";
        for (const Class* item : m_classes)
        {
            std::string fields = "nullptr, 0";
            if (!item->fields.empty())
            {
                const std::string list = "kFields_" + Unique(*item);
                text += "const FieldRow " + list + "[] = {\n";
                for (const Field& field : item->fields)
                {
                    text += FieldRowText(field);
                }
                text += "};\n\n";
                fields = list + ", " + std::to_string(item->fields.size());
            }
            std::string optional = "nullptr";
            if (!item->optionalAttributes.empty())
            {
                optional = "kOptional_" + Unique(*item);
                text += "const char16_t* const " + optional + "[] = {";
                for (const std::string& name : item->optionalAttributes)
                {
                    text += WideLiteral(name) + ", ";
                }
                text += "nullptr};\n\n";
            }
            rows += ClassRowText(*item, fields, optional);
        }
        return text + rows + "};\n\n";
    }

    static std::string ClassRowText(const Class& item, const std::string& fields,
                                    const std::string& optional)
    {
        const std::string code = item.CodeName() + "::";
        const std::string legacy =
            item.legacyName.empty() ? "nullptr" : "&" + code + "zorvexClass" + item.legacyName;
        return "    {&k" + item.module->name + ", " + WideLiteral(item.name) + ", " +
               WideLiteral(item.schemaType) + ",\n     " + WideLiteral(item.qualifiedBase) + ", " +
               WideLiteral(item.equivalent) + ", &" + code + "zorvexClass" + item.name + ", " +
               legacy + ",\n     &MakeObjectOf<" + code + item.name + ">, " + fields + ", " +
               optional + ", " + (item.abstract ? "true" : "false") + "},\n";
    }

    std::string Initialisers() const
    {
        std::string text;
        int row = 0;
        for (const Class* item : m_classes)
        {
            text += "int " + InitialiserName(*item) + "(void* record)\n{\n" +
                    "    return InitialiseFromRow(record, kClasses[" + std::to_string(row++) +
                    "]);\n}\n";
        }
        return text + "\n";
    }

    const std::vector<const Class*>& m_classes;
};

}  // namespace

std::string ClassSource(const std::vector<const Class*>& classes)
{
    return ClassSourceWriter(classes).Text();
}

std::string EnumSource(const std::vector<const Enumeration*>& enums)
{
    std::string includes;
    std::string body;
    for (const Enumeration* item : enums)
    {
        const std::string& name = item->name;
        includes += "#include \"" + item->CodeName() + "/" + name + ".h\"\n";
        body += "namespace " + item->CodeName() + "\n{\n\nint zorvexFieldEnum" + item->TypeName() +
                " = zorvex_api::EnumBase::Init();\n\n" + name + "::~" + name +
                "() = default;\n\nint " + name + "::Set(const char* text)\n{\n" +
                "    return SetFrom(Values(), text);\n}\n\nconst char* const* " + name +
                "::Values()\n{\n    static const char* const kValues[] = {\n";
        std::string constants;
        int index = 0;
        for (const EnumValue& value : item->values)
        {
            body += "        " + Literal(value.text) + ",\n";
            constants += "const " + name + " " + name + value.constant + "{" + name +
                         "::Constant{" + std::to_string(index++) + "}};\n";
        }
        body += "        nullptr};\n    return kValues;\n}\n\n" + constants + "\n}  // namespace " +
                item->CodeName() + "\n\n";
    }
    return kNotice + includes + "\n" + body;
}

std::string RegistrationHeader(const Vocabulary& vocabulary)
{
    std::string text = kNotice +
                       std::string(
                           "#pragma once\n\n#include <array>\n#include <cstddef>\n\n"
                           "namespace zorvex_api::internal\n{\n\n"
                           "/// Fills the descriptor of one class; see LinkNode.\n"
                           "using ClassInitialiser = int (*)(void*);\n\n"
                           "inline constexpr std::size_t kGeneratedClassCount = ") +
                       std::to_string(vocabulary.classes.size()) +
                       ";\n\n/// The generated classes in registration order.\n"
                       "using ClassInitialisers = std::array<ClassInitialiser, "
                       "kGeneratedClassCount>;\n"
                       "const ClassInitialisers& GeneratedClassInitialisers();\n"
                       "inline std::size_t GeneratedClassCount() { return "
                       "kGeneratedClassCount; }\n\n";
    for (const Class& item : vocabulary.classes)
    {
        text += "int " + InitialiserName(item) + "(void* record);\n";
    }
    return text + "\n}  // namespace zorvex_api::internal\n";
}

std::string RegistrationSource(const Vocabulary& vocabulary)
{
    std::string text = kNotice + std::string(
                                     "#include \"schema/GeneratedClasses.h\"\n\n"
                                     "#include \"runtime/NamespaceUris.h\"\n\n"
                                     "namespace zorvex_api::internal\n{\n\n");
    text += "namespace\n{\n\n// The vocabulary and the library agree on the namespaces.\n";
    const std::map<std::string, std::string> constants = {
        {"main", "kMain"}, {"cha", "kCharacteristic"}, {"cl", "kClassification"}};
    for (const Namespace& space : vocabulary.namespaces)
    {
        const auto constant = constants.find(space.key);
        if (constant != constants.end())
        {
            text += "static_assert(uris::" + constant->second + " == " + WideLiteral(space.uri) +
                    ");\n";
        }
    }
    text += "\nconstexpr ClassInitialisers kInitialisers = {\n";
    for (const Class& item : vocabulary.classes)
    {
        text += "    &" + InitialiserName(item) + ",\n";
    }
    return text +
           "};\n\n}  // namespace\n\nconst ClassInitialisers& GeneratedClassInitialisers()\n"
           "{\n    return kInitialisers;\n}\n\n}  // namespace zorvex_api::internal\n";
}

}  // namespace schemagen
