#include "objectmodel/NameMatch.h"

#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/FieldDescriptor.h"

namespace zorvex_api::name_match
{

namespace
{

constexpr TextView kRef = u"Ref";
constexpr TextView kRefs = u"Refs";

/// The ending that a reference type's name may have; empty for other types.
TextView EndingOf(int type)
{
    switch (type)
    {
        case zorvexFieldSingleReference:
        case zorvexFieldSingleURI:
            return kRef;
        case zorvexFieldMultipleReference:
        case zorvexFieldMultipleURI:
            return kRefs;
        default:
            return {};
    }
}

}  // namespace

bool EqualFoldFirst(TextView a, TextView b)
{
    return a.size() == b.size() && !a.empty() &&
           NameHasher::Lower(a[0]) == NameHasher::Lower(b[0]) && a.substr(1) == b.substr(1);
}

QualifiedText::QualifiedText(TextView text) : name(text)
{
    const size_t last = text.rfind(u':');
    if (last == TextView::npos || last == 0 || text.rfind(u':', last - 1) == TextView::npos)
    {
        return;
    }
    classPart = text.substr(0, last);
    name = text.substr(last + 1);
    isQualified = true;
}

bool OwnerMatches(const FieldDescriptor& field, TextView classPart)
{
    const ClassDescriptorImpl* owner = field.Owner();
    if (owner == nullptr)
    {
        return true;
    }
    const TextView qualified = View(owner->QualifiedName());
    return qualified == classPart || EqualFoldFirst(qualified, classPart);
}

bool MatchesUnqualified(const FieldDescriptor& field, TextView text, int mask)
{
    const TextView name = field.NameView();
    if (text == name)
    {
        return true;
    }
    if (text.empty() || name.empty())
    {
        return false;
    }
    const TextView ending = mask == field_kind::kElement ? TextView() : EndingOf(field.Type());
    if (!ending.empty() && name.ends_with(ending) && !text.ends_with(ending))
    {
        return EqualFoldFirst(text, name.substr(0, name.size() - ending.size()));
    }
    if (field.IsElement() && mask == field_kind::kAttribute)
    {
        return false;
    }
    return IsCapital(text) && EqualFoldFirst(text, name);
}

bool Matches(const FieldDescriptor& field, TextView text, int mask)
{
    const QualifiedText parts(text);
    if (!parts.isQualified)
    {
        return MatchesUnqualified(field, text, mask);
    }
    return OwnerMatches(field, parts.classPart) && MatchesUnqualified(field, parts.name, mask);
}

}  // namespace zorvex_api::name_match
