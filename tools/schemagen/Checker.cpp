#include "Checker.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <map>
#include <set>
#include <utility>

#include "VocabularyError.h"

namespace schemagen
{

namespace
{

std::string Quoted(const std::string& text)
{
    return "\"" + text + "\"";
}

bool IsElement(Kind kind)
{
    return kind == Kind::Element || kind == Kind::Elements;
}

bool RefersToClass(Kind kind)
{
    return IsElement(kind) || kind == Kind::Reference || kind == Kind::References ||
           kind == Kind::Uri || kind == Kind::Uris;
}

bool MayHaveLength(Kind kind)
{
    return kind == Kind::Logical || kind == Kind::Int || kind == Kind::Double ||
           kind == Kind::Content || kind == Kind::Matrix;
}

std::string LocalName(const std::string& reference)
{
    return reference.substr(reference.find(':') + 1);
}

// How many numbers `text` lists, split by commas or blanks; -1 when it holds anything else.
int CountNumbers(const std::string& text, bool whole)
{
    int count = 0;
    const char* at = text.c_str();
    while (*at != '\0')
    {
        char* end = nullptr;
        if (whole)
        {
            static_cast<void>(std::strtol(at, &end, 10));
        }
        else
        {
            static_cast<void>(std::strtod(at, &end));
        }
        if (end == at || (*end != '\0' && *end != ',' && *end != ' '))
        {
            return -1;
        }
        ++count;
        at = *end == '\0' ? end : end + 1;
    }
    return count;
}

class Linker
{
public:
    explicit Linker(Vocabulary& vocabulary) : m_vocabulary(vocabulary) {}

    void Link()
    {
        CheckNames();
        for (Class& item : m_vocabulary.classes)
        {
            LinkBases(item);
        }
        for (const Class& item : m_vocabulary.classes)
        {
            CheckChain(item);
        }
        for (Class& item : m_vocabulary.classes)
        {
            LinkFields(item);
            CheckOptionalAttributes(item);
        }
        for (const Enumeration& item : m_vocabulary.enums)
        {
            CheckValues(item);
        }
        for (const Module& module : m_vocabulary.modules)
        {
            CheckCounts(module);
        }
    }

private:
    void CheckNames()
    {
        for (Class& item : m_vocabulary.classes)
        {
            const bool isNew = m_classes.emplace(Key(item), &item).second;
            const bool isNewInCode = m_codeNames.insert(item.CodeName() + "::" + item.name).second;
            if (!isNew || !isNewInCode)
            {
                throw VocabularyError(item.place, "class " + Quoted(item.name) + " exists already");
            }
        }
        for (const Enumeration& item : m_vocabulary.enums)
        {
            if (!m_codeNames.insert(item.CodeName() + "::" + item.name).second)
            {
                throw VocabularyError(item.place,
                                      "enumeration " + Quoted(item.name) + " exists already");
            }
        }
    }

    static std::string Key(const Class& item) { return item.XmlNamespace().key + ":" + item.name; }

    Class* Find(const std::string& reference) const
    {
        const bool qualified = reference.find(':') != std::string::npos;
        const auto found = m_classes.find(qualified ? reference : "main:" + reference);
        return found == m_classes.end() ? nullptr : found->second;
    }

    void LinkBases(Class& item)
    {
        if (item.baseName == "Object")
        {
            item.qualifiedBase = "Object";
        }
        else
        {
            Class* base = Find(item.baseName);
            if (base == nullptr)
            {
                throw VocabularyError(item.place, "unknown base class " + Quoted(item.baseName));
            }
            item.base = base;
            item.qualifiedBase = base->QualifiedName();
            base->derived.push_back(&item);
        }
        const std::string equivalent = item.equivalentName.value_or(item.baseName);
        if (!equivalent.empty() && equivalent != "Object" && Find(equivalent) == nullptr)
        {
            throw VocabularyError(item.place, "unknown equivalent class " + Quoted(equivalent));
        }
        item.equivalent = LocalName(equivalent);
    }

    void CheckChain(const Class& item) const
    {
        std::size_t steps = 0;
        for (const Class* step = item.base; step != nullptr; step = step->base)
        {
            if (++steps > m_vocabulary.classes.size())
            {
                throw VocabularyError(item.place,
                                      "class " + Quoted(item.name) + " is a base of itself");
            }
        }
    }

