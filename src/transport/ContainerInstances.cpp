// The container of plug-in descriptors, as the library exports it.

#include "zorvex_api/Array.h"
#include "zorvex_api/PluginDescriptor.h"

namespace zorvex_api
{

template class Array<PluginDescriptor*>;

}  // namespace zorvex_api
