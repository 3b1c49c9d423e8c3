// libxml2, with what it lacks beside the library: a map of ids, and references that lead somewhere.
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "measured/ReferenceNames.h"
#include "measured/Subject.h"

namespace zorvex_bench
{

namespace
{

void Require(bool condition, const char* what)
{
    if (!condition)
    {
        throw std::runtime_error(what);
    }
}

std::string_view View(const xmlChar* text)
{
    return text != nullptr ? reinterpret_cast<const char*>(text) : "";
}

/// The value of an attribute without entities, which stays with the document.
std::string_view Value(const xmlAttr* attribute)
{
    return attribute->children != nullptr ? View(attribute->children->content) : "";
}

/// Calls `use` with each element from `first` on and below, in the order of the document.
template <class Use>
void ForEachElement(xmlNode* first, const Use& use)
{
    for (xmlNode* node = first; node != nullptr; node = node->next)
    {
        if (node->type == XML_ELEMENT_NODE)
        {
            use(node);
            ForEachElement(node->children, use);
        }
    }
}

class LibXml2Subject : public Subject
{
public:
    LibXml2Subject() { xmlInitParser(); }
    ~LibXml2Subject() override
    {
        DeleteCopy();
        Delete();
        xmlCleanupParser();
    }

    void Load(const std::string& path) override
    {
        m_document =
            xmlReadFile(path.c_str(), nullptr,
                        XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_COMPACT | XML_PARSE_NOBLANKS);
        Require(m_document != nullptr, "loading");
        ForEachElement(m_document->children, [this](xmlNode* node) { NoteId(node); });
        ForEachElement(m_document->children, [this](xmlNode* node) { Resolve(node); });
    }

    Contents Inspect() override
    {
        Contents contents{std::string(View(xmlDocGetRootElement(m_document)->name)), Walk(), 0};
        for (const Link& link : m_links)
        {
            contents.references += link.target != nullptr ? 1 : 0;
        }
        return contents;
    }

    std::uint64_t Walk() override { return Count(m_document); }

    void Copy() override
    {
        m_copy = xmlCopyDoc(m_document, 1);
        Require(m_copy != nullptr, "copying");
    }
    std::uint64_t WalkCopy() override { return Count(m_copy); }
    void DeleteCopy() override
    {
        xmlFreeDoc(m_copy);
        m_copy = nullptr;
    }

    void Save(const std::string& path) override
    {
        Require(xmlSaveFile(path.c_str(), m_document) > 0, "saving");
    }

    void Delete() override
    {
        xmlFreeDoc(m_document);
        m_document = nullptr;
        m_ids = {};
        m_links = {};
    }

private:
    struct Link
    {
        xmlAttr* attribute;
        xmlNode* target;
    };

    static std::uint64_t Count(xmlDoc* document)
    {
        std::uint64_t count = 0;
        ForEachElement(document->children, [&count](xmlNode*) { ++count; });
        return count;
    }

    void NoteId(xmlNode* node)
    {
        for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next)
        {
            if (View(attribute->name) == "id")
            {
                Require(m_ids.emplace(Value(attribute), node).second, "an id stands twice");
            }
        }
    }

    void Resolve(xmlNode* node)
    {
        for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next)
        {
            if (HoldsReferences(View(attribute->name)))
            {
                ForEachId(Value(attribute), [&](std::string_view id) { AddLink(attribute, id); });
            }
        }
    }

    void AddLink(xmlAttr* attribute, std::string_view id)
    {
        const auto found = m_ids.find(id);
        m_links.push_back({attribute, found == m_ids.end() ? nullptr : found->second});
    }

    xmlDoc* m_document = nullptr;                          // owned
    xmlDoc* m_copy = nullptr;                              // owned
    std::unordered_map<std::string_view, xmlNode*> m_ids;  // keys are in the document
    std::vector<Link> m_links;
};

}  // namespace

std::unique_ptr<Subject> MakeSubject()
{
    return std::make_unique<LibXml2Subject>();
}

}  // namespace zorvex_bench
