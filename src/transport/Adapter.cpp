#include "zorvex_api/Adapter.h"

#include <algorithm>
#include <string>
#include <vector>

#include "runtime/Text.h"
#include "transport/AdapterImpl.h"
#include "transport/AdapterStream.h"
#include "transport/BuiltInPlugins.h"
#include "transport/Location.h"
#include "transport/PluginRegistry.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/PluginDescriptor.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{

namespace
{

PluginDescriptor* g_baseDescriptor = nullptr;  // owned by its LinkNode

/// The names as messages print them.
const char* OperationName(int operation)
{
    static constexpr const char* kNames[] = {
        "ZORVEX_OP_ADAPTER_IMPORT",    "ZORVEX_OP_ADAPTER_EXPORT",   "ZORVEX_OP_ADAPTER_GET",
        "ZORVEX_OP_ADAPTER_LOAD",      "ZORVEX_OP_ADAPTER_SAVE",     "ZORVEX_OP_ADAPTER_LOCATE",
        "ZORVEX_OP_ADAPTER_DESTROY",   "ZORVEX_OP_ADAPTER_RESET",    "ZORVEX_OP_ADAPTER_CLONE",
        "ZORVEX_OP_ADAPTER_INITALISE", "ZORVEX_OP_ADAPTER_TERMINATE"};
    return kNames[operation - ZORVEX_OP_ADAPTER_IMPORT];
}

void ReportUnanswered(const String& format, int operation, Result& result)
{
    const std::string name = ToUtf8(format);
    if (operation < ZORVEX_OP_ADAPTER_IMPORT || operation > ZORVEX_OP_ADAPTER_TERMINATE)
    {
        result.AddError(6, FromUtf8(name + ":: invalid operation code."));
        return;
    }
    const String message = FromUtf8(name + "::" + OperationName(operation) + " not implemented.");
    result.AddError(6, operation >= ZORVEX_OP_ADAPTER_CLONE ? WARNING : ERROR, message);
}

/// Unlinks the adapter below and gives it, when it is owned.
Adapter* TakeOwnedPrevious(AdapterImpl& impl)
{
    Adapter* previous = impl.borrowsPrevious == 0 ? impl.previous : nullptr;
    impl.previous = nullptr;
    return previous;
}

/// `base` and `name` with a "/" between them, unless one is empty or `base` ends in one.
String Join(const String& base, const String& name)
{
    if (base.IsEmpty() != 0 || name.IsEmpty() != 0)
    {
        return base.IsEmpty() != 0 ? internal::AsPlace(name) : base;
    }
    return View(base).back() == u'/' ? base + name : base + u"/" + name;
}

/// This adapter and those below it, the lowest first.
std::vector<Adapter*> FromTheBottom(Adapter* top)
{
    std::vector<Adapter*> chain;
    for (Adapter* member = top; member != nullptr; member = member->GetPrevious())
    {
        chain.push_back(member);
    }
    std::reverse(chain.begin(), chain.end());
    return chain;
}

/// A location adapter on the way up: what stood below it is left behind, except for the folder.
void EnterLocation(const String& context, String& base, Pointer& pointer)
{
    pointer.Reset();
    if (context.IsEmpty() != 0)
    {
        base = String();
    }
    else if (internal::NeedsFolder(Pointer(context)))
    {
        base = Join(base, context);
    }
    else
    {
        base = context;
    }
}

}  // namespace

Adapter::Adapter() : m_impl(new AdapterImpl) {}

Adapter::~Adapter()
{
    internal::ForgetHeldInstance(this);
    Adapter* below = TakeOwnedPrevious(*m_impl);
    while (below != nullptr)  // a loop: a hostile pointer can name a long chain
    {
        Adapter* nextBelow = TakeOwnedPrevious(*below->m_impl);
        delete below;
        below = nextBelow;
    }
    delete m_impl;
}

PluginDescriptor* Adapter::GetPluginDescriptor()
{
    return GetStaticPluginDescriptor();
}

PluginDescriptor* Adapter::GetStaticPluginDescriptor()
{
    if (g_baseDescriptor == nullptr)
    {
        PluginDescriptor::RegisterAll();
    }
    return g_baseDescriptor;
}

void Adapter::Process(PluginProcessData* data)
{
    if (data == nullptr)
    {
        return;
    }
    if (data->m_operation == ZORVEX_OP_ADAPTER_GET)
    {
        internal::GetStreamFromResolver(*this, *data);
        return;
    }
    if (auto* result = internal::GetSlot<Result>(*data, internal::kResultSlot))
    {
        ReportUnanswered(GetFormat(), data->m_operation, *result);
    }
}

const String& Adapter::GetFormat() const
{
    const PluginDescriptor* descriptor = const_cast<Adapter*>(this)->GetPluginDescriptor();
    return descriptor != nullptr ? descriptor->GetName() : String::EmptyString();
}

const String& Adapter::GetContext() const
{
    return m_impl->context;
}

void Adapter::SetContext(const String& context)
{
    m_impl->context = context;
}

Adapter* Adapter::GetNext() const
{
    return m_impl->next;
}

void Adapter::SetNext(Adapter* next)
{
    m_impl->next = next;
}

Adapter* Adapter::GetPrevious() const
{
    return m_impl->previous;
}

void Adapter::SetPrevious(Adapter* previous)
{
    m_impl->previous = previous;
}

void Adapter::ConstructPointer(Pointer& pointer)
{
    pointer.Reset();
    String base;
    bool named = false;  // the pointer has its file name
    for (Adapter* member : FromTheBottom(this))
    {
        const String format = member->GetFormat();
        if (format.IsEmpty() != 0)
        {
            EnterLocation(member->GetContext(), base, pointer);
            named = false;
            continue;
        }
        if (!named)
        {
            const AdapterImpl& impl = *member->GetImplementation();
            pointer.Parse(internal::WithQuery(Join(base, impl.context), impl.query));
            named = true;
        }
        const Adapter* above = member->GetNext();
        pointer.Add(format, above != nullptr ? above->GetContext() : String());
    }
}

namespace internal
{

int InitAdapterBase(void* descriptor)
{
    if (descriptor == nullptr)
    {
        return 0;
    }
    g_baseDescriptor = static_cast<PluginDescriptor*>(descriptor);
    g_baseDescriptor->SetType(kAdapterPlugin);
    return 1;
}

}  // namespace internal
}  // namespace zorvex_api
