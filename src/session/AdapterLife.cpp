#include "session/AdapterLife.h"

#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Result.h"

namespace zorvex_api::internal
{

namespace
{

constexpr int kAdapterType = 1;

/// An instance for one call: deleted afterwards if it was made for it.
class AdapterInstance
{
public:
    explicit AdapterInstance(const String& format)
        : m_adapter(FindAdapter(format, nullptr, m_isNew))
    {
    }
    ~AdapterInstance()
    {
        if (m_isNew != 0)
        {
            delete m_adapter;
        }
    }
    AdapterInstance(const AdapterInstance&) = delete;
    AdapterInstance& operator=(const AdapterInstance&) = delete;

    Adapter* Get() const { return m_adapter; }

private:
    int m_isNew = 0;
    Adapter* m_adapter;
};

/// Sends an operation without objects to the adapter of a descriptor, if it has instances.
Result ProcessOne(const PluginDescriptor& descriptor, AdapterOperation operation,
                  Configuration* options)
{
    Result result;
    const AdapterInstance instance(descriptor.GetName());
    if (instance.Get() != nullptr)
    {
        PluginProcessData data;
        data.m_operation = operation;
        data.Set(0, &result);
        data.Set(1, options);
        ProcessLocked(instance.Get(), data);
    }
    return result;
}

bool Starts(const PluginDescriptor& descriptor, Configuration& options)
{
    try
    {
        return ProcessOne(descriptor, ZORVEX_OP_ADAPTER_INITALISE, &options).Ok() != 0;
    }
    catch (...)
    {
        return false;  // the others start all the same
    }
}

Array<PluginDescriptor*> Adapters()
{
    Array<PluginDescriptor*> descriptors;
    PluginDescriptor::GetDescriptors(kAdapterType, descriptors);
    return descriptors;
}

}  // namespace

bool StartAdapters(Configuration& options)
{
    bool good = true;
    for (const PluginDescriptor* descriptor : Adapters())
    {
        good = Starts(*descriptor, options) && good;
    }
    return good;
}

void StopAdapters()
{
    for (const PluginDescriptor* descriptor : Adapters())
    {
        ProcessOne(*descriptor, ZORVEX_OP_ADAPTER_TERMINATE, nullptr);
    }
}

}  // namespace zorvex_api::internal
