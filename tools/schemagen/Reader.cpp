#include "Reader.h"

#include <cctype>
#include <charconv>
#include <map>

#include "LineScanner.h"
#include "VocabularyError.h"

namespace schemagen
{

namespace
{

const std::map<std::string, Kind, std::less<>> kKinds = {
    {"logical", Kind::Logical},
    {"int", Kind::Int},
    {"double", Kind::Double},
    {"string", Kind::String},
    {"reference", Kind::Reference},
    {"references", Kind::References},
    {"element", Kind::Element},
    {"elements", Kind::Elements},
    {"uri", Kind::Uri},
    {"uris", Kind::Uris},
    {"external", Kind::External},
    {"content", Kind::Content},
    {"matrix", Kind::Matrix},
    {"vector", Kind::Vector},
    {"enum", Kind::Enum},
};

bool IsIdentifier(const std::string& text)
{
    if (text.empty() || std::isdigit(static_cast<unsigned char>(text.front())) != 0)
    {
        return false;
    }
    for (const char c : text)
    {
        if (std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '_')
        {
            return false;
        }
    }
    return true;
}

std::string Identifier(Line& line, const char* what)
{
    const std::string& text = line.Next(what).text;
    if (!IsIdentifier(text))
    {
        throw VocabularyError(line.place, "\"" + text + "\" is no " + what);
    }
    return text;
}

int Number(const Line& line, const std::string& text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0)
    {
        throw VocabularyError(line.place, "\"" + text + "\" is no number");
    }
    return value;
}

void Expect(Line& line, const char* word)
{
    if (!line.Skip(word))
    {
        throw VocabularyError(line.place, std::string("\"") + word + "\" expected");
    }
}

int Count(Line& line, const char* what)
{
    const int count = Number(line, line.Next("count").text);
    Expect(line, what);
    return count;
}

class ModulesReader
{
public:
    explicit ModulesReader(Vocabulary& out) : m_out(out) {}

    void Read(const std::filesystem::path& file)
    {
        LineScanner scanner(file);
        Line line;
        while (scanner.Read(line))
        {
            if (line.Skip("namespace"))
            {
                ReadNamespace(line);
            }
            else if (line.Skip("code"))
            {
                ReadCode(line);
            }
            else if (line.Skip("module"))
            {
                ReadModule(line);
            }
            else if (line.Skip("unregistered"))
            {
                while (!line.AtEnd())
                {
                    m_out.unregistered.push_back(line.Next("class name").text);
                }
            }
            else
            {
                throw VocabularyError(
                    line.place, "\"namespace\", \"code\", \"module\" or \"unregistered\" expected");
            }
            line.ExpectEnd();
        }
    }

private:
    void ReadNamespace(Line& line)
    {
        Namespace item;
        item.key = Identifier(line, "namespace key");
        item.prefix = line.Next("prefix").text;
        item.uri = line.Next("URI").text;
        m_out.namespaces.push_back(std::move(item));
    }

    void ReadCode(Line& line)
    {
        CodeNamespace item;
        item.name = Identifier(line, "C++ namespace");
        const std::string key = line.Next("namespace key").text;
        item.xmlNamespace = m_out.FindNamespace(key);
        if (item.xmlNamespace == nullptr)
        {
            throw VocabularyError(line.place, "unknown namespace \"" + key + "\"");
        }
        m_out.codes.push_back(std::move(item));
    }

    void ReadModule(Line& line)
    {
        Module item;
        item.place = line.place;
        item.name = Identifier(line, "module name");
        const std::string code = line.Next("C++ namespace").text;
        item.code = m_out.FindCode(code);
        if (item.code == nullptr)
        {
            throw VocabularyError(line.place, "unknown C++ namespace \"" + code + "\"");
        }
        item.version = line.Next("version text").text;
        Expect(line, ":");
        item.expected.classes = Count(line, "classes");
        item.expected.fields = Count(line, "fields");
        item.expected.enums = Count(line, "enums");
        item.expected.values = Count(line, "values");
        m_out.modules.push_back(std::move(item));
    }

    Vocabulary& m_out;
};

class ModuleReader
{
public:
    ModuleReader(Vocabulary& out, const Module& module) : m_out(out), m_module(module) {}

    void Read(const std::filesystem::path& file)
    {
        LineScanner scanner(file);
        Line line;
        while (scanner.Read(line))
        {
            ReadLine(line);
            line.ExpectEnd();
        }
    }

private:
    void ReadLine(Line& line)
    {
        if (!line.indented && line.Skip("class"))
        {
            ReadClass(line);
        }
        else if (!line.indented && line.Skip("enum"))
        {
            ReadEnum(line);
        }
        else if (!line.indented)
        {
            throw VocabularyError(line.place, "\"class\" or \"enum\" expected");
        }
        else if (m_class != nullptr)
        {
            ReadClassLine(line);
        }
        else if (m_enum != nullptr)
        {
            ReadValue(line);
        }
        else
        {
            throw VocabularyError(line.place, "this line belongs to no class or enumeration");
        }
    }

