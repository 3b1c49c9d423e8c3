#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "Command.h"
#include "Document.h"
#include "Json.h"
#include "ProductStructure.h"
#include "Report.h"
#include "Text.h"

using zorvex_api::Object;

namespace zorvex_cli
{
namespace
{

constexpr int kDeepest = 1000;          // levels; structures of people end far above
constexpr size_t kLongest = 1'000'000;  // nodes; shared parts multiply

struct Arguments
{
    std::string file;
    int depth = kDeepest;
    bool json = false;
    Options options;
};

std::string QuantityText(double quantity)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", quantity);
    return text;
}

/// Walks the structure from each root down and writes it as it goes, as text or into Json.
class TreeWriter
{
public:
    TreeWriter(ProductStructure& structure, const Arguments& arguments)
        : m_structure(structure), m_arguments(arguments)
    {
    }

    /// False when the tree isn't whole: a part isn't loaded, contains itself, or there is no end.
    bool WriteAll(const std::vector<Object*>& roots)
    {
        Json all = Json::array();
        for (Object* root : roots)
        {
            PartUse use;
            use.view = root;
            use.quantity = 1.0;
            Json node = WriteUse(use, 1.0);
            if (m_arguments.json)
            {
                all.push_back(std::move(node));
            }
        }
        if (m_arguments.json)
        {
            Write(all);
        }
        return m_isWhole;
    }

private:
    Json WriteUse(const PartUse& use, double factor)
    {
        if (++m_nodes > kLongest)
        {
            Flaw(m_nodes == kLongest + 1, "The tree is cut off: it has over a million nodes");
            return {};
        }
        const double total = factor * use.quantity;
        const PartName name = use.view ? m_structure.Name(*use.view) : PartName();
        const std::string flaw = FlawOf(use);
        Json node = m_arguments.json ? Node(use, name, total, flaw) : Json();
        if (!m_arguments.json)
        {
            PrintLine(use, name, flaw);
        }
        if (!flaw.empty())
        {
            m_isWhole = false;
        }
        else if (Level() < m_arguments.depth)
        {
            m_path.push_back(use.view);
            for (const PartUse& below : m_structure.Uses(*use.view))
            {
                Json child = WriteUse(below, total);
                if (m_arguments.json && !child.is_null())
                {
                    node["parts"].push_back(std::move(child));
                }
            }
            m_path.pop_back();
        }
        return node;
    }

    int Level() const { return static_cast<int>(m_path.size()); }

    std::string FlawOf(const PartUse& use) const
    {
        if (!use.view)
        {
            return "not loaded: " + use.reference;
        }
        if (std::find(m_path.begin(), m_path.end(), use.view) != m_path.end())
        {
            return "contains itself";
        }
        return Level() >= kDeepest ? "too deep" : "";
    }

    void Flaw(bool isFirst, const char* text)
    {
        m_isWhole = false;
        if (isFirst)
        {
            Report(zorvex_api::WARNING, 1, text);
        }
    }

    void PrintLine(const PartUse& use, const PartName& name, const std::string& flaw) const
    {
        std::string line(2 * m_path.size(), ' ');
        if (!m_path.empty())
        {
            line += QuantityText(use.quantity) + " x ";
        }
        std::string label = name.number;
        if (!name.revision.empty())
        {
            label += (label.empty() ? "" : " ") + ("rev " + name.revision);
        }
        if (!name.name.empty())
        {
            label += (label.empty() ? "" : "  ") + name.name;
        }
        if (label.empty() && use.view)
        {
            label = ToUtf8(use.view->GetClassName()) + " " + ToUtf8(use.view->GetId());
        }
        line += OneLine(label);
        if (!flaw.empty())
        {
            line += (label.empty() ? "(" : "  (") + OneLine(flaw) + ")";
        }
        std::cout << line << '\n';
    }

    static Json Node(const PartUse& use, const PartName& name, double total,
                     const std::string& flaw)
    {
        Json node = {{"number", name.number}, {"revision", name.revision}, {"name", name.name}};
        node["class"] = use.view ? ToUtf8(use.view->GetClassName()) : std::string();
        node["id"] = use.view ? ToUtf8(use.view->GetId()) : std::string();
        node["quantity"] = use.quantity;
        node["total"] = total;
        if (!flaw.empty())
        {
            node["flaw"] = flaw;
        }
        node["parts"] = Json::array();
        return node;
    }

    ProductStructure& m_structure;
    const Arguments& m_arguments;
    std::vector<Object*> m_path;  // from a root to the part that is being written
    size_t m_nodes = 0;
    bool m_isWhole = true;
};

int Tree(const Arguments& arguments)
{
    Document document(arguments.options);
    const bool isGood = document.Load(arguments.file);
    if (!document.Root())
    {
        return kFindings;
    }
    ProductStructure structure(*document.Root());
    const std::vector<Object*> roots = structure.Roots();
    if (roots.empty())
    {
        Report(zorvex_api::MESSAGE, 1, "The document has no product structure");
    }
    TreeWriter writer(structure, arguments);
    return writer.WriteAll(roots) && isGood ? kGood : kFindings;
}

}  // namespace

void AddTree(CLI::App& app, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        app.add_subcommand("tree", "Prints the product structure with the quantity of each part");
    command->add_option("FILE", arguments->file, "The document")->required();
    command->add_option("--depth", arguments->depth, "Levels below the top to print")
        ->type_name("N")
        ->check(CLI::Range(0, kDeepest));
    command->add_flag("--json", arguments->json, "Machine-readable output");
    arguments->options.AddTo(*command);
    command->callback([arguments, &action] { action = [arguments] { return Tree(*arguments); }; });
}

}  // namespace zorvex_cli
