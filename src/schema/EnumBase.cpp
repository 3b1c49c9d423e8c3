#include "zorvex_api/EnumBase.h"

#include <atomic>
#include <cstring>

#include "zorvex_api/Exception.h"

namespace zorvex_api
{

namespace
{

const char* FindText(const char* const* table, const char* text)
{
    for (; *table != nullptr; ++table)
    {
        if (std::strcmp(*table, text) == 0)
        {
            return *table;
        }
    }
    return nullptr;
}

}  // namespace

int EnumBase::m_iCurrField = 10001;

int EnumBase::Init()
{
    return std::atomic_ref<int>(m_iCurrField).fetch_add(1);
}

EnumBase::~EnumBase() = default;

EnumBase::EnumBase(const EnumBase& other) : m_current(other.m_current)
{
    if (m_current == nullptr)
    {
        m_text = other.m_text;
    }
}

EnumBase& EnumBase::operator=(const EnumBase& other)
{
    if (this != &other)
    {
        m_text = other.m_current == nullptr ? other.m_text : String();
        m_current = other.m_current;
    }
    return *this;
}

EnumBase::EnumBase(Table table) : m_current(table[0]) {}

EnumBase::EnumBase(Table table, Constant constant)
    : m_current(table[constant.index]), m_text(m_current)
{
    static_cast<void>(static_cast<const char*>(m_text));  // the narrow form too
}

EnumBase::EnumBase(Table table, const char* text)
    : m_current(text == nullptr ? table[0] : FindText(table, text))
{
    if (m_current == nullptr)
    {
        m_text = text;
    }
}

EnumBase::EnumBase(Table table, const String& text)
    : EnumBase(table, static_cast<const char*>(text))  // null for an empty text
{
}

int EnumBase::Set(const String& text)
{
    return Set(static_cast<const char*>(text));
}

const String& EnumBase::ToString() const
{
    if (m_current != nullptr && m_text.IsEmpty())
    {
        m_text = m_current;
    }
    return m_text;
}

int EnumBase::Equal(const EnumBase& a, const EnumBase& b)
{
    if (a.m_current != nullptr && b.m_current != nullptr)
    {
        return std::strcmp(a.m_current, b.m_current) == 0 ? 1 : 0;
    }
    return a.m_current == b.m_current && a.m_text == b.m_text ? 1 : 0;
}

int EnumBase::SetFrom(Table table, const char* text)
{
    const char* found = text == nullptr ? table[0] : FindText(table, text);
    if (found == nullptr)
    {
        return 0;
    }
    m_current = found;
    m_text.Empty();
    return 1;
}

void EnumBase::Assign(Table table, const char* className, const char* text)
{
    if (SetFrom(table, text) == 0)
    {
        throw Exception(2, String::Format("%s is not a valid %s", text, className));
    }
}

}  // namespace zorvex_api
