// pugixml, with what it lacks beside the library: a map of ids, and references that lead somewhere.
#include <memory>
#include <pugixml.hpp>
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

class Counter : public pugi::xml_tree_walker
{
public:
    bool for_each(pugi::xml_node& node) override
    {
        m_elements += node.type() == pugi::node_element ? 1 : 0;
        return true;
    }

    std::uint64_t m_elements = 0;
};

class PugixmlSubject : public Subject
{
public:
    void Load(const std::string& path) override
    {
        Require(m_document.load_file(path.c_str()), "loading");
        NoteIds(m_document);
        Resolve(m_document);
    }

    Contents Inspect() override
    {
        Contents contents{m_document.document_element().name(), Count(m_document), 0};
        for (const Link& link : m_links)
        {
            contents.references += link.target ? 1 : 0;
        }
        return contents;
    }

    std::uint64_t Walk() override { return Count(m_document); }

    void Copy() override { m_copy.reset(m_document); }
    std::uint64_t WalkCopy() override { return Count(m_copy); }
    void DeleteCopy() override { m_copy.reset(); }

    void Save(const std::string& path) override
    {
        Require(m_document.save_file(path.c_str()), "saving");
    }

    void Delete() override
    {
        m_document.reset();
        m_ids = {};
        m_links = {};
    }

private:
    struct Link
    {
        pugi::xml_attribute attribute;
        pugi::xml_node target;
    };

    static std::uint64_t Count(pugi::xml_document& document)
    {
        Counter counter;
        document.traverse(counter);
        return counter.m_elements;
    }

    void NoteIds(const pugi::xml_node& parent)
    {
        for (const pugi::xml_node node : parent.children())
        {
            if (const pugi::xml_attribute id = node.attribute("id"))
            {
                Require(m_ids.emplace(id.value(), node).second, "an id stands twice");
            }
            NoteIds(node);
        }
    }

    void Resolve(const pugi::xml_node& parent)
    {
        for (const pugi::xml_node node : parent.children())
        {
            for (const pugi::xml_attribute attribute : node.attributes())
            {
                if (HoldsReferences(attribute.name()))
                {
                    ForEachId(attribute.value(),
                              [&](std::string_view id) { AddLink(attribute, id); });
                }
            }
            Resolve(node);
        }
    }

    void AddLink(const pugi::xml_attribute& attribute, std::string_view id)
    {
        const auto found = m_ids.find(id);
        m_links.push_back({attribute, found == m_ids.end() ? pugi::xml_node() : found->second});
    }

    pugi::xml_document m_document;
    pugi::xml_document m_copy;
    std::unordered_map<std::string_view, pugi::xml_node> m_ids;  // keys are in the document
    std::vector<Link> m_links;
};

}  // namespace

std::unique_ptr<Subject> MakeSubject()
{
    return std::make_unique<PugixmlSubject>();
}

}  // namespace zorvex_bench
