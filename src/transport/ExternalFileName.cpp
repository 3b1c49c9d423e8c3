#include "transport/ExternalFileName.h"

#include <algorithm>
#include <string>

#include "objectmodel/ClassDescriptorImpl.h"
#include "runtime/Text.h"
#include "transport/DocumentPointer.h"
#include "transport/FileName.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Pointer.h"
#include "zorvex_api/URIResolver.h"

namespace zorvex_api::internal
{

namespace
{

constexpr TextView kUnfitCharacters = u"\"\\:*?<>|'@ []{}()=/.";
constexpr std::size_t kLongestName = 200;  // bytes; leaves room for number and extension
constexpr TextView kBodyIndex = u"body_index_";

bool IsRepresentationOwner(const Object* owner)
{
    const ClassDescriptorImpl* impl =
        owner != nullptr ? ClassDescriptorImpl::Of(owner->GetClassDescriptor()) : nullptr;
    return impl != nullptr && impl->InMainNamespace() &&
           (View(impl->Name()) == u"Representation" || View(impl->Name()) == u"CompoundRep");
}

bool SameHandles(const Array<Handle>& a, const Array<Handle>& b)
{
    if (a.GetSize() != b.GetSize())
    {
        return false;
    }
    for (int i = 0; i < a.GetSize(); ++i)
    {
        if (b.Lookup(a.GetAt(i)) < 0)
        {
            return false;
        }
    }
    return true;
}

bool EndsInHalfCharacter(TextView text)
{
    return !text.empty() && (text.back() & 0xFC00) == 0xD800;
}

void ReplaceUnfit(std::u16string& text)
{
    for (char16_t& unit : text)
    {
        if (kUnfitCharacters.find(unit) != TextView::npos)
        {
            unit = u'_';
        }
    }
}

/// A control string as a part of a name.
std::u16string NamePart(TextView control)
{
    std::u16string text(control);
    ReplaceUnfit(text);
    std::u16string single;
    for (const char16_t unit : text)
    {
        if (unit != u'_' || single.empty() || single.back() != u'_')
        {
            single += unit;
        }
    }
    if (!single.empty() && single.back() == u'_')
    {
        single.pop_back();
    }
    if (!single.empty() && single.front() == u'_')
    {
        single.erase(0, 1);
    }
    std::u16string part;
    std::size_t begin = 0;
    for (std::size_t at = single.find(kBodyIndex); at != single.npos;
         at = single.find(kBodyIndex, begin))
    {
        part.append(single, begin, at - begin);
        begin = at + kBodyIndex.size();
    }
    return part.append(single, begin);
}

/// The file of the pointer under which a document is known; empty if it isn't.
std::u16string KnownFile(URIResolver* resolver, Object* document)
{
    if (document == nullptr)
    {
        return {};
    }
    Pointer pointer;
    if (resolver != nullptr && resolver->FindPointer(Handle(document), pointer) != 0)
    {
        return std::u16string(View(pointer.GetFile()));
    }
    const Pointer* remembered = GetDocumentPointer(document->GetRoot());
    return remembered != nullptr ? std::u16string(View(remembered->GetFile())) : std::u16string();
}

struct Naming
{
    std::u16string name;
    bool needsFormat = false;
};

void AddControls(const FileNameSource& source, bool withLast, Naming& naming)
{
    const Pointer& pointer = source.pointer;
    const int count = pointer.GetAdapterCount() - (withLast ? 0 : 1);
    bool first = true;
    for (int i = 0; i < count; ++i)
    {
        const TextView control = View(pointer.GetControlString(i));
        const bool isAddress = pointer.GetAdapterType(i) == u"STREAM";
        if (control.empty() || isAddress || control == u"Facetmesh" || control == u"body")
        {
            continue;
        }
        const std::u16string part = NamePart(control);
        const TextView file = View(pointer.GetFile());
        if (first && !file.empty() && part.starts_with(file))
        {
            naming.name = part;
        }
        else
        {
            naming.name += u'_';
            naming.name += part;
        }
        naming.needsFormat = pointer.GetFormat() != u"ZORVEX";
        first = false;
    }
}

/// A name from the documents at both ends of the reference.
void NameFromDocuments(const FileNameSource& source, Naming& naming)
{
    Object* target = source.targets.GetSize() > 0 ? source.targets.GetAt(0).GetObject() : nullptr;
    Object* subject = target != nullptr ? target : source.owner;
    const std::u16string ownerId(source.owner != nullptr ? View(source.owner->GetId())
                                                         : TextView());
    const bool foreign = source.pointer.GetFormat() != u"ZORVEX";
    naming.name =
        KnownFile(source.resolver, subject != nullptr ? subject->GetDocumentBase() : nullptr);
    if (!naming.name.empty())
    {
        if (foreign)
        {
            naming.name += u'_';
            naming.name += ownerId;
            naming.needsFormat = true;
        }
    }
    else
    {
        const std::u16string file = KnownFile(
            source.resolver, source.owner != nullptr ? source.owner->GetDocumentBase() : nullptr);
        naming.name = file.empty() ? ownerId : file + u'_' + ownerId;
    }
    ReplaceUnfit(naming.name);
}

}  // namespace

String MakeFileName(const FileNameSource& source, int number, int& stripLocator)
{
    stripLocator = 1;
    if (IsRepresentationOwner(source.owner) && SameHandles(source.targets, source.roots))
    {
        stripLocator = 0;
    }
    Naming naming;
    naming.name = View(source.pointer.GetFile());
    AddControls(source, stripLocator == 0, naming);
    if (naming.name.empty())
    {
        NameFromDocuments(source, naming);
    }
    if (naming.needsFormat && !naming.name.empty())
    {
        const std::u16string ending =
            u"_" + std::u16string(View(source.pointer.GetFormat().LowerCase()));
        if (!naming.name.ends_with(ending))
        {
            naming.name += ending;
        }
    }
    // names that are made from names grow; numbers tell them apart
    naming.name.resize(std::min(naming.name.size(), kLongestName));
    while (ToUtf8(naming.name).size() > kLongestName || EndsInHalfCharacter(naming.name))
    {
        naming.name.pop_back();
    }
    String name = ToString(naming.name);
    if (StandsInPackage(source.adapter))
    {
        return name;
    }
    if (number >= 0)
    {
        name += String::Format("_%d", number);
    }
    const String extension = GetFirstExtension(source.adapter);
    return extension.IsEmpty() != 0 ? name : name + u"." + extension;
}

}  // namespace zorvex_api::internal
