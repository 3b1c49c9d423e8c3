#pragma once

/// Where the chain of LinkNodes meets the registries above it.

namespace zorvex_api
{

class LinkNode;

/// A registry of what LinkNodes of one kind announce. It lives as long as the process: nodes end
/// when their library is unloaded.
class LinkNodeOwner
{
public:
    virtual ~LinkNodeOwner() = default;

    /// True when the registry is filled, so that a node that joins now has to be seen to.
    virtual bool IsFilled() const = 0;
    /// A plug-in node joined a filled registry: registers it at once and marks it done.
    /// (A class node waits; `LinkNode::m_pRegisterNode` refers to the first one.)
    virtual void Joined(LinkNode& node) = 0;
    /// A node that holds a descriptor ends: drops the node's reference, or destroys the
    /// descriptor.
    virtual void Ending(LinkNode& node) noexcept = 0;

    /// Called by each registry when it is filled first; null takes it off.
    static void Set(int kind, LinkNodeOwner* owner);
    static LinkNodeOwner* Get(int kind);
};

}  // namespace zorvex_api
