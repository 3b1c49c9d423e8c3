#include "Naming.h"

#include <cctype>

namespace schemagen
{

namespace
{

bool EndsWith(const std::string& text, const std::string& ending)
{
    return text.size() >= ending.size() &&
           text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

bool IsPlural(const std::string& name)
{
    return EndsWith(name, "Options") || EndsWith(name, "Values");
}

std::string KindText(const Field& field)
{
    switch (field.kind)
    {
        case Kind::Logical:
            return "logical";
        case Kind::Int:
            return "int";
        case Kind::Double:
            return "double";
        case Kind::String:
            return "string";
        case Kind::Reference:
            return "reference";
        case Kind::References:
            return "references";
        case Kind::Element:
            return "element";
        case Kind::Elements:
            return "elements";
        case Kind::Uri:
            return "URI";
        case Kind::Uris:
            return "URIs";
        case Kind::External:
            return "external reference";
        case Kind::Content:
            return "content";
        case Kind::Matrix:
            return "matrix";
        case Kind::Vector:
            return "vector";
        case Kind::Enum:
            return "enum";
    }
    return std::string();
}

}  // namespace

std::string UpperFirst(std::string text)
{
    if (!text.empty())
    {
        text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    }
    return text;
}

std::string Stem(const std::string& fieldName)
{
    for (const char* ending : {"Refs", "Ref"})
    {
        if (EndsWith(fieldName, ending))
        {
            return UpperFirst(fieldName.substr(0, fieldName.size() - std::string(ending).size()));
        }
    }
    return UpperFirst(fieldName);
}

std::string Plural(const std::string& name)
{
    if (IsPlural(name))
    {
        return name;
    }
    if (EndsWith(name, "s") || EndsWith(name, "x") || EndsWith(name, "ch"))
    {
        return name + "es";
    }
    if (EndsWith(name, "y"))
    {
        return name.substr(0, name.size() - 1) + "ies";
    }
    return name + "s";
}

std::string ClassText(const Class* target, const std::string& code)
{
    const std::string name = target == nullptr ? "IdObject" : target->name;
    const std::string home = target == nullptr ? "zorvex60" : target->CodeName();
    return home == code ? name : home + "::" + name;
}

std::string EnumText(const Enumeration& target, const std::string& code)
{
    return target.CodeName() == code ? target.name : target.CodeName() + "::" + target.name;
}

std::string Describe(const Field& field)
{
    std::string text = KindText(field);
    if (field.length)
    {
        text += *field.length == 0 ? "[]" : "[" + std::to_string(*field.length) + "]";
    }
    for (std::size_t i = 0; i < field.classNames.size(); ++i)
    {
        text += (i == 0 ? " " : " or ") + field.classNames[i];
    }
    text += field.required ? ", required" : "";
    text += field.deprecated ? ", deprecated" : "";
    if (field.defaultText)
    {
        text += ", default \"" + *field.defaultText + "\"";
    }
    return text;
}

std::string WideLiteral(const std::string& text)
{
    return "u" + Literal(text);
}

std::string Literal(const std::string& text)
{
    std::string literal = "\"";
    for (const char c : text)
    {
        if (c == '"' || c == '\\')
        {
            literal += '\\';
        }
        literal += c;
    }
    return literal + "\"";
}

}  // namespace schemagen
