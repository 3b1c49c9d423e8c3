#include "transport/PluginRegistry.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "transport/PluginDescriptorImpl.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/LinkNode.h"
#include "zorvex_api/PluginDescriptor.h"

namespace zorvex_api::internal
{

namespace
{

/// True for a scope.
class FlagScope
{
public:
    explicit FlagScope(bool& flag) : m_flag(flag), m_before(std::exchange(flag, true)) {}
    ~FlagScope() { m_flag = m_before; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    bool& m_flag;
    bool m_before;
};

/// A node on the list of those at work, for a scope.
class RunningScope
{
public:
    RunningScope(std::vector<LinkNode*>& running, LinkNode& node) : m_running(running)
    {
        m_running.push_back(&node);
    }
    ~RunningScope() { m_running.pop_back(); }
    RunningScope(const RunningScope&) = delete;
    RunningScope& operator=(const RunningScope&) = delete;

private:
    std::vector<LinkNode*>& m_running;
};

}  // namespace

PluginRegistry& PluginRegistry::Get()
{
    // Never destroyed: nodes of libraries end after the static objects of this one.
    static PluginRegistry* const registry = new PluginRegistry;
    return *registry;
}

PluginRegistry::PluginRegistry()
{
    LinkNodeOwner::Set(LinkNode::kPlugin, this);
}

void PluginRegistry::Fill()
{
    // An initialiser that asks for plug-ins while the list is being filled gets those behind it.
    if (IsFilled() && !m_filling)
    {
        return;
    }
    const FlagScope filling(m_filling);
    for (LinkNode* node = LinkNode::m_pHeadNode; node != nullptr; node = node->GetNext())
    {
        if (node->GetKind() == LinkNode::kPlugin && !node->IsDone())
        {
            RunNode(*node);
        }
    }
}

void PluginRegistry::RunNode(LinkNode& node)
{
    if (std::find(m_running.begin(), m_running.end(), &node) != m_running.end())
    {
        return;
    }
    const RunningScope running(m_running, node);
    std::unique_ptr<PluginDescriptor> descriptor(new PluginDescriptor);
    if (node.RunInitialiser(descriptor.get()) != 0)
    {
        descriptor->GetName();  // made here, so that reading it later never writes
        m_descriptors.push_back(descriptor.get());
        node.SetDescriptor(descriptor.release());
        node.SetDone(true);
    }
}

void PluginRegistry::Remove(PluginDescriptor* descriptor) noexcept
{
    std::erase(m_descriptors, descriptor);
    for (PluginDescriptor* other : m_descriptors)
    {
        if (other->GetBase() == descriptor)
        {
            other->SetBase(nullptr);
        }
    }
    if (m_descriptors.empty())
    {
        m_descriptors = {};
    }
}

void PluginRegistry::Joined(LinkNode& node)
{
    RunNode(node);
}

void PluginRegistry::Ending(LinkNode& node) noexcept
{
    delete static_cast<PluginDescriptor*>(node.GetDescriptor());
    node.SetDescriptor(nullptr);
}

void ForgetHeldInstance(void* instance) noexcept
{
    for (PluginDescriptor* descriptor : PluginRegistry::Get().Descriptors())
    {
        descriptor->RemoveInstance(instance);
    }
}

String GetPluginProperty(const PluginDescriptor* descriptor, const char16_t* name,
                         const char16_t* standard)
{
    String value(standard);
    if (descriptor != nullptr)
    {
        Configuration properties;
        descriptor->GetProperties(properties);
        properties.Get(name, value);
    }
    return value;
}

}  // namespace zorvex_api::internal
