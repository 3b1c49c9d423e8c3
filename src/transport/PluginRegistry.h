#pragma once

#include <vector>

#include "runtime/LinkNodeOwner.h"

namespace zorvex_api
{

class PluginDescriptor;
class PluginDescriptorCallback;
class String;

namespace internal
{

/// The process-wide list of plug-ins.
///
/// It isn't locked: it changes only while a session starts and when a library is loaded. It
/// survives sessions; a descriptor goes with its LinkNode.
class PluginRegistry : public LinkNodeOwner
{
public:
    static PluginRegistry& Get();

    /// Runs the plug-in nodes of the chain, unless that has been done.
    void Fill();
    void RunNode(LinkNode& node);
    void Remove(PluginDescriptor* descriptor) noexcept;

    const std::vector<PluginDescriptor*>& Descriptors() const { return m_descriptors; }

    bool IsFilled() const override { return !m_descriptors.empty(); }
    void Joined(LinkNode& node) override;
    void Ending(LinkNode& node) noexcept override;

    PluginDescriptorCallback* callback = nullptr;  // not owned

private:
    PluginRegistry();

    std::vector<PluginDescriptor*> m_descriptors;  // in the order of the chain; owned by the nodes
    bool m_filling = false;
    std::vector<LinkNode*> m_running;  // nodes whose initialiser is at work
};

/// Clears the held instance of whatever descriptor holds this one.
void ForgetHeldInstance(void* instance) noexcept;

/// A property of a plug-in, or `standard` when it isn't set.
String GetPluginProperty(const PluginDescriptor* descriptor, const char16_t* name,
                         const char16_t* standard);

}  // namespace internal
}  // namespace zorvex_api
