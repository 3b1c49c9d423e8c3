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

/// Sends an operation without objects to every adapter; false when one reports an error.
bool ProcessEach(AdapterOperation operation, Configuration* options)
{
    Array<PluginDescriptor*> descriptors;
    PluginDescriptor::GetDescriptors(kAdapterType, descriptors);
    bool good = true;
    for (const PluginDescriptor* descriptor : descriptors)
    {
        const AdapterInstance instance(descriptor->GetName());
        if (instance.Get() == nullptr)
        {
            continue;
        }
        Result result;
        PluginProcessData data;
        data.m_operation = operation;
        data.Set(0, &result);
        data.Set(1, options);
        ProcessLocked(instance.Get(), data);
        good = good && result.Ok();
    }
    return good;
}

}  // namespace

bool StartAdapters(Configuration& options)
{
    return ProcessEach(ZORVEX_OP_ADAPTER_INITALISE, &options);
}

void StopAdapters()
{
    ProcessEach(ZORVEX_OP_ADAPTER_TERMINATE, nullptr);
}

}  // namespace zorvex_api::internal
