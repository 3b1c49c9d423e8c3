#include "zorvex_api/Handle.h"

#include <cstdint>
#include <functional>
#include <new>

#include "objectmodel/UpperServices.h"
#include "runtime/Text.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

namespace
{

// No String holds this pointer: it isn't aligned.
constexpr std::uintptr_t kObjectMark = 0xbaadf00ddeadbeefULL;
constexpr TextView kObjectFormat = u"ZORVEX";

static_assert(sizeof(String) == sizeof(void*), "the format word of a Handle is a String");

void* ObjectMark()
{
    return reinterpret_cast<void*>(kObjectMark);
}

// Made while the library is loaded, and so never with the application's memory.
const String s_objectFormat = BorrowConstant(kObjectFormat);

}  // namespace

Handle::Handle() : m_data(nullptr), m_format(nullptr)
{
    new (&m_format) String();
}

Handle::Handle(const Handle& other) : Handle()
{
    *this = other;
}

Handle::Handle(Object* object) : Handle()
{
    if (object != nullptr)
    {
        m_data = object;
        m_format = ObjectMark();
    }
}

Handle::Handle(void* data, const String& format) : Handle()
{
    m_data = data;
    SetFormat(format);
}

Handle::~Handle()
{
    DropFormat();
}

Handle& Handle::operator=(const Handle& other)
{
    if (this == &other)
    {
        return *this;
    }
    if (other.HasObjectMark())
    {
        DropFormat();
        m_format = ObjectMark();
    }
    else
    {
        StoreFormat(other.Text());
    }
    m_data = other.m_data;
    return *this;
}

bool Handle::HasObjectMark() const
{
    return m_format == ObjectMark();
}

const String& Handle::Text() const
{
    return *reinterpret_cast<const String*>(&m_format);
}

void Handle::DropFormat()
{
    if (!HasObjectMark())
    {
        reinterpret_cast<String*>(&m_format)->~String();
    }
}

void Handle::StoreFormat(const String& format)
{
    if (HasObjectMark())
    {
        new (&m_format) String(format);
        return;
    }
    *reinterpret_cast<String*>(&m_format) = format;
}

Handle::operator void*() const
{
    return m_data;
}

Handle::operator Object*() const
{
    return GetObject();
}

void* Handle::GetData() const
{
    return m_data;
}

Object* Handle::GetObject() const
{
    return HasObjectMark() ? static_cast<Object*>(m_data) : nullptr;
}

int Handle::IsObject() const
{
    return HasObjectMark() ? 1 : 0;
}

const String& Handle::GetFormat() const
{
    return HasObjectMark() ? s_objectFormat : Text();
}

void Handle::SetFormat(const String& format)
{
    if (!Equals(format, kObjectFormat))
    {
        StoreFormat(format);
        return;
    }
    DropFormat();
    m_format = ObjectMark();
}

void Handle::Clear()
{
    m_data = nullptr;
    StoreFormat(String());
}

void Handle::Destroy()
{
    if (m_data != nullptr && (HasObjectMark() || !Text().IsEmpty()))
    {
        upper::DestroyForeign(*this);
    }
}

int operator==(const Handle& a, const Handle& b)
{
    if (a.m_data != b.m_data || a.HasObjectMark() != b.HasObjectMark())
    {
        return 0;
    }
    return a.HasObjectMark() || a.Text() == b.Text() ? 1 : 0;
}

int operator!=(const Handle& a, const Handle& b)
{
    return (a == b) != 0 ? 0 : 1;
}

int operator<(const Handle& a, const Handle& b)
{
    const TextView left = View(a.GetFormat());
    const TextView right = View(b.GetFormat());
    if (left != right)
    {
        return left < right ? 1 : 0;
    }
    return std::less<const void*>()(a.m_data, b.m_data) ? 1 : 0;
}

}  // namespace zorvex_api
