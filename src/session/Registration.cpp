// The one unit that makes the chain of LinkNodes of this library, so that its order, and with it
// the order of class values and of plug-ins, is written down and not left to the linker.

#include <cstddef>
#include <iterator>
#include <new>

#include "document/ParserPlugin.h"
#include "document/XercesParser.h"
#include "document/ZORVEXAdapter.h"
#include "objectmodel/BuiltInClasses.h"
#include "schema/GeneratedClasses.h"
#include "transport/BuiltInPlugins.h"
#include "zorvex_api/LinkNode.h"

namespace zorvex_api::internal
{

namespace
{

using Initialiser = int (*)(void*);

constexpr Initialiser kOwnClasses[] = {
    &InitObjectClass,
    &InitConfigurationClass,
};

/// A format by extension is looked for from the end of this list.
constexpr Initialiser kPlugins[] = {
    &InitAdapterBase, &InitXSDAdapter,   &InitZORVEXAdapter,   &InitSTREAMAdapter,
    &InitParserBase,  &InitXercesParser, &InitURIResolverBase, &InitXPKAdapter,
};

/// The library's nodes, in one block: they stay where they are, linked to each other.
class Chain
{
public:
    Chain()
    {
        const auto& generated = GeneratedClassInitialisers();
        m_nodes = static_cast<LinkNode*>(::operator new(
            (std::size(kOwnClasses) + generated.size() + std::size(kPlugins)) * sizeof(LinkNode)));
        for (const Initialiser initialiser : kOwnClasses)
        {
            Add(initialiser, LinkNode::kClass);
        }
        for (const Initialiser initialiser : generated)
        {
            Add(initialiser, LinkNode::kClass);
        }
        for (const Initialiser initialiser : kPlugins)
        {
            Add(initialiser, LinkNode::kPlugin);
        }
    }

    ~Chain()
    {
        while (m_count != 0)
        {
            m_nodes[--m_count].~LinkNode();
        }
        ::operator delete(m_nodes);
    }

    Chain(const Chain&) = delete;
    Chain& operator=(const Chain&) = delete;

private:
    void Add(Initialiser initialiser, int kind)
    {
        ::new (static_cast<void*>(m_nodes + m_count)) LinkNode(initialiser, kind);
        ++m_count;
    }

    LinkNode* m_nodes;  // owned
    size_t m_count = 0;
};

const Chain g_chain;

}  // namespace

}  // namespace zorvex_api::internal
