#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The vocabulary as read and checked: everything the emitters need, resolved.
namespace schemagen
{

/// Where something stands in a vocabulary file.
struct Place
{
    std::string file;
    int line = 0;
};

/// What a field holds; the words of the vocabulary files.
enum class Kind
{
    Logical,
    Int,
    Double,
    String,
    Reference,
    References,
    Element,
    Elements,
    Uri,
    Uris,
    External,
    Content,
    Matrix,
    Vector,
    Enum
};

struct Class;
struct Enumeration;

/// An XML namespace.
struct Namespace
{
    std::string key;     // as in "cha:Quotient"
    std::string prefix;  // in documents
    std::string uri;
};

/// A C++ namespace of generated classes.
struct CodeNamespace
{
    std::string name;
    const Namespace* xmlNamespace = nullptr;
};

struct Counts
{
    int classes = 0;
    int fields = 0;
    int enums = 0;
    int values = 0;
};

struct Module
{
    Place place;
    std::string name;  // of its file, without ".txt"
    const CodeNamespace* code = nullptr;
    std::string version;  // as the descriptors record it
    Counts expected;
};

struct Field
{
    Place place;
    std::string name;  // empty: any child
    Kind kind = Kind::String;
    std::optional<int> length;
    std::vector<std::string> classNames;  // as written
    bool required = false;
    bool deprecated = false;
    bool asMatrix = false;  // a list of numbers that accessors show as a matrix
    std::optional<std::string> defaultText;

    // Resolved:
    std::string qualifiedClasses;              // as registered
    const Class* target = nullptr;             // nearest common base; null when not known
    const Enumeration* enumeration = nullptr;  // of an enumerated field
};

struct Class
{
    Place place;
    const Module* module = nullptr;
    std::string name;
    std::string schemaType;
    std::string baseName;                       // as written
    std::optional<std::string> equivalentName;  // as written; absent: the base
    bool abstract = false;
    std::vector<std::string> members;             // of members/<member>.inc
    std::vector<std::string> replaced;            // accessors that the members replace
    std::string legacyName;                       // older name whose class number is kept in step
    std::vector<std::string> optionalAttributes;  // inherited ones that this class makes optional
    std::deque<Field> fields;

    // Resolved:
    const Class* base = nullptr;  // null: Object
    std::string qualifiedBase;
    std::string equivalent;  // local name; empty: none
    std::vector<const Class*> derived;
    struct User
    {
        const Class* owner;
        const Field* field;
    };
    std::vector<User> users;

    const Namespace& XmlNamespace() const { return *module->code->xmlNamespace; }
    const std::string& CodeName() const { return module->code->name; }
    std::string QualifiedName() const { return XmlNamespace().uri + ":" + name; }
    /// True when `other` is this class or a base of it.
    bool Is(const Class& other) const;
};

struct EnumValue
{
    std::string text;
    std::string constant;  // ending of the constant's name
};

struct Enumeration
{
    Place place;
    const Module* module = nullptr;
    std::string name;               // with the leading "e"
    std::vector<EnumValue> values;  // "unset" first
    std::vector<Class::User> users;

    const std::string& CodeName() const { return module->code->name; }
    /// The name of the schema type.
    std::string TypeName() const { return name.substr(1); }
    bool Has(std::string_view text) const;
};

/// Everything, in registration order. Elements keep their addresses.
struct Vocabulary
{
    std::deque<Namespace> namespaces;
    std::deque<CodeNamespace> codes;
    std::deque<Module> modules;
    std::deque<Class> classes;
    std::deque<Enumeration> enums;
    std::vector<std::string> unregistered;  // classes that only fields know

    const Namespace* FindNamespace(std::string_view key) const;
    const CodeNamespace* FindCode(std::string_view name) const;
    /// A class as a vocabulary file names it: "Name" in the main namespace, or "key:Name".
    const Class* FindClass(std::string_view reference) const;
};

}  // namespace schemagen
