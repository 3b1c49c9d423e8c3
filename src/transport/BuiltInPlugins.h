#pragma once

namespace zorvex_api::internal
{

// Initialisers of the plug-in nodes: the argument is the new PluginDescriptor. 0 for null, else 1.

int InitAdapterBase(void* descriptor);
int InitXSDAdapter(void* descriptor);
int InitSTREAMAdapter(void* descriptor);
int InitURIResolverBase(void* descriptor);
int InitXPKAdapter(void* descriptor);

}  // namespace zorvex_api::internal
