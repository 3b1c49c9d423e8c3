#pragma once

namespace zorvex_api
{
class PluginDescriptor;
}

namespace zorvex_api::internal
{

/// Initialiser of the parser base's node: the argument is the new PluginDescriptor.
int InitParserBase(void* descriptor);
/// The parser base's descriptor, without a look at the registry; null before its node has run.
PluginDescriptor* ParserBaseDescriptor();

}  // namespace zorvex_api::internal