    void LinkFields(Class& item)
    {
        std::set<std::string> names;
        for (Field& field : item.fields)
        {
            if (!field.name.empty() && !names.insert(field.name).second)
            {
                throw VocabularyError(
                    field.place, "field " + Quoted(field.name) + " exists already in this class");
            }
            CheckInherited(item, field);
            CheckForm(field);
            if (field.kind == Kind::Enum)
            {
                LinkEnumeration(item, field);
            }
            else if (RefersToClass(field.kind))
            {
                LinkClasses(item, field);
            }
            if (field.defaultText)
            {
                CheckDefault(field);
            }
        }
    }

    // The registry keeps the first attribute of a name and refuses others; elements may repeat.
    static void CheckInherited(const Class& item, const Field& field)
    {
        if (IsElement(field.kind) || field.kind == Kind::Content)
        {
            return;
        }
        for (const Class* step = item.base; step != nullptr; step = step->base)
        {
            for (const Field& inherited : step->fields)
            {
                if (inherited.name == field.name)
                {
                    throw VocabularyError(field.place, "field " + Quoted(field.name) +
                                                           " exists already in class " +
                                                           Quoted(step->name));
                }
            }
        }
    }

    static void CheckForm(const Field& field)
    {
        if (field.name.empty() && !IsElement(field.kind))
        {
            throw VocabularyError(field.place, "only an element can take any child");
        }
        if (field.length && !MayHaveLength(field.kind))
        {
            throw VocabularyError(field.place, "a field of this type has no length");
        }
        if (field.kind == Kind::Content)
        {
            const std::string name = field.classNames.empty() ? "" : field.classNames.front();
            if (field.classNames.size() != 1 ||
                (name != "String" && name != "Double" && name != "Integer"))
            {
                throw VocabularyError(field.place,
                                      "\"String\", \"Double\" or \"Integer\" expected");
            }
        }
        else if (!RefersToClass(field.kind) && field.kind != Kind::Enum &&
                 !field.classNames.empty())
        {
            throw VocabularyError(field.place, "unexpected " + Quoted(field.classNames.front()));
        }
    }

    void LinkEnumeration(const Class& item, Field& field)
    {
        if (field.classNames.size() != 1)
        {
            throw VocabularyError(field.place, "enumeration name expected");
        }
        const std::string& name = field.classNames.front();
        Enumeration* found = nullptr;
        // One of the same C++ namespace comes first, then the first of that name.
        for (Enumeration& candidate : m_vocabulary.enums)
        {
            const bool isOwn = candidate.CodeName() == item.CodeName();
            if (candidate.name == name && (found == nullptr || isOwn))
            {
                found = &candidate;
                if (isOwn)
                {
                    break;
                }
            }
        }
        if (found == nullptr)
        {
            throw VocabularyError(field.place, "unknown enumeration " + Quoted(name));
        }
        field.enumeration = found;
        found->users.push_back({&item, &field});
    }

    void LinkClasses(const Class& item, Field& field)
    {
        if (field.classNames.size() > 1 && IsElement(field.kind))
        {
            throw VocabularyError(field.place, "an element has one class");
        }
        if (field.classNames.empty() && IsElement(field.kind))
        {
            field.classNames.push_back(field.name);  // an element that bears its class's name
        }
        bool isFirst = true;
        for (const std::string& name : field.classNames)
        {
            const Class* target = LinkClass(item, field, name);
            field.target = isFirst ? target : CommonBase(field.target, target);
            isFirst = false;
        }
    }

    // Unregistered classes don't take part in the common base.
    static const Class* CommonBase(const Class* first, const Class* second)
    {
        if (first == nullptr || second == nullptr)
        {
            return first == nullptr ? second : first;
        }
        while (first != nullptr && !second->Is(*first))
        {
            first = first->base;
        }
        return first;
    }

