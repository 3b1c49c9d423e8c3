#include "zorvex_api/LinkNode.h"

#include "runtime/HookBlocks.h"
#include "runtime/LinkNodeOwner.h"

namespace zorvex_api
{

// Constant-initialised: nodes join during the static initialisation of any library.
LinkNode* LinkNode::m_pHeadNode = nullptr;
LinkNode* LinkNode::m_pTailNode = nullptr;
LinkNode* LinkNode::m_pRegisterNode = nullptr;

namespace
{
LinkNodeOwner* g_owners[2] = {nullptr, nullptr};
}

void LinkNodeOwner::Set(int kind, LinkNodeOwner* owner)
{
    if (kind == LinkNode::kClass || kind == LinkNode::kPlugin)
    {
        g_owners[kind] = owner;
    }
}

LinkNodeOwner* LinkNodeOwner::Get(int kind)
{
    return kind == LinkNode::kClass || kind == LinkNode::kPlugin ? g_owners[kind] : nullptr;
}

LinkNode::LinkNode(int (*initialiser)(void*), int kind)
    : m_previous(m_pTailNode),
      m_next(nullptr),
      m_initialiser(initialiser),
      m_kind(kind),
      m_descriptor(nullptr),
      m_done(0)
{
    (m_pTailNode != nullptr ? m_pTailNode->m_next : m_pHeadNode) = this;
    m_pTailNode = this;

    LinkNodeOwner* const owner = LinkNodeOwner::Get(kind);
    if (owner == nullptr || !owner->IsFilled())
    {
        return;
    }
    if (kind == kPlugin)
    {
        const internal::UnhookedScope outlivesTheSession;
        owner->Joined(*this);
    }
    else if (m_pRegisterNode == nullptr)
    {
        m_pRegisterNode = this;
    }
}

LinkNode::~LinkNode()
{
    (m_previous != nullptr ? m_previous->m_next : m_pHeadNode) = m_next;
    (m_next != nullptr ? m_next->m_previous : m_pTailNode) = m_previous;

    LinkNodeOwner* const owner = LinkNodeOwner::Get(m_kind);
    if (m_descriptor != nullptr)
    {
        if (owner != nullptr)
        {
            owner->Ending(*this);
        }
    }
    if (m_pRegisterNode == this)
    {
        m_pRegisterNode = m_next != nullptr && !m_next->IsDone() ? m_next : nullptr;
    }
}

}  // namespace zorvex_api
