#include "transport/ExternalText.h"

#include <unistd.h>

#include <cerrno>
#include <string>

#include "objectmodel/ClassData.h"
#include "objectmodel/ExternalRep.h"
#include "runtime/Utf8.h"
#include "transport/DocumentPointer.h"
#include "transport/Location.h"

/// The text of a URI reference: as it is kept, and as a saved document has it.

namespace zorvex_api
{

namespace
{

constexpr std::uint32_t kWholeUri = 8;

int HexDigit(char16_t unit)
{
    if (unit >= u'0' && unit <= u'9')
    {
        return unit - u'0';
    }
    if (unit >= u'A' && unit <= u'F')
    {
        return unit - u'A' + 10;
    }
    return unit >= u'a' && unit <= u'f' ? unit - u'a' + 10 : -1;
}

/// The byte of "%xx" at `at`; -1 for anything else and for control characters, which stay escaped.
int EscapedByte(TextView text, std::size_t at)
{
    if (at + 2 >= text.size() || text[at] != u'%')
    {
        return -1;
    }
    const int high = HexDigit(text[at + 1]);
    const int low = HexDigit(text[at + 2]);
    const int byte = high < 0 || low < 0 ? -1 : high * 16 + low;
    return byte < 0x20 ? -1 : byte;
}

int SequenceLength(int lead)
{
    if (lead < 0x80)
    {
        return 1;
    }
    if (lead >= 0xC2 && lead < 0xE0)
    {
        return 2;
    }
    if (lead >= 0xE0 && lead < 0xF0)
    {
        return 3;
    }
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

/// Decodes the UTF-8 sequence of escaped bytes at `at`; gives the number of bytes, 0 if there is
/// none.
int DecodeSequence(TextView text, std::size_t at, std::u16string& out)
{
    const int lead = EscapedByte(text, at);
    const int length = lead < 0 ? 0 : SequenceLength(lead);
    std::uint32_t code = 0;
    for (int i = 0; i < length; ++i)
    {
        const int byte = EscapedByte(text, at + static_cast<std::size_t>(i) * 3);
        if (byte < 0 || (i > 0 && (byte & 0xC0) != 0x80))
        {
            return 0;
        }
        code = i == 0 ? static_cast<std::uint32_t>(length == 1 ? byte : byte & (0x7F >> length))
                      : code << 6 | static_cast<std::uint32_t>(byte & 0x3F);
    }
    const bool tooLong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    if (length == 0 || tooLong || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
    {
        return 0;
    }
    if (code < 0x10000)
    {
        out += static_cast<char16_t>(code);
    }
    else
    {
        out += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
        out += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    }
    return length;
}

/// "%xx" become characters: valid UTF-8 sequences as a whole, other bytes by their value. What
/// isn't two hexadecimal digits stays.
std::u16string Unescape(TextView text)
{
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();)
    {
        const int length = DecodeSequence(text, at, out);
        if (length > 0)
        {
            at += static_cast<std::size_t>(length) * 3;
            continue;
        }
        const int byte = EscapedByte(text, at);
        out += byte < 0 ? text[at] : static_cast<char16_t>(byte);
        at += byte < 0 ? 1 : 3;
    }
    return out;
}

bool IsSlash(char16_t unit)
{
    return unit == u'/' || unit == u'\\';
}

bool HasParentSegment(TextView text)
{
    for (std::size_t at = text.find(u".."); at != text.npos; at = text.find(u"..", at + 1))
    {
        const bool begins = at == 0 || IsSlash(text[at - 1]);
        const bool ends = at + 2 == text.size() || IsSlash(text[at + 2]);
        if (begins && ends)
        {
            return true;
        }
    }
    return false;
}

// --- relative texts ------------------------------------------------------------------------------

using internal::AsPlace;
using internal::FromFolderOf;
using internal::LocationOf;
using internal::QueryOf;

bool HasLocation(const Pointer& pointer)
{
    return pointer.GetAbsolutePath().IsEmpty() == 0;
}

bool DependsOnFolder(const Pointer& pointer)
{
    return HasLocation(pointer) && pointer.GetScheme().IsEmpty() != 0 && pointer.IsRelative() != 0;
}

/// The fragment behind a location. A locator with a "." would be read back as a part of the file
/// name unless the chain is written out.
String FragmentOf(const Pointer& pointer)
{
    if (pointer.HasFragment() == 0)
    {
        return String();
    }
    const String& control = pointer.GetLocatorString();
    if (View(pointer.GetFragment()) == View(control) && View(control).find(u'.') != TextView::npos)
    {
        return u"#ZORVEX(ZORVEX-doc/" + control + u")";
    }
    return u"#" + pointer.GetFragment();
}

/// The canonical text in a form that reads back as the same pointer.
String WholeText(const Pointer& pointer)
{
    const TextView text = View(pointer.GetString());
    const int fragment = pointer.HasFragment() != 0 ? pointer.GetFragment().GetLength() + 1 : 0;
    const TextView location = text.substr(0, text.size() - static_cast<std::size_t>(fragment));
    return location.empty() ? pointer.GetString()
                            : AsPlace(ToString(location)) + FragmentOf(pointer);
}

Pointer WithChainOf(const Pointer& pointer, const String& place)
{
    Pointer made(place);
    for (int i = 0; i < pointer.GetAdapterCount(); ++i)
    {
        made.Add(pointer.GetAdapterType(i), pointer.GetControlString(i));
    }
    return made;
}

/// The segments of a path that is relative to the working folder; "./d" is "d".
Array<String> Segments(const String& path)
{
    Array<String> all;
    path.Split(u"/", all);
    Array<String> segments;
    for (const String& segment : all)
    {
        if (segment != u".")
        {
            segments.Add(segment);
        }
    }
    return segments;
}

bool Climbs(const Array<String>& segments)
{
    for (int i = 0; i < segments.GetSize(); ++i)
    {
        if (segments.GetAt(i) == u"..")
        {
            return true;
        }
    }
    return false;
}

/// The way from one folder to another, both relative to the working folder; it ends in "/".
String WayBetween(const Array<String>& from, const Array<String>& to)
{
    int common = 0;
    while (common < from.GetSize() && common < to.GetSize() &&
           from.GetAt(common) == to.GetAt(common))
    {
        ++common;
    }
    String way;
    for (int i = common; i < from.GetSize(); ++i)
    {
        way += String(u"../");
    }
    for (int i = common; i < to.GetSize(); ++i)
    {
        way += to.GetAt(i) + u"/";
    }
    return way;
}

String WorkingFolder()
{
    std::string folder(1024, '\0');
    while (getcwd(folder.data(), folder.size()) == nullptr)
    {
        if (errno != ERANGE)
        {
            return String();
        }
        folder.resize(folder.size() * 2);
    }
    return FromUtf8(folder.c_str()) + u"/";
}

/// A pointer relative to the working folder, as a document in another folder has to give it.
String FromOtherFolder(const Pointer& target, const Pointer& document)
{
    if (!DependsOnFolder(target))
    {
        return WholeText(target);
    }
    const Array<String> from = Segments(document.GetPath());
    const bool documentIsRelative =
        document.GetScheme().IsEmpty() != 0 && document.IsRelative() != 0;
    if (!documentIsRelative || Climbs(from))
    {
        return Pointer(WorkingFolder() + target.GetFullPath()).GetString() + FragmentOf(target);
    }
    const String way = WayBetween(from, Segments(target.GetPath()));
    return AsPlace(way + target.GetFileName()) + FragmentOf(target);
}

bool IsSameDocument(const Pointer& a, const Pointer& b)
{
    return a.GetAbsolutePath() == b.GetAbsolutePath() && LocationOf(a) == LocationOf(b) &&
           QueryOf(a) == QueryOf(b);
}

/// The name within the folder, with what else a server is to be asked for.
String NameInFolder(const Pointer& pointer)
{
    const String name = AsPlace(pointer.GetFileName());
    const String query = QueryOf(pointer);
    return query.IsEmpty() != 0 ? name : name + u"?" + query;
}

}  // namespace

namespace internal
{

Pointer FromFolderOf(const Pointer& document, const Pointer& pointer)
{
    const String folder = LocationOf(document);
    if (!DependsOnFolder(pointer) || folder.IsEmpty() != 0)
    {
        return pointer;
    }
    const String separator = folder.EndsWith(u"/") != 0 ? u"" : u"/";
    const String place = folder + separator + pointer.GetFullPath();
    return WithChainOf(pointer, WithQuery(place, pointer.GetQuery()));
}

String TextWithin(Object* owner, const Pointer& pointer)
{
    const Pointer* document = owner != nullptr ? GetDocumentPointer(owner->GetRoot()) : nullptr;
    if (document == nullptr || document->GetNetPath().IsEmpty() != 0)
    {
        return WholeText(pointer);
    }
    return FromOtherFolder(pointer, *document);
}

String TextWithin(Object* owner, const Pointer& pointer, const Pointer& before)
{
    const Pointer* document = GetDocumentPointer(owner->GetRoot());
    if (document != nullptr && DependsOnFolder(before) &&
        FromFolderOf(*document, before).GetAbsolutePath() == pointer.GetAbsolutePath())
    {
        return WholeText(WithChainOf(pointer, AsPlace(before.GetFullPath())));
    }
    return TextWithin(owner, pointer);
}

}  // namespace internal

void ExternalRep::SetText(Object*, TextView newText, bool clearTarget)
{
    if (clearTarget)
    {
        ReleaseTargets();
        ClearTarget();
    }
    if (HasText() && View(GetText()) == newText)
    {
        return;
    }
    const std::u16string plain = Unescape(newText);
    const String canonical = HasParentSegment(plain) ? Pointer(ToString(plain)).GetString() : u"";
    StoreText(canonical.IsEmpty() == 0 ? View(canonical) : plain);  // never lost for being odd
}

void ExternalRep::GetEscapedText(String& out) const
{
    Pointer::EscapeString(GetText(), out, kWholeUri);
}

void ExternalRep::GetRelativeText(const Pointer& document, String& out) const
{
    const Pointer stored(GetText());
    const Pointer* own = internal::GetDocumentPointer(owner->Root()->object);
    const Pointer pointer = own != nullptr ? FromFolderOf(*own, stored) : stored;
    String relative;
    if (!HasLocation(pointer))
    {
        relative = pointer.GetString().IsEmpty() != 0 ? GetText() : pointer.GetString();  // "#"
    }
    else if (IsSameDocument(pointer, document))
    {
        relative = u"#" + pointer.GetFragment();
    }
    else if (LocationOf(pointer) == LocationOf(document))
    {
        relative = NameInFolder(pointer) + FragmentOf(pointer);
    }
    else if (own != nullptr && LocationOf(*own) == LocationOf(document) && DependsOnFolder(stored))
    {
        relative = WholeText(stored);  // beside its former self a document keeps its ways
    }
    else
    {
        relative = FromOtherFolder(pointer, document);
    }
    Pointer::EscapeString(relative, out, kWholeUri);
}

}  // namespace zorvex_api
