#include "zorvex_api/ConfigurationRef.h"

#include "objectmodel/ConfigurationStack.h"
#include "objectmodel/ObjectPin.h"
#include "objectmodel/UpperServices.h"
#include "runtime/PagingHooks.h"
#include "zorvex_api/Exception.h"

namespace zorvex_api
{

/// One entry of the stack of active configurations.
struct ConfigurationRefImpl : Allocator
{
    ConfigurationRefImpl* previous;
    Configuration* configuration;  // null when it has died
};

namespace
{

/// The answer to "treat_as_set", good while the tree of options is as it was.
struct EmptyValueCache
{
    const ClassData* root = nullptr;  // null: not known
    std::uint32_t stamp = 0;
    bool answer = false;
};

thread_local ConfigurationRefImpl* t_top = nullptr;
thread_local EmptyValueCache t_emptyValue;

void ForgetAnswer()
{
    t_emptyValue.root = nullptr;
}

bool OptionIs(const Configuration& options, TextView path, TextView wanted)
{
    String value;
    return options.Get(BorrowConstant(path), value) != nullptr && View(value) == wanted;
}

/// Takes an entry out wherever it stands.
void Leave(const ConfigurationRefImpl* entry)
{
    ConfigurationRefImpl** place = &t_top;
    while (*place != nullptr && *place != entry)
    {
        place = &(*place)->previous;
    }
    if (*place != nullptr)
    {
        *place = entry->previous;
    }
    ForgetAnswer();
}

/// Whether the paging service refuses the configuration for good.
bool IsRefusal(const Exception& exception)
{
    return View(exception.GetMessage()).starts_with(u"SQLite serialisation is not supported.");
}

/// Any other trouble of the paging service leaves paging as it is.
void TellPagingOfEnd(Configuration* active, bool wasPaging) noexcept
{
    try
    {
        PagingHooks::Configure(active, wasPaging ? 1 : 0, 0);
    }
    catch (const Exception&)
    {
        return;
    }
}

}  // namespace

ConfigurationRef::ConfigurationRef(Configuration* configuration) : m_impl(new ConfigurationRefImpl)
{
    m_impl->previous = t_top;
    m_impl->configuration = configuration;
    t_top = m_impl;
    ForgetAnswer();
    try
    {
        PagingHooks::Configure(configuration, 0, 0);
    }
    catch (const Exception& exception)
    {
        if (IsRefusal(exception))
        {
            Leave(m_impl);
            delete m_impl;
            throw;
        }
    }
    configuration_stack::EmptyIsValue();
}

ConfigurationRef::~ConfigurationRef()
{
    const bool wasPaging =
        m_impl->configuration != nullptr && OptionIs(*m_impl->configuration, u"serialise", u"true");
    Leave(m_impl);
    delete m_impl;
    TellPagingOfEnd(GetActiveConfiguration(), wasPaging);
}

Configuration* ConfigurationRef::operator->() const
{
    return m_impl->configuration;
}

Configuration* ConfigurationRef::GetActiveConfiguration()
{
    return t_top != nullptr ? t_top->configuration : nullptr;
}

namespace configuration_stack
{

bool EmptyIsValue()
{
    const Configuration* active = ConfigurationRef::GetActiveConfiguration();
    if (active == nullptr)
    {
        return false;
    }
    const ObjectPin pin(active);
    const ClassData* root = pin->Root();
    if (t_emptyValue.root != root || t_emptyValue.stamp != root->changeStamp)
    {
        t_emptyValue.answer =
            OptionIs(*active, u"adapters/ZORVEX/empty_attributes", u"treat_as_set");
        t_emptyValue.root = root;
        t_emptyValue.stamp = root->changeStamp;
    }
    return t_emptyValue.answer;
}

void* SerialiseCallbacks()
{
    for (const ConfigurationRefImpl* entry = t_top; entry != nullptr; entry = entry->previous)
    {
        String value;
        void* pointer = nullptr;
        if (entry->configuration != nullptr &&
            entry->configuration->Get(BorrowConstant(u"serialise/callbacks"), value, pointer) !=
                nullptr &&
            pointer != nullptr)
        {
            return pointer;
        }
    }
    return nullptr;
}

}  // namespace configuration_stack

namespace upper
{

void ForgetConfiguration(Object* configuration) noexcept
{
    for (ConfigurationRefImpl* entry = t_top; entry != nullptr; entry = entry->previous)
    {
        if (entry->configuration == configuration)
        {
            entry->configuration = nullptr;
        }
    }
    ForgetAnswer();
}

}  // namespace upper
}  // namespace zorvex_api