    void ReadClass(Line& line)
    {
        Class item;
        item.place = line.place;
        item.module = &m_module;
        item.name = Identifier(line, "class name");
        item.schemaType = item.name + "Type";
        if (!line.Skip(":"))
        {
            const std::string type = line.Next("\":\"").text;
            if (type.size() < 3 || type.front() != '(' || type.back() != ')')
            {
                throw VocabularyError(line.place, "\":\" or a schema type in brackets expected");
            }
            item.schemaType = type.substr(1, type.size() - 2);
            Expect(line, ":");
        }
        item.baseName = line.Next("base class").text;
        item.abstract = line.Skip("abstract");
        if (line.Skip("equivalent"))
        {
            const std::string name = line.Next("class name or \"none\"").text;
            item.equivalentName = name == "none" ? std::string() : name;
        }
        m_enum = nullptr;
        m_class = &m_out.classes.emplace_back(std::move(item));
    }

    void ReadClassLine(Line& line)
    {
        if (line.Skip("@members"))
        {
            do
            {
                m_class->members.push_back(line.AtEnd() ? m_class->name
                                                        : Identifier(line, "name of members"));
            } while (!line.AtEnd());
        }
        else if (line.Skip("@replaces"))
        {
            m_class->replaced.push_back(Identifier(line, "accessor"));
        }
        else if (line.Skip("@legacy"))
        {
            m_class->legacyName = Identifier(line, "class name");
        }
        else if (line.Skip("@optional"))
        {
            m_class->optionalAttributes.push_back(Identifier(line, "attribute"));
        }
        else
        {
            ReadField(line);
        }
    }

    void ReadField(Line& line)
    {
        Field field;
        field.place = line.place;
        if (!line.Skip("(any)"))
        {
            field.name = Identifier(line, "field name");
        }
        ReadType(line, field);
        ReadClasses(line, field);
        field.asMatrix = line.Skip("@matrix");
        field.required = line.Skip("required");
        field.deprecated = line.Skip("deprecated");
        if (line.Skip("default"))
        {
            field.defaultText = line.Next("default").text;
        }
        m_class->fields.push_back(std::move(field));
    }

    static void ReadType(Line& line, Field& field)
    {
        std::string type = line.Next("field type").text;
        const std::size_t bracket = type.find('[');
        if (bracket != std::string::npos && type.back() == ']')
        {
            field.length = Number(line, type.substr(bracket + 1, type.size() - bracket - 2));
            type.resize(bracket);
        }
        const auto kind = kKinds.find(type);
        if (kind == kKinds.end())
        {
            throw VocabularyError(line.place, "unknown field type \"" + type + "\"");
        }
        field.kind = kind->second;
    }

    static void ReadClasses(Line& line, Field& field)
    {
        static const char* const kFlags[] = {"@matrix", "required", "deprecated", "default"};
        Line ahead = line;
        for (const char* flag : kFlags)
        {
            if (ahead.Skip(flag))
            {
                return;
            }
        }
        if (line.AtEnd())
        {
            return;
        }
        do
        {
            field.classNames.push_back(line.Next("class name").text);
        } while (line.Skip("|"));
    }

    void ReadEnum(Line& line)
    {
        Enumeration item;
        item.place = line.place;
        item.module = &m_module;
        item.name = Identifier(line, "enumeration name");
        if (item.name.size() < 2 || item.name.front() != 'e')
        {
            throw VocabularyError(line.place, "the name of an enumeration begins with \"e\"");
        }
        item.values.push_back({"unset", "Unset"});
        m_class = nullptr;
        m_enum = &m_out.enums.emplace_back(std::move(item));
    }

    void ReadValue(Line& line)
    {
        EnumValue value;
        value.text = line.Next("value").text;
        value.constant = value.text;
        if (!value.constant.empty())
        {
            value.constant.front() =
                static_cast<char>(std::toupper(static_cast<unsigned char>(value.constant.front())));
        }
        if (line.Skip("as"))
        {
            value.constant = Identifier(line, "constant name");
        }
        m_enum->values.push_back(std::move(value));
    }

    Vocabulary& m_out;
    const Module& m_module;
    Class* m_class = nullptr;
    Enumeration* m_enum = nullptr;
};

}  // namespace

Vocabulary ReadVocabulary(const std::filesystem::path& folder)
{
    Vocabulary vocabulary;
    ModulesReader(vocabulary).Read(folder / "modules.txt");
    for (const Module& module : vocabulary.modules)
    {
        ModuleReader(vocabulary, module).Read(folder / (module.name + ".txt"));
    }
    return vocabulary;
}

}  // namespace schemagen
