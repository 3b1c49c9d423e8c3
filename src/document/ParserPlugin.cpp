#include "document/ParserPlugin.h"

#include "document/ParserImpl.h"
#include "transport/PluginInstances.h"
#include "transport/PluginRegistry.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Parser.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{

namespace
{

PluginDescriptor* g_baseDescriptor = nullptr;  // owned by the plug-in registry

}  // namespace

namespace internal
{

int InitParserBase(void* descriptor)
{
    if (descriptor == nullptr)
    {
        return 0;
    }
    g_baseDescriptor = static_cast<PluginDescriptor*>(descriptor);
    g_baseDescriptor->SetType(kParserPlugin);
    SetParserRelease([](void* parser) { delete static_cast<Parser*>(parser); });
    return 1;
}

PluginDescriptor* ParserBaseDescriptor()
{
    return g_baseDescriptor;
}

}  // namespace internal

Parser::Parser() : m_impl(new ParserImpl) {}

Parser::~Parser()
{
    internal::ForgetHeldInstance(this);
    delete m_impl;
}

PluginDescriptor* Parser::GetPluginDescriptor()
{
    return g_baseDescriptor;
}

PluginDescriptor* Parser::GetStaticPluginDescriptor()
{
    PluginDescriptor::RegisterAll();
    return g_baseDescriptor;
}

void Parser::Process(PluginProcessData* data)
{
    void* slot = nullptr;
    data->Get(0, slot);
    if (slot != nullptr)
    {
        static_cast<Result*>(slot)->AddError(6, u"Invalid Parser operation code.");
    }
}

}  // namespace zorvex_api
