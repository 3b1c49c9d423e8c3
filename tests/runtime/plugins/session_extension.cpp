// A library as an application writes it: one class and one adapter, found when it is loaded.

#include "zorvex_api/Adapter.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/LinkNode.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/PluginProcessData.h"
#include "zorvex_api/Result.h"

// What the test reads and sets through dlsym.
extern "C"
{
    __attribute__((visibility("default"))) int extension_starts = 0;
    __attribute__((visibility("default"))) int extension_stops = 0;
    __attribute__((visibility("default"))) int extension_fails = 0;
    __attribute__((visibility("default"))) int extension_raises = 0;
}

namespace
{

using namespace zorvex_api;

short g_gaugeClass = 0;

class Gauge : public Object
{
public:
    Gauge() { InitData(g_gaugeClass); }
    static Object* Make() { return new Gauge; }
};

int InitGauge(void* argument)
{
    if (argument == nullptr)
    {
        return 0;
    }
    auto& record = *static_cast<ClassInitRecord*>(argument);
    record.staticClass = &g_gaugeClass;
    record.descriptor->SetVersion("6.0");
    record.descriptor->SetName("Gauge");
    record.descriptor->SetNamespace("http://example.org/gauges", "ga");
    record.descriptor->SetBaseClass("IdObject");
    record.descriptor->SetMakeFunction(&Gauge::Make);
    record.descriptor->RegisterField("reading", 3);
    g_gaugeClass = record.descriptor->GetClass();
    return 1;
}

PluginDescriptor* g_descriptor = nullptr;

class GaugeAdapter : public Adapter
{
public:
    PluginDescriptor* GetPluginDescriptor() override { return g_descriptor; }

    void Process(PluginProcessData* data) override
    {
        void* result = nullptr;
        data->Get(0, result);
        switch (data->m_operation)
        {
            case ZORVEX_OP_ADAPTER_INITALISE:
                ++extension_starts;
                if (extension_raises != 0)
                {
                    throw Exception(2, "the gauge bursts");
                }
                if (extension_fails != 0)
                {
                    static_cast<Result*>(result)->AddError(2, "no gauge is connected");
                }
                return;
            case ZORVEX_OP_ADAPTER_TERMINATE:
                ++extension_stops;
                if (extension_fails != 0)
                {
                    throw Exception(2, "the gauge doesn't let go");
                }
                return;
            default:
                Adapter::Process(data);
        }
    }
};

int InitAdapter(void* argument)
{
    if (argument == nullptr)
    {
        return 0;
    }
    g_descriptor = static_cast<PluginDescriptor*>(argument);
    g_descriptor->SetType(1);
    g_descriptor->SetName("GAUGE");
    g_descriptor->SetBase(Adapter::GetStaticPluginDescriptor());
    g_descriptor->SetInstanceFunction([]() -> void* { return new GaugeAdapter; });
    return 1;
}

LinkNode g_gaugeNode(&InitGauge, LinkNode::kClass);
LinkNode g_adapterNode(&InitAdapter, LinkNode::kPlugin);

}  // namespace
