/// Reads the text of a Pointer. Every step is linear in the text, whatever the text is.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "runtime/NumberText.h"
#include "transport/PointerImpl.h"

namespace zorvex_api
{

namespace internal
{

namespace
{

constexpr int kBadReference = 517;
constexpr auto kNone = TextView::npos;
constexpr TextView kChainCut = u"#ZORVEX(";
constexpr TextView kLowerChainOpening = u"zorvex(";
constexpr TextView kZorvexMark = u"ZORVEX-doc";
constexpr int kMaxReadings = 8;  // see Settle

bool StartsWith(TextView text, TextView start)
{
    return text.substr(0, start.size()) == start;
}

bool IsLetter(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

/// A letter, ":" and then "/" or the end.
bool HasDrive(TextView text)
{
    return text.size() >= 2 && IsLetter(text[0]) && text[1] == u':' &&
           (text.size() == 2 || text[2] == u'/');
}

void ReplaceAll(std::u16string& text, TextView from, TextView to)
{
    std::size_t hit = text.find(from);
    if (hit == kNone)
    {
        return;
    }
    std::u16string out;
    std::size_t start = 0;
    for (; hit != kNone; start = hit + from.size(), hit = text.find(from, start))
    {
        out.append(text, start, hit - start).append(to);
    }
    out.append(text, start, kNone);
    text.swap(out);
}

/// A run of `mark` divided by "/" becomes one `mark`.
void MergeRepeated(std::u16string& text, TextView mark)
{
    const std::u16string repeated = u"/" + std::u16string(mark);
    std::u16string out;
    std::size_t start = 0;
    for (std::size_t hit = text.find(mark); hit != kNone; hit = text.find(mark, start))
    {
        out.append(text, start, hit + mark.size() - start);
        start = hit + mark.size();
        while (text.compare(start, repeated.size(), repeated) == 0)
        {
            start += repeated.size();
        }
    }
    out.append(text, start, kNone);
    text.swap(out);
}

/// Takes what stands in front of the first `mark` off `text`; nothing without a `mark`.
std::optional<TextView> TakeBefore(TextView& text, char16_t mark)
{
    const std::size_t hit = text.find(mark);
    if (hit == kNone)
    {
        return std::nullopt;
    }
    const TextView before = text.substr(0, hit);
    text.remove_prefix(hit + 1);
    return before;
}

/// Drops "." segments and ".." with the segment in front of it, but never the first segment alone.
std::u16string Normalised(TextView path)
{
    std::vector<TextView> kept;
    TextView rest = path;
    while (!rest.empty())
    {
        const std::size_t end = std::min(rest.find(u'/'), rest.size());
        const TextView segment = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (segment.empty() || (segment == u"." && !kept.empty()))
        {
            continue;
        }
        if (segment == u".." && !kept.empty() && kept.back() != u"." && kept.back() != u"..")
        {
            kept.pop_back();
            continue;
        }
        kept.push_back(segment);
    }
    std::u16string out(StartsWith(path, u"//") ? u"//" : StartsWith(path, u"/") ? u"/" : u"");
    for (std::size_t i = 0; i < kept.size(); ++i)
    {
        out.append(i == 0 ? u"" : u"/").append(kept[i]);
    }
    return out;
}

/// The location in front of query and fragment.
class LocationReader
{
public:
    LocationReader(PointerImpl& impl, TextView location) : m_impl(impl), m_text(location) {}

    void Read()
    {
        TurnBackslashes();
        TextView rest = m_text;
        ReadScheme(rest);
        ReadAuthority(rest);
        ReadFile();
        if (m_path.find(u"/.") != kNone)
        {
            m_path = Normalised(m_path);
        }
        if (StartsWith(m_path, u"#") && m_impl.m_scheme.IsEmpty())
        {
            m_path.insert(0, u"./");  // wherever it stands alone it is no fragment
        }
        m_impl.m_path = ToString(m_path);
    }

private:
    void TurnBackslashes()
    {
        if (m_text.find(u'\\') == kNone)
        {
            return;
        }
        std::replace(m_text.begin(), m_text.end(), u'\\', u'/');
        if (StartsWith(m_text, u"//"))  // a network share: all of it is path
        {
            m_text.insert(0, u"//");
        }
    }

    void ReadScheme(TextView& rest)
    {
        while (StartsWith(rest, u"::"))  // an empty scheme leaves no trace in the canonical text
        {
            rest.remove_prefix(1);
        }
        if (HasDrive(rest) || StartsWith(rest, u"/"))
        {
            return;
        }
        if (const std::optional<TextView> scheme = TakeBefore(rest, u':'))
        {
            m_impl.m_scheme = ToString(*scheme);
        }
    }

    void ReadAuthority(TextView rest)
    {
        if (!StartsWith(rest, u"//"))
        {
            m_path = rest;
            return;
        }
        rest.remove_prefix(2);
        m_impl.m_flags |= kPointerAuthority;
        if (!HasDrive(rest))
        {
            const std::optional<TextView> host = TakeBefore(rest, u'/');
            ReadHost(host.value_or(rest));
            rest = host.has_value() ? rest : TextView();
        }
        if (!rest.empty() && !HasDrive(rest))
        {
            m_path = u"/";
        }
        m_path.append(rest);
    }

    void ReadHost(TextView host)
    {
        const TextView whole = host;
        if (const std::optional<TextView> name = TakeBefore(host, u':'))
        {
            m_impl.m_host = ToString(*name);
            ReadPort(host);
            return;
        }
        m_impl.m_host = ToString(whole);
    }

    void ReadPort(TextView digits)
    {
        const number::ParsedInt port = number::ParseInt(digits);
        if (!digits.empty() && !port.overflow && port.end == digits.data() + digits.size())
        {
            m_impl.m_port = port.value;
        }
    }

    void ReadFile()
    {
        if (m_path.empty() || m_path == u"." || m_path == u"..")
        {
            return;
        }
        const bool hasDrive = HasDrive(m_path);
        const std::size_t cut = m_path.rfind(u'/');
        if (cut == kNone && hasDrive)
        {
            return;
        }
        std::u16string file = cut == kNone ? m_path : m_path.substr(cut + 1);
        m_path.erase(cut == kNone ? 0 : cut);
        // of several slashes in front of the file one can stay: each reading would take one
        while (m_path.size() > 1 && m_path.back() == u'/' && m_path[m_path.size() - 2] == u'/')
        {
            m_path.pop_back();
        }
        if (cut != kNone && m_path.empty() && m_impl.m_scheme.IsEmpty())
        {
            m_path = u"/";
        }
        ReadExtension(file);
    }

    void ReadExtension(std::u16string& file)
    {
        const std::size_t dot = file.rfind(u'.');
        if (dot != kNone)
        {
            m_impl.m_extension = ToString(TextView(file).substr(dot + 1));
            file.erase(dot);
        }
        if (m_impl.m_extension.IsEmpty())  // each reading would take one more
        {
            file.erase(file.find_last_not_of(u'.') + 1);
        }
        m_impl.m_file = ToString(file);
    }

    PointerImpl& m_impl;
    std::u16string m_text;
    std::u16string m_path;
};

/// Divides an element at its first "/" into type and control string.
void AppendElement(PointerImpl& impl, TextView element)
{
    const std::size_t cut = element.find(u'/');
    const bool hasControl = cut != kNone;
    impl.Append(element.substr(0, cut), hasControl ? element.substr(cut + 1) : TextView());
}

/// Cuts a chain text into elements: at each "-doc", which goes, the last "/" in front of it that
/// isn't the first character ends an element.
void ReadElements(PointerImpl& impl, TextView chain)
{
    std::u16string pending;
    std::size_t lastSlash = 0;  // in `pending`; 0 when there is none to cut at
    for (const char16_t unit : chain)
    {
        if (unit == u'/')
        {
            lastSlash = pending.size();
        }
        pending.push_back(unit);
        const bool atMark = unit == kDocMark.back() && pending.size() >= kDocMark.size() &&
                            TextView(pending).substr(pending.size() - kDocMark.size()) == kDocMark;
        if (!atMark)
        {
            continue;
        }
        pending.resize(pending.size() - kDocMark.size());
        if (lastSlash > 0)
        {
            AppendElement(impl, TextView(pending).substr(0, lastSlash));
            pending.erase(0, lastSlash + 1);
            lastSlash = 0;
        }
    }
    AppendElement(impl, pending);
}

/// Reads the fragment into the chain. False when its ")" is missing.
bool ReadFragment(PointerImpl& impl, TextView fragment)
{
    if (!OpensChain(fragment))
    {
        impl.Append(u"ZORVEX", fragment);
        return true;
    }
    const bool isOld = StartsWith(fragment, kOldChainOpening);
    fragment.remove_prefix(isOld ? kOldChainOpening.size() : kChainOpening.size());
    const std::size_t end = fragment.rfind(u')');
    if (end == kNone)
    {
        return false;
    }
    std::u16string chain(fragment.substr(0, end));
    ReplaceAll(chain, u"oRB-doc", kZorvexMark);
    ReplaceAll(chain, u"/oRBDef/", u"/oRBDef/ZORVEX-doc/");
    MergeRepeated(chain, kZorvexMark);
    ReadElements(impl, chain);
    return true;
}

/// One reading of `text` into an empty `impl`.
Result ReadOnce(PointerImpl& impl, TextView text, bool treatAsFile)
{
    const PointerParts parts = SplitPointerText(text, treatAsFile);
    if (parts.hasQuery)
    {
        impl.m_query = ToString(parts.query);
        impl.m_flags |= kPointerQuery;
    }
    if (!parts.location.empty())
    {
        LocationReader(impl, parts.location).Read();
    }
    if (parts.hasFragment)
    {
        impl.m_fragment = ToString(parts.fragment);
        impl.m_flags |= kPointerFragment;
        if (!ReadFragment(impl, parts.fragment))
        {
            const std::u16string message =
                u"ZORVEX Pointer error, missing \")\":" + std::u16string(text);
            return Result(kBadReference, ToString(message));
        }
    }
    impl.RenewText();
    return Result();
}

/// The canonical text of some texts reads differently once more ("a/.." gives "a/." and that "a").
/// Such a text is read on until its canonical text reads as itself.
void Settle(PointerImpl& impl, TextView text)
{
    std::u16string last(text);
    for (int reading = 1; reading < kMaxReadings && View(impl.m_text) != last; ++reading)
    {
        last = View(impl.m_text);
        PointerImpl next;
        if (ReadOnce(next, last, false).HasError() || View(next.m_text) == last)
        {
            return;
        }
        impl.Clear();
        impl.ClearChain();
        ReadOnce(impl, last, false);
    }
}

}  // namespace

bool OpensChain(TextView fragment)
{
    return StartsWith(fragment, kChainOpening) || StartsWith(fragment, kLowerChainOpening) ||
           StartsWith(fragment, kOldChainOpening);
}

PointerParts SplitPointerText(TextView text, bool treatAsFile)
{
    PointerParts parts;
    const auto cutAt = [&](std::size_t hit)
    {
        parts.location = text.substr(0, hit);
        parts.fragment = text.substr(hit + 1);
        parts.hasFragment = true;
    };

    parts.location = text;
    const std::size_t last = text.rfind(u'#');
    if (last != kNone)
    {
        const TextView head = text.substr(0, last);
        const TextView tail = text.substr(last + 1);
        const bool tailOpens = StartsWith(tail, kChainOpening);
        const bool headOpens = StartsWith(head, kChainOpening) || StartsWith(head, kChainCut);
        const std::size_t opening = text.rfind(kChainCut);
        if (head.empty())
        {
            if (!treatAsFile || tail.find(u'.') == kNone)
            {
                cutAt(last);
            }
        }
        else if (tailOpens)
        {
            cutAt(last);
        }
        else if (opening != kNone && (!headOpens || (!tail.empty() && tail.back() == u')')))
        {
            cutAt(opening);
        }
        else if (headOpens || (!tail.empty() && tail.find(u'.') == kNone))
        {
            cutAt(last);
        }
    }
    const std::size_t mark = parts.location.find(u'?');
    if (mark != kNone)
    {
        parts.query = parts.location.substr(mark + 1);
        parts.location = parts.location.substr(0, mark);
        parts.hasQuery = true;
    }
    return parts;
}

Result ParsePointerText(PointerImpl& impl, TextView text, bool treatAsFile)
{
    const std::u16string own(text);  // `text` may stand in `impl`
    impl.Clear();
    impl.ClearChain();
    Result result = ReadOnce(impl, own, treatAsFile);
    if (result.Ok() && !treatAsFile)
    {
        Settle(impl, own);
    }
    return result;
}

}  // namespace internal

Result ParsePointer(Pointer& pointer, const String& text, int treatAsFile)
{
    if (pointer.GetImplementation() == nullptr)
    {
        pointer = Pointer();
    }
    return internal::ParsePointerText(*pointer.GetImplementation(), View(text), treatAsFile != 0);
}

}  // namespace zorvex_api
