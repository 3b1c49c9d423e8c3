#include "HeaderEmitter.h"

#include <algorithm>
#include <map>

#include "Accessors.h"
#include "Naming.h"

namespace schemagen
{

namespace
{

constexpr std::size_t kColumns = 100;

const char kNotice[] =
    "// Generated from the vocabulary of the schemas; don't edit.\n#pragma once\n\n";

// A comment of several lines: `text` broken at blanks.
std::string Wrap(const std::string& indent, const std::string& text)
{
    std::string out;
    std::string line = indent + "///";
    for (std::size_t at = 0; at < text.size();)
    {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::string word = text.substr(at, end - at);
        if (line.size() + 1 + word.size() > kColumns)
        {
            out += line + "\n";
            line = indent + "///";
        }
        line += " " + word;
        at = end + 1;
    }
    return out + line + "\n";
}

template <class List, class Name>
std::string Join(const List& list, Name name)
{
    std::string text;
    for (const auto& item : list)
    {
        text += (text.empty() ? "" : ", ") + name(item);
    }
    return text;
}

std::string FullName(const Class& item)
{
    return item.CodeName() + "::" + item.name;
}

std::string UserText(const Class::User& user)
{
    // The class alone can be linked: fields are no members.
    return FullName(*user.owner) + " (" +
           (user.field->name.empty() ? "any child" : user.field->name) + ")";
}

std::string IncludeLine(const std::string& code, const std::string& name)
{
    return "#include \"" + code + "/" + name + ".h\"\n";
}

class ClassWriter
{
public:
    ClassWriter(const Class& owner, const Members& members,
                const std::set<std::string>& objectNames)
        : m_owner(owner),
          m_members(members),
          m_objectNames(objectNames),
          m_groups(ClassAccessors(owner))
    {
    }

    std::string Text() const
    {
        return kNotice + Includes() + "\n" + ForeignDeclarations() + "namespace " +
               m_owner.CodeName() + "\n{\n\n" + OwnDeclarations() + ClassNumber() + ClassText() +
               "\n}  // namespace " + m_owner.CodeName() + "\n";
    }

private:
    std::string BaseText() const
    {
        return m_owner.base == nullptr ? "Object"
                                       : schemagen::ClassText(m_owner.base, m_owner.CodeName());
    }

    std::string Includes() const
    {
        std::set<std::string> lines;
        lines.insert(IncludeLine(m_owner.CodeName(), "Common"));
        if (m_owner.base != nullptr)
        {
            lines.insert(IncludeLine(m_owner.base->CodeName(), m_owner.base->name));
        }
        for (const Field& field : m_owner.fields)
        {
            if (field.enumeration != nullptr)
            {
                lines.insert(IncludeLine(field.enumeration->CodeName(), field.enumeration->name));
            }
            if (field.kind == Kind::Vector || field.kind == Kind::Content)
            {
                lines.insert("#include \"zorvex_api/Vector.h\"\n");
            }
            if (field.kind == Kind::Matrix || field.asMatrix)
            {
                lines.insert("#include \"zorvex_api/Transf.h\"\n");
            }
        }
        for (const std::string& line : m_members.includes)
        {
            lines.insert(line + "\n");
        }
        return Join(
            lines, [](const std::string& line) { return line; }, "");
    }

    template <class List, class Name>
    static std::string Join(const List& list, Name name, const std::string& separator)
    {
        std::string text;
        for (const auto& item : list)
        {
            text += (text.empty() ? "" : separator) + name(item);
        }
        return text;
    }

    // Classes that accessors name, by C++ namespace.
    std::map<std::string, std::set<std::string>> NamedClasses() const
    {
        std::map<std::string, std::set<std::string>> named;
        for (const FieldGroup& group : m_groups)
        {
            const Kind kind = group.field->kind;
            const bool isTyped = kind == Kind::Reference || kind == Kind::References ||
                                 kind == Kind::Element || kind == Kind::Elements;
            if (group.accessors.empty() || !isTyped)
            {
                continue;
            }
            const Class* target = group.field->target;
            const std::string code = target == nullptr ? "zorvex60" : target->CodeName();
            const std::string name = target == nullptr ? "IdObject" : target->name;
            if (target != &m_owner && target != m_owner.base)
            {
                named[code].insert(name);
            }
        }
        if (!m_members.declared.empty())
        {
            named[m_owner.CodeName()].insert(m_members.declared.begin(), m_members.declared.end());
        }
        return named;
    }

    static std::string Declare(const std::set<std::string>& names)
    {
        return Join(
            names, [](const std::string& name) { return "class " + name + ";\n"; }, "");
    }

    std::string ForeignDeclarations() const
    {
        std::string text;
        for (const auto& [code, names] : NamedClasses())
        {
            if (code != m_owner.CodeName())
            {
                text += "namespace " + code + "\n{\n" + Declare(names) + "}  // namespace " + code +
                        "\n\n";
            }
        }
        return text;
    }

