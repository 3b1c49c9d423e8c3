#include "transport/BuiltInPlugins.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/PluginDescriptor.h"

/// Formats that are known by name and extension, and whose adapters answer what the base answers.

namespace zorvex_api::internal
{

namespace
{

PluginDescriptor* g_schemaDescriptor = nullptr;  // owned by their LinkNodes
PluginDescriptor* g_packageDescriptor = nullptr;

class SchemaAdapter : public Adapter
{
public:
    PluginDescriptor* GetPluginDescriptor() override { return g_schemaDescriptor; }
};

class PackageAdapter : public Adapter
{
public:
    PluginDescriptor* GetPluginDescriptor() override { return g_packageDescriptor; }
};

void* MakeSchemaAdapter()
{
    return static_cast<Adapter*>(new SchemaAdapter);
}

void* MakePackageAdapter()
{
    return static_cast<Adapter*>(new PackageAdapter);
}

// No "THREADING": a schema changes the classes that all threads share.
void SetSchemaProperties(PluginDescriptor*, Configuration* properties)
{
    properties->Set(u"FORMAT", u"XSD");
    properties->Set(u"DESCRIPTION", u"ZORVEX Schema Format");
    properties->Set(u"FILE_EXTENSIONS", u"xsd");
}

void SetPackageProperties(PluginDescriptor*, Configuration* properties)
{
    properties->Set(u"FORMAT", u"XPK");
    properties->Set(u"DESCRIPTION", u"XPK Format");
    properties->Set(u"FILE_EXTENSIONS", u"xpk;zvxxpk");
    properties->Set(u"THREADING", u"MULTIPLE");
}

}  // namespace

int InitXSDAdapter(void* descriptor)
{
    if (descriptor == nullptr)
    {
        return 0;
    }
    g_schemaDescriptor = static_cast<PluginDescriptor*>(descriptor);
    g_schemaDescriptor->SetType(kAdapterPlugin);
    g_schemaDescriptor->SetName(u"XSD");
    g_schemaDescriptor->SetBase(Adapter::GetStaticPluginDescriptor());
    g_schemaDescriptor->SetInstanceFunction(&MakeSchemaAdapter);
    g_schemaDescriptor->SetPropertiesFunction(&SetSchemaProperties);
    return 1;
}

int InitXPKAdapter(void* descriptor)
{
    if (descriptor == nullptr)
    {
        return 0;
    }
    g_packageDescriptor = static_cast<PluginDescriptor*>(descriptor);
    g_packageDescriptor->SetType(kAdapterPlugin);
    g_packageDescriptor->SetName(u"XPK");
    g_packageDescriptor->SetBase(Adapter::GetStaticPluginDescriptor());
    g_packageDescriptor->SetInstanceFunction(&MakePackageAdapter);
    g_packageDescriptor->SetPropertiesFunction(&SetPackageProperties);
    return 1;
}

}  // namespace zorvex_api::internal
