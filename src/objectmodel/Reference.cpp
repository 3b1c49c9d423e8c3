#include "zorvex_api/Reference.h"

#include <utility>

#include "runtime/Text.h"

namespace zorvex_api
{

/// The record of a Reference; one that holds nothing has none.
class ReferenceImpl : public Allocator
{
public:
    ReferenceImpl() = default;
    ReferenceImpl(const ReferenceImpl& other)
        : text(other.text),
          handles(other.handles != nullptr ? new Array<Handle>(*other.handles) : nullptr),
          handle(other.handle)
    {
    }
    ReferenceImpl& operator=(const ReferenceImpl&) = delete;
    ~ReferenceImpl() { delete handles; }

    String text;
    Array<Handle>* handles = nullptr;  // owned, made when needed
    Handle handle;                     // the single value
};

namespace
{

const Handle& NoHandle()
{
    static const Handle none;
    return none;
}

const Array<Handle>& NoHandles()
{
    static const Array<Handle> none;
    return none;
}

/// The handles of a reference without making its array.
class HandleView
{
public:
    explicit HandleView(const ReferenceImpl* impl)
    {
        if (impl == nullptr)
        {
            return;
        }
        if (impl->handles != nullptr)
        {
            m_handles = impl->handles->GetData();
            m_count = impl->handles->GetSize();
        }
        else if (impl->handle.GetData() != nullptr)
        {
            m_handles = &impl->handle;
            m_count = 1;
        }
    }
    int Count() const { return m_count; }
    const Handle& operator[](int index) const { return m_handles[index]; }

private:
    const Handle* m_handles = nullptr;
    int m_count = 0;
};

int CompareHandles(const HandleView& a, const HandleView& b)
{
    if (a.Count() != b.Count())
    {
        return a.Count() < b.Count() ? -1 : 1;
    }
    for (int i = 0; i < a.Count(); ++i)
    {
        if ((a[i] == b[i]) == 0)
        {
            return (a[i] < b[i]) != 0 ? -1 : 1;
        }
    }
    return 0;
}

}  // namespace

Reference::Reference() : m_impl(nullptr) {}

Reference::Reference(const String& text) : Reference()
{
    SetString(text);
}

Reference::Reference(const Handle& handle) : m_impl(new ReferenceImpl)
{
    m_impl->handle = handle;
}

Reference::Reference(const Array<Handle>& handles) : Reference(String(), handles) {}

Reference::Reference(const String& text, const Handle& handle) : Reference(handle)
{
    m_impl->text = text;
}

Reference::Reference(const String& text, const Array<Handle>& handles) : m_impl(new ReferenceImpl)
{
    m_impl->text = text;
    m_impl->handles = new Array<Handle>(handles);
}

Reference::Reference(const Reference& other)
    : m_impl(other.m_impl != nullptr ? new ReferenceImpl(*other.m_impl) : nullptr)
{
}

Reference::Reference(Reference&& other) noexcept : m_impl(std::exchange(other.m_impl, nullptr)) {}

Reference::~Reference()
{
    delete m_impl;
}

Reference& Reference::operator=(const Reference& other)
{
    if (this != &other)
    {
        *this = Reference(other);
    }
    return *this;
}

Reference& Reference::operator=(Reference&& other) noexcept
{
    if (this != &other)
    {
        delete std::exchange(m_impl, std::exchange(other.m_impl, nullptr));
    }
    return *this;
}

const String& Reference::GetString() const
{
    return m_impl != nullptr ? m_impl->text : String::EmptyString();
}

void Reference::SetString(const String& text)
{
    if (m_impl == nullptr && !text.IsEmpty())
    {
        m_impl = new ReferenceImpl;
    }
    if (m_impl != nullptr)
    {
        m_impl->text = text;
    }
}

const Handle& Reference::GetHandle() const
{
    if (m_impl == nullptr)
    {
        return NoHandle();
    }
    const Array<Handle>* handles = m_impl->handles;
    return handles != nullptr && handles->GetSize() > 0 ? handles->GetAt(0) : m_impl->handle;
}

const Array<Handle>& Reference::GetHandles() const
{
    if (m_impl == nullptr)
    {
        return NoHandles();
    }
    if (m_impl->handles == nullptr)
    {
        m_impl->handles = new Array<Handle>;
        if (m_impl->handle.GetData() != nullptr)
        {
            m_impl->handles->Add(m_impl->handle);
        }
    }
    return *m_impl->handles;
}

int Reference::Compare(const Reference& a, const Reference& b)
{
    const int texts = a.GetString().Compare(b.GetString());
    return texts != 0 ? texts : CompareHandles(HandleView(a.m_impl), HandleView(b.m_impl));
}

int operator==(const Reference& a, const Reference& b)
{
    return Reference::Compare(a, b) == 0 ? 1 : 0;
}

int operator!=(const Reference& a, const Reference& b)
{
    return Reference::Compare(a, b) != 0 ? 1 : 0;
}

int operator<(const Reference& a, const Reference& b)
{
    return Reference::Compare(a, b) < 0 ? 1 : 0;
}

}  // namespace zorvex_api