    std::string OwnDeclarations() const
    {
        const auto named = NamedClasses();
        const auto own = named.find(m_owner.CodeName());
        return own == named.end() ? std::string() : Declare(own->second) + "\n";
    }

    std::string ClassNumber() const
    {
        std::string text = "/// The class value of " + m_owner.name +
                           " in this session; 0 before the first.\n" +
                           "extern ZORVEX_API short zorvexClass" + m_owner.name + ";\n";
        if (!m_owner.legacyName.empty())
        {
            text += "/// The same, under the older name.\nextern ZORVEX_API short zorvexClass" +
                    m_owner.legacyName + ";\n";
        }
        return text + "\n";
    }

    std::string Documentation() const
    {
        std::string text =
            Wrap("", "Class `" + m_owner.name + "`" + (m_owner.abstract ? ", abstract" : "") +
                         ": schema type `" + m_owner.schemaType + "`, version \"" +
                         m_owner.module->version + "\".");
        text += "///\n" +
                Wrap("", "Base: " +
                             (m_owner.base == nullptr ? std::string("zorvex_api::Object")
                                                      : FullName(*m_owner.base)) +
                             ". " +
                             (m_owner.equivalent.empty()
                                  ? std::string("It has no equivalent class.")
                                  : "In comparisons it counts as " + m_owner.equivalent + "."));
        if (!m_owner.derived.empty())
        {
            text += Wrap("", "Derived: " +
                                 schemagen::Join(m_owner.derived, [](const Class* item)
                                                 { return FullName(*item); }) +
                                 ".");
        }
        if (!m_owner.users.empty())
        {
            text += Wrap("", "Used by: " + schemagen::Join(m_owner.users, UserText) + ".");
        }
        return text;
    }

    std::string ClassText() const
    {
        const std::string& name = m_owner.name;
        std::string text =
            Documentation() + "class ZORVEX_API " + name + " : public " + BaseText() +
            "\n{\npublic:\n    /// A root that belongs to the caller.\n    " + name + "();\n" +
            "    /// Attaches the new object to `owner`, which may be null. A " +
            "refusal raises code 2.\n    explicit " + name + "(Object* owner);\n    ~" + name +
            "() override;\n" + HiddenNames();
        for (const FieldGroup& group : m_groups)
        {
            if (!group.accessors.empty())
            {
                text += "\n    // --- " + group.field->name + ": " + Describe(*group.field) + "\n";
            }
            for (const Accessor& accessor : group.accessors)
            {
                text += AccessorText(accessor);
            }
        }
        if (!m_members.declarations.empty())
        {
            text += "\n    // --- further operations\n" + m_members.declarations;
        }
        return text + "\nprivate:\n    " + name + "(const " + name + "&) = delete;\n    " + name +
               "& operator=(const " + name + "&) = delete;\n};\n";
    }

    // Overloads of a base that an accessor would hide, so that both can be called.
    std::string HiddenNames() const
    {
        std::set<std::string> own;
        std::set<std::string> signatures;
        for (const FieldGroup& group : m_groups)
        {
            for (const Accessor& accessor : group.accessors)
            {
                own.insert(accessor.name);
                signatures.insert(accessor.Signature());
            }
        }
        std::set<std::string> hidden;  // "Class::Name"
        for (const std::string& name : own)
        {
            if (m_objectNames.count(name) != 0)
            {
                hidden.insert("Object::" + name);
            }
        }
        for (const Class* base = m_owner.base; base != nullptr; base = base->base)
        {
            AddHidden(*base, own, signatures, hidden);
        }
        return Join(
            hidden, [](const std::string& name) { return "    using " + name + ";\n"; }, "");
    }

    // A field that bears the name of a base's field takes its place; other accessors stay in reach.
    void AddHidden(const Class& base, const std::set<std::string>& own,
                   const std::set<std::string>& signatures, std::set<std::string>& hidden) const
    {
        for (const FieldGroup& group : ClassAccessors(base))
        {
            const bool isReplaced = std::any_of(m_groups.begin(), m_groups.end(),
                                                [&](const FieldGroup& mine)
                                                { return mine.field->name == group.field->name; });
            for (const Accessor& accessor : group.accessors)
            {
                if (!isReplaced && own.count(accessor.name) != 0 &&
                    signatures.count(accessor.Signature()) == 0)
                {
                    hidden.insert(schemagen::ClassText(&base, m_owner.CodeName()) +
                                  "::" + accessor.name);
                }
            }
        }
    }

    static std::string AccessorText(const Accessor& accessor)
    {
        const std::string head = "    " + accessor.result + " " + accessor.name + "(" +
                                 accessor.parameters + ")" + (accessor.isConst ? " const" : "");
        const std::string oneLine = head + " { " + accessor.body + " }";
        return Wrap("    ", accessor.doc) +
               (oneLine.size() <= kColumns
                    ? oneLine + "\n"
                    : head + "\n    {\n        " + accessor.body + "\n    }\n");
    }

