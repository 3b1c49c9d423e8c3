#include "zorvex_api/AdapterRef.h"

#include "runtime/Text.h"
#include "transport/AdapterImpl.h"
#include "transport/Location.h"
#include "transport/PluginInstances.h"
#include "transport/PluginLock.h"
#include "transport/PluginSlots.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Pointer.h"

namespace zorvex_api
{

namespace
{

constexpr int kBadReference = 517;
constexpr int kLongestChain = 1000;  // a longer one is no document's, but an attack

/// Runs in a destructor: an adapter that throws here has no one to tell.
void SendReset(Adapter& adapter, Configuration* options) noexcept
{
    try
    {
        Result unheard;
        PluginProcessData data;
        data.m_operation = ZORVEX_OP_ADAPTER_RESET;
        data.Set(internal::kResultSlot, &unheard);
        data.Set(internal::kOptionsSlot, options);
        const PluginLock lock(adapter.GetPluginDescriptor());
        adapter.Process(&data);
    }
    catch (...)
    {
    }
}

/// A configured instance is made ready for its next chain.
void ResetShared(Adapter& adapter, Configuration* options)
{
    AdapterImpl& impl = *adapter.GetImplementation();
    impl.next = nullptr;  // gone already
    SendReset(adapter, options);
    impl.context = String();
    impl.query = String();
    impl.previous = nullptr;
    impl.borrowsPrevious = 0;
    impl.handle = nullptr;
}

bool IsShared(const Adapter& adapter)
{
    const AdapterImpl& impl = *adapter.GetImplementation();
    return adapter.GetFormat().IsEmpty() == 0 && impl.isNewInstance == 0 && impl.isClone == 0;
}

}  // namespace

/// The others start from here, so that what one of them has built goes when it throws.
AdapterRef::AdapterRef(Adapter* previous, Configuration* options)
    : m_adapter(previous),
      m_previous(previous),
      m_savedNext(previous != nullptr ? previous->GetNext() : nullptr),
      m_options(options)
{
}

AdapterRef::AdapterRef(const Pointer& pointer, Adapter* previous)
    : AdapterRef(pointer, previous, nullptr)
{
}

AdapterRef::AdapterRef(const String& format, Adapter* previous)
    : AdapterRef(format, previous, nullptr)
{
}

AdapterRef::AdapterRef(const Pointer& pointer, Adapter* previous, Configuration* options)
    : AdapterRef(previous, options)
{
    Build(pointer);
    if (m_adapter == m_previous)
    {
        m_adapter = nullptr;  // nothing on top: no chain
    }
}

AdapterRef::AdapterRef(const String& format, Adapter* previous, Configuration* options)
    : AdapterRef(previous, options)
{
    int isNew = 0;
    Adapter* adapter = internal::FindAdapter(format, options, isNew);
    if (adapter == nullptr)
    {
        m_adapter = nullptr;
        m_result.AddError(kBadReference, WARNING, u"Missing (" + format + u") Adapter.");
        return;
    }
    Push(adapter, String(), isNew != 0);
    adapter->GetImplementation()->borrowsPrevious = 1;
}

AdapterRef::~AdapterRef()
{
    ReleaseChain();
}

Adapter* AdapterRef::GetAdapter() const
{
    return m_adapter;
}

const Result& AdapterRef::GetResult() const
{
    return m_result;
}

int AdapterRef::IsValid() const
{
    return m_adapter != nullptr ? 1 : 0;
}

Adapter* AdapterRef::operator->() const
{
    return m_adapter;
}

void AdapterRef::Build(const Pointer& pointer)
{
    const int count = pointer.GetAdapterCount();
    if (count > kLongestChain)
    {
        m_result.AddError(kBadReference, u"Invalid reference: " + pointer.GetString());
        return;
    }
    const String base = internal::LocationOf(pointer);
    const String name = pointer.GetFileName();
    const bool namesPlace = base.IsEmpty() == 0 || name.IsEmpty() == 0;
    if (m_previous == nullptr ? namesPlace : base.IsEmpty() == 0)
    {
        Push(new Adapter, base, true);
    }
    for (int i = 0; i < count; ++i)
    {
        const String& context = i == 0 ? name : pointer.GetControlString(i - 1);
        if (!PushFormat(pointer, pointer.GetAdapterType(i), context))
        {
            ReleaseChain();
            return;
        }
        if (i == 0 && m_adapter != m_previous)
        {
            m_adapter->GetImplementation()->query = pointer.GetQuery();
        }
    }
    if (m_adapter == m_previous && count == 0)
    {
        m_result.AddError(kBadReference, WARNING,
                          u"Unable to find adapter for: " + pointer.GetString());
    }
}

bool AdapterRef::PushFormat(const Pointer& pointer, const String& type, const String& context)
{
    if (context.IsEmpty() != 0)
    {
        if (m_adapter != nullptr && m_adapter->GetFormat() == type)
        {
            return true;  // the adapter that stands there already
        }
        if (type == u"XPK")
        {
            m_result.AddError(kBadReference, u"Invalid reference: " + pointer.GetString());
            return false;
        }
    }
    int isNew = 0;
    Adapter* adapter = internal::FindAdapter(type, m_options, isNew);
    if (adapter == nullptr)
    {
        m_result.AddError(kBadReference, WARNING,
                          u"Missing Adapter (" + type + u"), resolving: " + pointer.GetString());
        return false;
    }
    Push(adapter, context, isNew != 0);
    return true;
}

void AdapterRef::Push(Adapter* adapter, const String& context, bool isNew)
{
    AdapterImpl& impl = *adapter->GetImplementation();
    impl.previous = m_adapter;
    impl.next = nullptr;
    impl.isNewInstance = isNew ? 1 : 0;
    impl.borrowsPrevious = m_adapter != nullptr && m_adapter == m_previous ? 1 : 0;
    if (m_adapter != nullptr)
    {
        m_adapter->SetNext(adapter);
    }
    m_adapter = adapter;  // from here on it goes with the chain
    impl.query = String();
    impl.context = context;
}

/// Each member is taken out of the chain before it goes, so that none deletes another.
void AdapterRef::ReleaseChain()
{
    Adapter* member = m_adapter;
    while (member != nullptr && member != m_previous)
    {
        AdapterImpl& impl = *member->GetImplementation();
        Adapter* below = impl.previous;
        if (IsShared(*member))
        {
            ResetShared(*member, m_options);
        }
        else
        {
            impl.previous = nullptr;
            delete member;
        }
        member = below;
    }
    m_adapter = nullptr;
    if (m_previous != nullptr)
    {
        m_previous->SetNext(m_savedNext);
        m_previous = nullptr;
    }
}

}  // namespace zorvex_api