    const Class* LinkClass(const Class& item, Field& field, const std::string& name)
    {
        if (!field.qualifiedClasses.empty())
        {
            field.qualifiedClasses += ' ';
        }
        if (name == "Object")
        {
            field.qualifiedClasses += name;
            return nullptr;
        }
        const std::size_t colon = name.find(':');
        const std::string key = colon == std::string::npos ? "main" : name.substr(0, colon);
        const Namespace* space = m_vocabulary.FindNamespace(key);
        Class* target = Find(name);
        const auto& known = m_vocabulary.unregistered;
        if (space == nullptr ||
            (target == nullptr && std::find(known.begin(), known.end(), name) == known.end()))
        {
            throw VocabularyError(field.place, "unknown class " + Quoted(name));
        }
        field.qualifiedClasses += space->uri + ":" + LocalName(name);
        if (target != nullptr)
        {
            target->users.push_back({&item, &field});
        }
        return target;
    }

    static void CheckDefault(const Field& field)
    {
        const std::string& text = *field.defaultText;
        const int length = field.kind == Kind::Vector ? 3 : field.length.value_or(1);
        bool good = true;
        switch (field.kind)
        {
            case Kind::Logical:
                good = text == "true" || text == "false";
                break;
            case Kind::Int:
            case Kind::Double:
            case Kind::Vector:
            {
                const int count = CountNumbers(text, field.kind == Kind::Int);
                good = count > 0 && (length == 0 || count == length);
                break;
            }
            case Kind::Enum:
                good = field.enumeration->Has(text);
                break;
            case Kind::String:
                break;
            case Kind::Element:
            case Kind::Elements:
                good = text == "suppressId=true";
                break;
            default:
                good = false;
        }
        if (!good)
        {
            throw VocabularyError(field.place,
                                  Quoted(text) + " is no value of field " + Quoted(field.name));
        }
    }

    static void CheckOptionalAttributes(const Class& item)
    {
        for (const std::string& name : item.optionalAttributes)
        {
            bool found = false;
            for (const Class* step = item.base; step != nullptr && !found; step = step->base)
            {
                found = std::any_of(step->fields.begin(), step->fields.end(),
                                    [&](const Field& field)
                                    { return field.name == name && field.required; });
            }
            if (!found)
            {
                throw VocabularyError(item.place,
                                      Quoted(name) + " is no required attribute of a base class");
            }
        }
    }

    static void CheckValues(const Enumeration& item)
    {
        std::set<std::string> texts;
        std::set<std::string> constants;
        for (const EnumValue& value : item.values)
        {
            const bool isName = std::all_of(
                value.constant.begin(), value.constant.end(),
                [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; });
            if (!isName || value.constant.empty())
            {
                throw VocabularyError(item.place, "value " + Quoted(value.text) + " of " +
                                                      item.name + " needs \"as\" and a name");
            }
            if (!texts.insert(value.text).second || !constants.insert(value.constant).second)
            {
                throw VocabularyError(item.place, "value " + Quoted(value.text) + " of " +
                                                      item.name + " exists already");
            }
        }
    }

    void CheckCounts(const Module& module) const
    {
        Counts found;
        for (const Class& item : m_vocabulary.classes)
        {
            if (item.module == &module)
            {
                ++found.classes;
                found.fields += static_cast<int>(item.fields.size());
            }
        }
        for (const Enumeration& item : m_vocabulary.enums)
        {
            if (item.module == &module)
            {
                ++found.enums;
                found.values += static_cast<int>(item.values.size());
            }
        }
        Compare(module, "classes", module.expected.classes, found.classes);
        Compare(module, "fields", module.expected.fields, found.fields);
        Compare(module, "enums", module.expected.enums, found.enums);
        Compare(module, "values", module.expected.values, found.values);
    }

    static void Compare(const Module& module, const char* what, int expected, int found)
    {
        if (expected != found)
        {
            throw VocabularyError(module.place, "module " + module.name + " has " +
                                                    std::to_string(found) + " " + what + ", not " +
                                                    std::to_string(expected));
        }
    }

    Vocabulary& m_vocabulary;
    std::map<std::string, Class*> m_classes;  // by key and name
    std::set<std::string> m_codeNames;
};

}  // namespace

void CheckVocabulary(Vocabulary& vocabulary)
{
    Linker(vocabulary).Link();
}

}  // namespace schemagen