    const Class& m_owner;
    const Members& m_members;
    const std::set<std::string>& m_objectNames;
    std::vector<FieldGroup> m_groups;
};

}  // namespace

std::string ClassHeader(const Class& owner, const Members& members,
                        const std::set<std::string>& objectNames)
{
    return ClassWriter(owner, members, objectNames).Text();
}

std::string EnumHeader(const Enumeration& item)
{
    const std::string& name = item.name;
    std::string text = kNotice + IncludeLine(item.CodeName(), "Common") +
                       "#include \"zorvex_api/EnumBase.h\"\n\nnamespace " + item.CodeName() +
                       "\n{\n\n/// The field type code of " + name +
                       ": differs from run to run, stays for the life of a process.\n" +
                       "extern ZORVEX_API int zorvexFieldEnum" + item.TypeName() + ";\n\n";
    text += Wrap("", "Values of the schema type `" + item.TypeName() + "`, version \"" +
                         item.module->version + "\"; see zorvex_api::EnumBase.");
    if (!item.users.empty())
    {
        text += Wrap("", "Used by: " + Join(item.users, UserText) + ".");
    }
    text += "class ZORVEX_API " + name + " : public zorvex_api::EnumBase\n{\npublic:\n" +
            "    /// \"unset\".\n    " + name + "() : EnumBase(Values()) {}\n" +
            "    /// A text that isn't in the table gives an invalid value that keeps it; the empty"
            " one\n    /// gives \"unset\".\n    " +
            name + "(const String& text) : EnumBase(Values(), text) {}  // NOLINT\n" +
            "    /// As above, but only null gives \"unset\".\n    " + name +
            "(const char* text) : EnumBase(Values(), text) {}  // NOLINT\n" +
            "    /// One of the library's constants.\n    explicit " + name +
            "(Constant constant) : EnumBase(Values(), constant) {}\n    " + name + "(const " +
            name + "& other) = default;\n    ~" + name + "() override;\n\n    " + name +
            "& operator=(const " + name + "& other) = default;\n" +
            "    /// Raises code 2 with \"<text> is not a valid " + name +
            "\" for a text that isn't in the\n    /// table; the value then stays.\n    " + name +
            "& operator=(const String& text)\n    {\n" + "        Assign(Values(), \"" + name +
            "\", static_cast<const char*>(text));\n        return *this;\n    }\n    " + name +
            "& operator=(const char* text)\n    {\n        Assign(Values(), \"" + name +
            "\", text);\n        return *this;\n    }\n\n    using EnumBase::Set;\n" +
            "    int Set(const char* text) override;\n\n" +
            "    /// The texts in the order of the schema, \"unset\" first, null at the end.\n" +
            "    static const char* const* Values();\n};\n\n" + "inline int operator==(const " +
            name + "& a, const " + name + "& b)\n{\n    return zorvex_api::EnumBase::Equal(a, b);" +
            "\n}\ninline int operator!=(const " + name + "& a, const " + name +
            "& b)\n{\n    return zorvex_api::EnumBase::Equal(a, b) == 0 ? 1 : 0;\n}\n\n";
    for (const EnumValue& value : item.values)
    {
        text += "/// \"" + value.text + "\"\nextern ZORVEX_API const " + name + " " + name +
                value.constant + ";\n";
    }
    return text + "\n}  // namespace " + item.CodeName() + "\n";
}

std::string UmbrellaHeader(const Vocabulary& vocabulary, const CodeNamespace& code)
{
    std::set<std::string> names;
    for (const Class& item : vocabulary.classes)
    {
        if (item.module->code == &code)
        {
            names.insert(item.name);
        }
    }
    for (const Enumeration& item : vocabulary.enums)
    {
        if (item.module->code == &code)
        {
            names.insert(item.name);
        }
    }
    std::string text = kNotice + ("/// All classes and enumerations of " + code.name + ".\n\n");
    for (const std::string& name : names)
    {
        text += IncludeLine(code.name, name);
    }
    return text;
}

std::string CommonHeader(const CodeNamespace& code)
{
    return kNotice +
           std::string(
               "#include \"zorvex_api/TypedAccess.h\"\n\n/// Classes whose "
               "documents' namespace is\n/// ") +
           code.xmlNamespace->uri + "\nnamespace " + code.name +
           "\n{\n\nnamespace typed = zorvex_api::typed;\nusing zorvex_api::Array;\n" +
           "using zorvex_api::Configuration;\nusing zorvex_api::Handle;\n" +
           "using zorvex_api::Object;\nusing zorvex_api::Result;\nusing zorvex_api::String;\n" +
           "using zorvex_api::Transf;\nusing zorvex_api::Vector;\n\n}  // namespace " + code.name +
           "\n";
}

}  // namespace schemagen
