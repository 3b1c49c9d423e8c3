#include "transport/PointerImpl.h"

#include <memory>
#include <string>

#include "runtime/NumberText.h"

namespace zorvex_api
{

namespace
{

constexpr TextView kZorvex = u"ZORVEX";
constexpr TextView kOldZorvex = u"oRB";
constexpr TextView kStepCharacters = u"/[*@";  // a locator with one of these isn't a plain id
constexpr std::int32_t kDefaultPort = 80;

/// Whether a chain of one `ZORVEX` element can stand as its control string alone.
bool IsShortForm(TextView type, TextView control)
{
    return type == kZorvex && control.find_first_of(kStepCharacters) == TextView::npos &&
           !internal::OpensChain(control);
}

}  // namespace

PointerImpl::PointerImpl(const PointerImpl& other)
    : m_scheme(other.m_scheme),
      m_host(other.m_host),
      m_port(other.m_port),
      m_path(other.m_path),
      m_file(other.m_file),
      m_extension(other.m_extension),
      m_query(other.m_query),
      m_fragment(other.m_fragment),
      m_flags(other.m_flags),
      m_fileName(other.m_fileName),
      m_fullPath(other.m_fullPath),
      m_basePath(other.m_basePath),
      m_absolutePath(other.m_absolutePath),
      m_netPath(other.m_netPath),
      m_text(other.m_text)
{
    if (other.m_adapterTypes != nullptr)
    {
        auto types = std::make_unique<Array<String>>(*other.m_adapterTypes);
        m_controlStrings = new Array<String>(*other.m_controlStrings);
        m_adapterTypes = types.release();
    }
}

PointerImpl::~PointerImpl()
{
    delete m_adapterTypes;
    delete m_controlStrings;
}

int PointerImpl::ChainLength() const
{
    return m_adapterTypes == nullptr ? 0 : m_adapterTypes->GetSize();
}

void PointerImpl::MakeChain()
{
    if (m_adapterTypes == nullptr)
    {
        auto types = std::make_unique<Array<String>>();
        m_controlStrings = new Array<String>;
        m_adapterTypes = types.release();
    }
}

void PointerImpl::Append(TextView type, TextView control)
{
    MakeChain();
    m_adapterTypes->Add(ToString(type == kOldZorvex ? kZorvex : type));
    m_controlStrings->Add(ToString(control));
}

void PointerImpl::ClearChain()
{
    if (m_adapterTypes != nullptr)
    {
        m_adapterTypes->RemoveAll();
        m_controlStrings->RemoveAll();
    }
}

void PointerImpl::Clear()
{
    for (String* field :
         {&m_scheme, &m_host, &m_path, &m_file, &m_extension, &m_query, &m_fragment, &m_fileName,
          &m_fullPath, &m_basePath, &m_absolutePath, &m_netPath, &m_text})
    {
        field->Empty();
    }
    m_port = kDefaultPort;
    m_flags = 0;
}

void PointerImpl::FitFragment()
{
    const int length = ChainLength();
    if (length == 0)
    {
        SetFragment(View(m_fragment));
        return;
    }
    const Array<String>& types = *m_adapterTypes;
    const Array<String>& controls = *m_controlStrings;
    if (length == 1)
    {
        const TextView control = View(controls[0]);
        if (control.empty() || IsShortForm(View(types[0]), control))
        {
            SetFragment(control);
            return;
        }
    }
    std::u16string fragment(internal::kChainOpening);
    for (int i = 0; i < length; ++i)
    {
        fragment.append(i == 0 ? u"" : u"/").append(View(types[i])).append(internal::kDocMark);
        if (!controls[i].IsEmpty())
        {
            fragment.append(u"/").append(View(controls[i]));
        }
    }
    fragment.append(u")");
    SetFragment(fragment);
}

void PointerImpl::SetFragment(TextView fragment)
{
    if (fragment != View(m_fragment))
    {
        m_fragment = ToString(fragment);
    }
    m_flags = fragment.empty() ? m_flags & ~kPointerFragment : m_flags | kPointerFragment;
}

void PointerImpl::AppendText(std::u16string& out) const
{
    const auto endsInSlash = [&out] { return !out.empty() && out.back() == u'/'; };

    out.append(View(m_scheme));
    if (!out.empty())
    {
        out.append(u":");
    }
    if (m_flags & kPointerAuthority)
    {
        out.append(u"//").append(View(m_host));
    }
    if (m_port != kDefaultPort)
    {
        out.append(u":");
        number::AppendInt(m_port, out);
    }
    if (m_flags & kPointerAuthority)
    {
        out.append(u"/");
    }
    const TextView path = View(m_path);
    if (endsInSlash() && !path.empty() && path.front() == u'/')
    {
        out.pop_back();
    }
    out.append(path);
    if (!m_file.IsEmpty())
    {
        if (!out.empty() && !endsInSlash())
        {
            out.append(u"/");
        }
        out.append(View(m_file));
        if (!m_extension.IsEmpty())
        {
            out.append(u".").append(View(m_extension));
        }
    }
    if (!out.empty() && out.front() == u'#')
    {
        out.insert(0, u"./");  // a location, which would read back as a fragment
    }
    if (m_flags & kPointerQuery)
    {
        out.append(u"?").append(View(m_query));
    }
    if ((m_flags & kPointerFragment) || !m_fragment.IsEmpty())
    {
        out.append(u"#").append(View(m_fragment));
    }
}

void PointerImpl::RenewText()
{
    FitFragment();
    std::u16string text;
    AppendText(text);
    m_text = ToString(text);
}

}  // namespace zorvex_api
