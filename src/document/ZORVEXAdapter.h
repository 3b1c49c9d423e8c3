#pragma once

#include "zorvex_api/Adapter.h"

namespace zorvex_adapter
{

/// The adapter of the document format: ties resolver, streams, reader and writer together.
class ZORVEX : public zorvex_api::Adapter
{
public:
    ZORVEX();
    ~ZORVEX() override;

    zorvex_api::PluginDescriptor* GetPluginDescriptor() override;
    void Process(zorvex_api::PluginProcessData* data) override;

private:
    void Import(zorvex_api::PluginProcessData& data);
    void Export(zorvex_api::PluginProcessData& data);
    void Get(zorvex_api::PluginProcessData& data);
    void Load(zorvex_api::PluginProcessData& data);
    void Save(zorvex_api::PluginProcessData& data);
    static void Locate(const zorvex_api::PluginProcessData& data);
    static void Destroy(const zorvex_api::PluginProcessData& data);
};

}  // namespace zorvex_adapter

namespace zorvex_api::internal
{

/// Initialiser of the plug-in's node: the argument is the new PluginDescriptor.
int InitZORVEXAdapter(void* descriptor);

}  // namespace zorvex_api::internal
