#include "zorvex_api/Pointer.h"

#include <string>
#include <utility>

#include "transport/PointerImpl.h"

namespace zorvex_api
{

namespace
{

constexpr TextView kUnset = u"unset";

const PointerImpl& ImplOf(const Pointer& pointer)
{
    static const PointerImpl empty;
    const PointerImpl* impl = pointer.GetImplementation();
    return impl == nullptr ? empty : *impl;
}

bool IsInChain(const PointerImpl& impl, int index)
{
    return index >= 0 && index < impl.ChainLength();
}

/// A cached text: `make` fills it on first use.
template <class Make>
const String& Cached(String& cache, Make make)
{
    if (cache.IsEmpty())
    {
        std::u16string text;
        make(text);
        if (!text.empty())
        {
            cache = ToString(text);
        }
    }
    return cache;
}

bool SameScheme(TextView a, TextView b)
{
    return a == b || (a.empty() && b == u"file") || (b.empty() && a == u"file");
}

bool SameChain(const PointerImpl& a, const PointerImpl& b)
{
    const int length = a.ChainLength();
    if (length != b.ChainLength())
    {
        return false;
    }
    for (int i = 0; i < length; ++i)
    {
        const bool sameType = (*a.m_adapterTypes)[i] == (*b.m_adapterTypes)[i];
        const bool isLocator = i == length - 1;  // the thing inside the document takes no part
        if (!sameType || (!isLocator && (*a.m_controlStrings)[i] != (*b.m_controlStrings)[i]))
        {
            return false;
        }
    }
    return true;
}

}  // namespace

Pointer::Pointer() : m_impl(new PointerImpl) {}

Pointer::Pointer(const String& text) : Pointer()
{
    Parse(text);
}

Pointer::Pointer(const Pointer& other)
    : m_impl(other.m_impl == nullptr ? nullptr : new PointerImpl(*other.m_impl))
{
}

Pointer::Pointer(Pointer&& other) noexcept : m_impl(std::exchange(other.m_impl, nullptr)) {}

Pointer::~Pointer()
{
    delete m_impl;
}

Pointer& Pointer::operator=(const Pointer& other)
{
    if (this != &other)
    {
        Pointer copy(other);
        std::swap(m_impl, copy.m_impl);
    }
    return *this;
}

Pointer& Pointer::operator=(Pointer&& other) noexcept
{
    if (this != &other)
    {
        delete std::exchange(m_impl, std::exchange(other.m_impl, nullptr));
    }
    return *this;
}

PointerImpl* Pointer::GetImplementation() const
{
    return m_impl;
}

PointerImpl& Pointer::Impl()
{
    if (m_impl == nullptr)
    {
        m_impl = new PointerImpl;
    }
    return *m_impl;
}

Result Pointer::Parse(const String& text)
{
    return internal::ParsePointerText(Impl(), View(text), false);
}

Result Pointer::Construct(String& out)
{
    Impl().RenewText();
    out = m_impl->m_text;
    return Result();
}

Result Pointer::Add(const String& type, const String& control)
{
    Impl().Append(View(type), View(control));
    m_impl->RenewText();
    return Result();
}

void Pointer::Insert(int index, const String& type, const String& control)
{
    Impl().MakeChain();
    m_impl->m_adapterTypes->InsertAt(index, type);
    m_impl->m_controlStrings->InsertAt(index, control);
    m_impl->RenewText();
}

void Pointer::Remove(int index)
{
    if (ImplOf(*this).m_adapterTypes == nullptr)
    {
        return;
    }
    m_impl->m_adapterTypes->RemoveAt(index);
    m_impl->m_controlStrings->RemoveAt(index);
    m_impl->RenewText();
}

void Pointer::RemoveAll()
{
    Impl().ClearChain();
}

void Pointer::Reset()
{
    Impl().Clear();
    m_impl->ClearChain();
}

int Pointer::GetAdapterCount() const
{
    return ImplOf(*this).ChainLength();
}

const String& Pointer::GetAdapterType(int index) const
{
    const PointerImpl& impl = ImplOf(*this);
    return IsInChain(impl, index) ? std::as_const(*impl.m_adapterTypes)[index]
                                  : String::EmptyString();
}

void Pointer::SetAdapterType(int index, const String& type)
{
    if (IsInChain(ImplOf(*this), index))
    {
        m_impl->m_adapterTypes->SetAt(index, String(type));
        m_impl->RenewText();
    }
}

const String& Pointer::GetControlString(int index) const
{
    const PointerImpl& impl = ImplOf(*this);
    return IsInChain(impl, index) ? std::as_const(*impl.m_controlStrings)[index]
                                  : String::EmptyString();
}

void Pointer::SetControlString(int index, const String& control)
{
    if (IsInChain(ImplOf(*this), index))
    {
        m_impl->m_controlStrings->SetAt(index, String(control));
        m_impl->RenewText();
    }
}

const String& Pointer::GetFormat() const
{
    return GetAdapterType(GetAdapterCount() - 1);
}

const String& Pointer::GetLocatorString() const
{
    return GetControlString(GetAdapterCount() - 1);
}

void Pointer::SetLocatorString(const String& control)
{
    SetControlString(GetAdapterCount() - 1, control);
}

void Pointer::EnsureFormat(const String& format)
{
    const bool isNone = format.IsEmpty() || format == kUnset.data();
    if (GetAdapterCount() == 1 && GetAbsolutePath().IsEmpty() && GetControlString(0).IsEmpty())
    {
        if (isNone)
        {
            RemoveAll();
            m_impl->RenewText();
        }
        else if (GetFormat() != format)
        {
            SetAdapterType(0, format);
        }
        return;
    }
    const bool isLast = GetAdapterCount() > 0 && GetFormat() == format;
    if (!isNone && !isLast)
    {
        Add(format, String());
    }
}

const String& Pointer::GetScheme() const
{
    return ImplOf(*this).m_scheme;
}

const String& Pointer::GetHost() const
{
    return ImplOf(*this).m_host;
}

const String& Pointer::GetPath() const
{
    return ImplOf(*this).m_path;
}

const String& Pointer::GetFile() const
{
    return ImplOf(*this).m_file;
}

const String& Pointer::GetExtension() const
{
    return ImplOf(*this).m_extension;
}

const String& Pointer::GetQuery() const
{
    return ImplOf(*this).m_query;
}

const String& Pointer::GetFragment() const
{
    return ImplOf(*this).m_fragment;
}

int Pointer::GetPort() const
{
    return ImplOf(*this).m_port;
}

const String& Pointer::GetString() const
{
    return ImplOf(*this).m_text;
}

const String& Pointer::GetFileName() const
{
    if (m_impl == nullptr)
    {
        return String::EmptyString();
    }
    return Cached(m_impl->m_fileName,
                  [this](std::u16string& text)
                  {
                      text.append(View(m_impl->m_file));
                      if (!m_impl->m_extension.IsEmpty())
                      {
                          text.append(u".").append(View(m_impl->m_extension));
                      }
                  });
}

const String& Pointer::GetBasePath() const
{
    if (m_impl == nullptr)
    {
        return String::EmptyString();
    }
    return Cached(m_impl->m_basePath,
                  [this](std::u16string& text)
                  {
                      const TextView path = View(m_impl->m_path);
                      if (!m_impl->m_host.IsEmpty())
                      {
                          text.append(u"//").append(View(m_impl->m_host));
                          text.append(path.substr(0, 1) == u"/" ? u"" : u"/");
                      }
                      text.append(path);
                  });
}

const String& Pointer::GetFullPath() const
{
    if (m_impl == nullptr)
    {
        return String::EmptyString();
    }
    return Cached(m_impl->m_fullPath,
                  [this](std::u16string& text)
                  {
                      text.append(View(GetBasePath()));
                      if (!text.empty() && text.back() != u'/')
                      {
                          text.append(u"/");
                      }
                      text.append(View(GetFileName()));
                  });
}

const String& Pointer::GetAbsolutePath() const
{
    if (m_impl == nullptr)
    {
        return String::EmptyString();
    }
    return Cached(m_impl->m_absolutePath,
                  [this](std::u16string& text)
                  {
                      if (!m_impl->m_scheme.IsEmpty())
                      {
                          text.append(View(m_impl->m_scheme)).append(u":");
                      }
                      text.append(View(GetFullPath()));
                  });
}

const String& Pointer::GetNetPath() const
{
    if (m_impl == nullptr)
    {
        return String::EmptyString();
    }
    return Cached(m_impl->m_netPath,
                  [this](std::u16string& text)
                  {
                      if (!m_impl->m_scheme.IsEmpty())
                      {
                          text.append(View(m_impl->m_scheme)).append(u":");
                          if (m_impl->m_host.IsEmpty())
                          {
                              const bool isRooted = View(m_impl->m_path).substr(0, 1) == u"/";
                              text.append(isRooted ? u"//" : u"///");
                          }
                      }
                      text.append(View(GetBasePath()));
                  });
}

void Pointer::SetFileName(const String& name)
{
    const std::u16string whole(View(name));  // `name` may be a part of this Pointer
    const std::size_t dot = whole.rfind(u'.');
    const TextView text(whole);
    Impl().m_file = ToString(text.substr(0, dot));
    m_impl->m_extension = dot == TextView::npos ? String() : ToString(text.substr(dot + 1));
    m_impl->m_fileName = ToString(text);
    m_impl->m_fullPath.Empty();  // both hold the old name
    m_impl->m_absolutePath.Empty();
}

void Pointer::SetFragment(const String& fragment)
{
    TextView text = View(fragment);
    if (!text.empty())
    {
        text.remove_prefix(text.front() == u'#' ? 1 : 0);
        const String bare = ToString(text);
        Impl().m_fragment = bare;
        m_impl->m_flags |= kPointerFragment;
    }
    std::u16string whole;
    Impl().AppendText(whole);
    internal::ParsePointerText(*m_impl, whole, false);
}

int Pointer::HasFragment() const
{
    return (ImplOf(*this).m_flags & kPointerFragment) != 0;
}

int Pointer::HasPtrFragment() const
{
    return GetAdapterCount() > 0;
}

int Pointer::HasPath() const
{
    return !GetPath().IsEmpty();
}

int Pointer::IsRelative() const
{
    const TextView path = View(GetPath());
    if (path.empty())
    {
        return GetHost().IsEmpty();
    }
    return path == u"." || (path[0] != u'/' && path.substr(1, 1) != u":");
}

int Pointer::IsValid() const
{
    const int count = GetAdapterCount();
    return !GetAbsolutePath().IsEmpty() || count > 1 ||
           (count == 1 && !GetControlString(0).IsEmpty());
}

int operator==(const Pointer& a, const Pointer& b)
{
    const PointerImpl& left = ImplOf(a);
    const PointerImpl& right = ImplOf(b);
    return SameScheme(View(left.m_scheme), View(right.m_scheme)) && left.m_host == right.m_host &&
           left.m_port == right.m_port && left.m_path == right.m_path &&
           left.m_file == right.m_file && left.m_extension == right.m_extension &&
           left.m_query == right.m_query && SameChain(left, right);
}

int operator!=(const Pointer& a, const Pointer& b)
{
    return !(a == b);
}

int operator<(const Pointer& a, const Pointer& b)
{
    return a.GetString() < b.GetString();
}

}  // namespace zorvex_api
