#include "zorvex_api/PluginDescriptor.h"

#include "runtime/Text.h"
#include "transport/PluginDescriptorImpl.h"
#include "transport/PluginInstances.h"
#include "transport/PluginRegistry.h"
#include "transport/PluginSlots.h"
#include "transport/URIResolverDefault.h"
#include "zorvex_api/LinkNode.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_api
{

using internal::PluginRegistry;

PluginDescriptor::PluginDescriptor() : m_impl(new PluginDescriptorImpl)
{
    m_impl->self = this;
}

PluginDescriptor::~PluginDescriptor()
{
    PluginRegistry::Get().Remove(this);
    if (void* instance = std::exchange(m_impl->instance, nullptr))
    {
        internal::ReleaseInstance(m_impl->type, instance);
    }
    delete m_impl;
}

int PluginDescriptor::GetType() const
{
    return m_impl->type;
}

void PluginDescriptor::SetType(int type)
{
    m_impl->type = type;
}

const String& PluginDescriptor::GetName() const
{
    if (m_impl->name.IsEmpty() && !m_impl->nameText.empty())
    {
        m_impl->name = ToString(m_impl->nameText);
    }
    return m_impl->name;
}

void PluginDescriptor::SetName(const String& name)
{
    m_impl->nameText = View(name);
    m_impl->name = String();
}

PluginDescriptor* PluginDescriptor::GetBase() const
{
    return m_impl->base;
}

void PluginDescriptor::SetBase(PluginDescriptor* base)
{
    for (const PluginDescriptor* above = base; above != nullptr; above = above->m_impl->base)
    {
        if (above == this)
        {
            return;
        }
    }
    m_impl->base = base;
}

void PluginDescriptor::SetInstanceFunction(InstanceFunction function)
{
    m_impl->instanceFunction = function;
}

void PluginDescriptor::SetPropertiesFunction(PropertiesFunction function)
{
    m_impl->propertiesFunction = function;
}

void PluginDescriptor::GetProperties(Configuration& out) const
{
    if (m_impl->propertiesFunction != nullptr)
    {
        m_impl->propertiesFunction(m_impl->self, &out);
    }
}

void PluginDescriptor::GetDescriptors(Array<PluginDescriptor*>& out)
{
    RegisterAll();
    for (PluginDescriptor* descriptor : PluginRegistry::Get().Descriptors())
    {
        if (descriptor->m_impl->instanceFunction != nullptr)
        {
            out.Add(descriptor);
        }
    }
}

void PluginDescriptor::GetDescriptors(const int& type, Array<PluginDescriptor*>& out)
{
    RegisterAll();
    for (PluginDescriptor* descriptor : PluginRegistry::Get().Descriptors())
    {
        if (descriptor->m_impl->type == type && descriptor->m_impl->instanceFunction != nullptr)
        {
            out.Add(descriptor);
        }
    }
}

void* PluginDescriptor::GetInstance(const int& type)
{
    return GetInstance(type, String());
}

void* PluginDescriptor::GetInstance(const int& type, const String& name)
{
    int isNew = 0;
    return internal::FindInstance(type, name, nullptr, isNew);
}

void PluginDescriptor::RemoveInstance(void* instance)
{
    if (m_impl->instance == instance)
    {
        m_impl->instance = nullptr;
    }
}

void PluginDescriptor::RegisterCallback(PluginDescriptorCallback* callback)
{
    PluginRegistry::Get().callback = callback;
}

void PluginDescriptor::RegisterAll()
{
    PluginRegistry::Get().Fill();
}

void PluginDescriptor::Register(LinkNode* node)
{
    if (node != nullptr && node->GetKind() == LinkNode::kPlugin && !node->IsDone())
    {
        PluginRegistry::Get().RunNode(*node);
    }
}

void PluginDescriptor::MakeMutexes()
{
    RegisterAll();
    for (PluginDescriptor* descriptor : PluginRegistry::Get().Descriptors())
    {
        descriptor->GetName();  // made here, so that reading it later never writes
        PluginDescriptorImpl& impl = *descriptor->m_impl;
        if (impl.instanceFunction == nullptr || impl.mutex != nullptr)
        {
            continue;
        }
        if (internal::GetPluginProperty(descriptor, u"THREADING", u"SINGLE") != u"MULTIPLE")
        {
            impl.mutex = std::make_unique<Mutex>();
        }
    }
}

void PluginDescriptor::FreeMutexes()
{
    for (PluginDescriptor* descriptor : PluginRegistry::Get().Descriptors())
    {
        descriptor->m_impl->mutex.reset();
        descriptor->m_impl->name = String();
    }
}

int PluginDescriptor::GetCallback(const int& type, const String& name)
{
    PluginDescriptorCallback* callback = PluginRegistry::Get().callback;
    return callback != nullptr ? (*callback)(type, name) : 0;
}

void PluginDescriptor::SetDefaultInstance(int type, void* instance)
{
    if (type == internal::kResolverPlugin)
    {
        internal::SetDefaultResolver(static_cast<URIResolver*>(instance));
    }
}

void* PluginDescriptor::GetDefaultInstance(int type)
{
    return type == internal::kResolverPlugin ? internal::GetDefaultResolver() : nullptr;
}

PluginDescriptorCallback::~PluginDescriptorCallback()
{
    PluginDescriptorCallback*& registered = internal::PluginRegistry::Get().callback;
    if (registered == this)
    {
        registered = nullptr;
    }
}

}  // namespace zorvex_api
