#include "ReferenceEmitter.h"

#include <algorithm>
#include <string>
#include <vector>

#include "Naming.h"

namespace schemagen
{

namespace
{

const char kStyle[] =
    "<style>body{font:15px/1.45 sans-serif;max-width:70em;margin:2em auto;padding:0 1em}"
    "table{border-collapse:collapse;width:100%}td,th{text-align:left;vertical-align:top;"
    "border-bottom:1px solid #ddd;padding:.2em .6em}code{font-family:monospace}"
    "h2{margin-top:2em;border-top:2px solid #888;padding-top:.4em}ul{list-style:none;"
    "padding-left:1.2em}.abstract{font-style:italic}.note{color:#666}</style>\n";

std::string Escape(const std::string& text)
{
    std::string out;
    for (const char c : text)
    {
        switch (c)
        {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::string Page(const std::string& title, const std::string& body)
{
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>" +
           Escape(title) + "</title>\n" + kStyle + "</head><body>\n<h1>" + Escape(title) +
           "</h1>\n" + body + "</body></html>\n";
}

template <class Item>
std::string Anchor(const Item& item)
{
    return item.CodeName() + "-" + item.name;
}

template <class Item>
std::string Link(const Item& item)
{
    return "<a href=\"" + item.module->name + ".html#" + Anchor(item) + "\">" + item.name + "</a>";
}

std::string UserLinks(const std::vector<Class::User>& users)
{
    std::string text;
    for (const Class::User& user : users)
    {
        text += (text.empty() ? "" : ", ") + Link(*user.owner) + " (" +
                (user.field->name.empty() ? "any child" : user.field->name) + ")";
    }
    return text;
}

std::string Tree(const std::vector<const Class*>& classes)
{
    if (classes.empty())
    {
        return std::string();
    }
    std::vector<const Class*> sorted = classes;
    std::sort(sorted.begin(), sorted.end(),
              [](const Class* a, const Class* b)
              { return a->name != b->name ? a->name < b->name : a->CodeName() < b->CodeName(); });
    std::string text = "<ul>\n";
    for (const Class* item : sorted)
    {
        text += std::string("<li") + (item->abstract ? " class=\"abstract\"" : "") + ">" +
                Link(*item) + (item->CodeName() == "zorvex60" ? "" : " " + item->CodeName()) +
                Tree(item->derived) + "</li>\n";
    }
    return text + "</ul>\n";
}

class ReferenceWriter
{
public:
    explicit ReferenceWriter(const Vocabulary& vocabulary) : m_vocabulary(vocabulary) {}

    std::string Index() const
    {
        std::string text =
            "<h2>Modules</h2>\n<table><tr><th>Module</th><th>Version</th>"
            "<th>C++ namespace</th><th>Classes</th><th>Fields</th>"
            "<th>Enumerations</th><th>Values</th></tr>\n";
        for (const Module& module : m_vocabulary.modules)
        {
            text += "<tr><td><a href=\"" + module.name + ".html\">" + module.name +
                    "</a></td><td>" + Escape(module.version) + "</td><td><code>" +
                    module.code->name + "</code></td>";
            for (const int count : {module.expected.classes, module.expected.fields,
                                    module.expected.enums, module.expected.values})
            {
                text += "<td>" + std::to_string(count) + "</td>";
            }
            text += "</tr>\n";
        }
        std::vector<const Class*> roots;
        for (const Class& item : m_vocabulary.classes)
        {
            if (item.base == nullptr)
            {
                roots.push_back(&item);
            }
        }
        return Page("Vocabulary", text +
                                      "</table>\n<h2>Classes under Object</h2>\n"
                                      "<p class=\"note\">Abstract classes stand in italics.</p>\n" +
                                      Tree(roots));
    }

    std::string ModulePage(const Module& module) const
    {
        std::string text =
            "<p><a href=\"index.html\">All modules and classes</a></p>\n<p>C++ "
            "namespace <code>" +
            module.code->name + "</code>, XML namespace <code>" +
            Escape(module.code->xmlNamespace->uri) + "</code>.</p>\n";
        for (const Class& item : m_vocabulary.classes)
        {
            if (item.module == &module)
            {
                text += ClassText(item);
            }
        }
        for (const Enumeration& item : m_vocabulary.enums)
        {
            if (item.module == &module)
            {
                text += EnumText(item);
            }
        }
        return Page(module.version, text);
    }

private:
    std::string ClassText(const Class& item) const
    {
        std::string text =
            "<h2 id=\"" + Anchor(item) + "\">" + item.name +
            (item.abstract ? " <span class=\"note\">abstract</span>" : "") +
            "</h2>\n<p>Schema type <code>" + item.schemaType +
            "</code>. Base: " + (item.base == nullptr ? std::string("Object") : Link(*item.base)) +
            ". " +
            (item.equivalent.empty() ? std::string("No equivalent class.")
                                     : "Counts as " + item.equivalent + " in comparisons.") +
            "</p>\n";
        if (!item.derived.empty())
        {
            text += "<p>Derived: ";
            for (std::size_t i = 0; i < item.derived.size(); ++i)
            {
                text += (i == 0 ? "" : ", ") + Link(*item.derived[i]);
            }
            text += ".</p>\n";
        }
        if (!item.users.empty())
        {
            text += "<p>Used by: " + UserLinks(item.users) + ".</p>\n";
        }
        return text + FieldTable(item);
    }

    std::string FieldTable(const Class& item) const
    {
        if (item.fields.empty())
        {
            return "<p class=\"note\">No fields of its own.</p>\n";
        }
        std::string text =
            "<table><tr><th>Field</th><th>Type</th><th>Class</th><th>Default</th>"
            "<th></th></tr>\n";
        for (const Field& field : item.fields)
        {
            Field bare = field;  // its type alone
            bare.classNames.clear();
            bare.required = false;
            bare.deprecated = false;
            bare.defaultText.reset();
            text += "<tr><td><code>" +
                    (field.name.empty() ? std::string("(any child)") : field.name) +
                    "</code></td><td>" + Describe(bare) + "</td><td>" + FieldClasses(field) +
                    "</td><td>" + Escape(field.defaultText.value_or("")) + "</td><td>" +
                    (field.required ? "required " : "") + (field.deprecated ? "deprecated" : "") +
                    "</td></tr>\n";
        }
        return text + "</table>\n";
    }

    std::string FieldClasses(const Field& field) const
    {
        if (field.enumeration != nullptr)
        {
            return Link(*field.enumeration);
        }
        std::string text;
        for (const std::string& name : field.classNames)
        {
            const Class* target = m_vocabulary.FindClass(name);
            text += (text.empty() ? "" : " or ") + (target == nullptr ? name : Link(*target));
        }
        return text;
    }

    static std::string EnumText(const Enumeration& item)
    {
        std::string text = "<h2 id=\"" + Anchor(item) + "\">" + item.name + "</h2>\n";
        if (!item.users.empty())
        {
            text += "<p>Used by: " + UserLinks(item.users) + ".</p>\n";
        }
        text += "<table><tr><th>Value</th><th>Constant</th></tr>\n";
        for (const EnumValue& value : item.values)
        {
            text += "<tr><td>" + Escape(value.text) + "</td><td><code>" + item.name +
                    value.constant + "</code></td></tr>\n";
        }
        return text + "</table>\n";
    }

    const Vocabulary& m_vocabulary;
};

}  // namespace

void WriteReference(const Vocabulary& vocabulary, OutputFolder& out)
{
    const ReferenceWriter writer(vocabulary);
    out.Write("index.html", writer.Index());
    for (const Module& module : vocabulary.modules)
    {
        out.Write(module.name + ".html", writer.ModulePage(module));
    }
}

}  // namespace schemagen
