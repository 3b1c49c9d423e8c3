#pragma once

namespace zorvex_api
{

class Adapter;
class PluginProcessData;

namespace internal
{

/// ZORVEX_OP_ADAPTER_GET of a location adapter: makes the full name of what the adapter above looks
/// for and has the resolver open it.
void GetStreamFromResolver(Adapter& location, const PluginProcessData& data);

}  // namespace internal
}  // namespace zorvex_api
