#include "objectmodel/ExternalRep.h"

#include <new>

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "runtime/FreeList.h"
#include "runtime/NumberText.h"
#include "runtime/Utf8.h"
#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

namespace
{

constexpr TextView kZorvexName = u"ZORVEX";
constexpr TextView kOldName = u"oRB";
constexpr TextView kUnsetName = u"unset";
constexpr TextView kIdPrefix = u"#id";
constexpr size_t kMaxDigits = 9;

std::uint32_t KindOfClass(const ClassDescriptorImpl& descriptor)
{
    if (!descriptor.InMainNamespace())
    {
        return 0;
    }
    const TextView name = View(descriptor.Name());
    if (name == u"Representation")
    {
        return ExternalRep::kRepresentation;
    }
    if (name == u"CompoundRep")
    {
        return ExternalRep::kCompoundRep;
    }
    if (name == u"ExternalFile")
    {
        return ExternalRep::kExternalFile;
    }
    return name == u"LocatorRef" ? ExternalRep::kLocatorRef : 0;
}

/// References come in runs of one class of owner: the answer for the class before is kept.
std::uint32_t KindOfOwner(ClassData& owner)
{
    struct Last
    {
        const ClassDescriptorImpl* descriptor = nullptr;
        std::uint32_t generation = 0;
        std::uint32_t kind = 0;
    };
    thread_local Last t_last;
    const ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(owner.GetClassDescriptor());
    if (descriptor == nullptr)
    {
        return 0;
    }
    const std::uint32_t generation = ClassRegistry::NamesGeneration();
    if (descriptor != t_last.descriptor || generation != t_last.generation)
    {
        t_last = {descriptor, generation, KindOfClass(*descriptor)};
    }
    return t_last.kind;
}

/// The number of "#id" and one to nine digits without a leading zero; 0 for any other text.
std::uint32_t NumberOf(TextView text)
{
    if (text.size() <= kIdPrefix.size() || text.size() > kIdPrefix.size() + kMaxDigits ||
        !text.starts_with(kIdPrefix) || text[kIdPrefix.size()] == u'0')
    {
        return 0;
    }
    std::uint32_t number = 0;
    for (char16_t digit : text.substr(kIdPrefix.size()))
    {
        if (digit < u'0' || digit > u'9')
        {
            return 0;
        }
        number = number * 10 + (digit - u'0');
    }
    return number;
}

char16_t* CopyText(TextView text)
{
    auto* copy = static_cast<char16_t*>(Allocator::allocate((text.size() + 1) * sizeof(char16_t)));
    text.copy(copy, text.size());
    copy[text.size()] = 0;
    return copy;
}

}  // namespace

ExternalRep* ExternalRep::Make(ClassData& owner)
{
    auto* rep = new (FreeList<sizeof(ExternalRep)>::Take()) ExternalRep;
    rep->owner = &owner;
    rep->flags = KindOfOwner(owner) | kKindKnown;
    return rep;
}

void ExternalRep::Destroy(ExternalRep* rep)
{
    if (rep == nullptr)
    {
        return;
    }
    rep->ReleaseTargets();
    rep->ClearTarget();
    rep->FreeText();
    rep->FreeFormat();
    rep->~ExternalRep();
    FreeList<sizeof(ExternalRep)>::Give(rep);
}

void ExternalRep::AppendText(std::u16string& out) const
{
    if ((flags & kNumericText) == 0)
    {
        if (text != nullptr)
        {
            out += text;
        }
        return;
    }
    out += kIdPrefix;
    number::AppendInt(number, out);
}

void ExternalRep::AppendText(std::string& outUtf8) const
{
    if ((flags & kNumericText) == 0)
    {
        if (text != nullptr)
        {
            utf8::AppendEncoded(text, utf8::kPlain, outUtf8);
        }
        return;
    }
    char digits[number::kMaxText];
    outUtf8 += "#id";
    outUtf8.append(digits, number::FormatInt(number, digits));
}

String ExternalRep::GetText() const
{
    std::u16string copy;
    AppendText(copy);
    return ToString(copy);
}

bool ExternalRep::HasText() const
{
    return (flags & kNumericText) != 0 || text != nullptr;
}

void ExternalRep::StoreText(TextView newText)
{
    const std::uint32_t newNumber = NumberOf(newText);
    if (newNumber != 0)
    {
        FreeText();
        number = newNumber;
        flags |= kNumericText;
        return;
    }
    char16_t* copy = newText.empty() ? nullptr : CopyText(newText);  // it may be our own text
    FreeText();
    text = copy;
}

TextView ExternalRep::FormatText() const
{
    if ((flags & kZorvexFormat) != 0)
    {
        return kZorvexName;
    }
    return format != nullptr ? TextView(format) : TextView();
}

void ExternalRep::StoreFormat(TextView newFormat)
{
    const bool isZorvex = newFormat == kZorvexName || newFormat == kOldName;
    const bool isNone = newFormat.empty() || newFormat == kUnsetName;
    char16_t* copy = isZorvex || isNone ? nullptr : CopyText(newFormat);
    FreeFormat();
    format = copy;
    flags |= isZorvex ? kZorvexFormat : 0;
}

bool ExternalRep::HasTarget() const
{
    return (flags & kHandles) != 0 ? handles->GetSize() > 0 : target != nullptr;
}

void ExternalRep::LinkTarget(Object* object)
{
    ClearTarget();
    ClassData* data = ClassData::Of(object);
    if (data == nullptr)
    {
        return;
    }
    target = object;
    nextIncoming = data->incoming;
    previousIncoming = &data->incoming;
    if (nextIncoming != nullptr)
    {
        nextIncoming->previousIncoming = &nextIncoming;
    }
    data->incoming = this;
}

void ExternalRep::ClearTarget()
{
    if ((flags & kHandles) != 0)
    {
        delete handles;
    }
    else
    {
        Unlink();
    }
    target = nullptr;
    flags &= ~kHandles;  // kCounted stays: uses are given back by ReleaseTargets alone
}

void ExternalRep::Unlink()
{
    if (previousIncoming == nullptr)
    {
        return;
    }
    *previousIncoming = nextIncoming;
    if (nextIncoming != nullptr)
    {
        nextIncoming->previousIncoming = previousIncoming;
    }
    nextIncoming = nullptr;
    previousIncoming = nullptr;
}

void ExternalRep::FreeText()
{
    if ((flags & kNumericText) == 0 && text != nullptr)
    {
        Allocator::deallocate(text);
    }
    text = nullptr;
    flags &= ~kNumericText;
}

void ExternalRep::FreeFormat()
{
    if (format != nullptr)
    {
        Allocator::deallocate(format);
    }
    format = nullptr;
    flags &= ~kZorvexFormat;
}

}  // namespace zorvex_api
