#include <memory>

#include "objectmodel/UpperServices.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Handle.h"

namespace zorvex_api::upper
{

void DestroyForeign(const Handle& handle)
{
    int isNew = 0;
    Adapter* adapter = internal::FindAdapter(handle.GetFormat(), nullptr, isNew);
    if (adapter == nullptr)
    {
        return;
    }
    const std::unique_ptr<Adapter> owned(isNew != 0 ? adapter : nullptr);
    Array<Handle> handles;
    handles.Add(handle);
    PluginProcessData data;
    data.m_operation = ZORVEX_OP_ADAPTER_DESTROY;
    data.Set(internal::kHandlesSlot, &handles);
    internal::ProcessLocked(adapter, data);
}

}  // namespace zorvex_api::upper
