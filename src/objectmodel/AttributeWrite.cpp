#include "objectmodel/AttributeWrite.h"

#include "objectmodel/AttributeNumbers.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/ExternalRep.h"

namespace zorvex_api::attribute_write
{

namespace
{

bool IsSeparator(char16_t unit)
{
    return unit == u'/' || unit == u'\\';
}

/// Whether ".." at `at` stands between separators or ends of the text.
bool IsParentSegment(TextView text, size_t at)
{
    const bool begins = at == 0 || IsSeparator(text[at - 1]);
    const bool ends = at + 2 == text.size() || IsSeparator(text[at + 2]);
    return begins && ends;
}

/// Whether a text isn't stored as it is: it has an escape or a ".." segment.
bool NeedsNormalising(TextView text)
{
    for (size_t at = 0; at < text.size(); ++at)
    {
        if (text[at] == u'%')
        {
            return true;
        }
        if (text[at] == u'.' && at + 1 < text.size() && text[at + 1] == u'.' &&
            IsParentSegment(text, at))
        {
            return true;
        }
    }
    return false;
}

/// The record's own field: "load" and "location" share the object's one of type 11.
FieldDescriptor* RecordField(ClassData& owner, FieldDescriptor& field)
{
    if (!field.IsBuiltIn() && field.Type() != zorvexFieldExternalReference)
    {
        return &field;
    }
    ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(owner.GetClassDescriptor());
    return descriptor != nullptr ? descriptor->Layout().ExternalReference() : nullptr;
}

/// The URI that the attribute "format" of an object speaks of: the external reference, else the
/// class's nearest single URI. Others, like `nameRef`, have formats of their own.
const FieldDescriptor* UriField(ClassData& owner)
{
    ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(owner.GetClassDescriptor());
    if (descriptor == nullptr)
    {
        return nullptr;
    }
    const ClassLayout& layout = descriptor->Layout();
    if (layout.ExternalReference() != nullptr)
    {
        return layout.ExternalReference();
    }
    for (const FieldDescriptor* field : layout.DerivedFirst())
    {
        if (field->Type() == zorvexFieldSingleURI)
        {
            return field;
        }
    }
    return nullptr;
}

}  // namespace

FieldData* NeedRecord(ClassData& owner, FieldDescriptor& field, FieldData* data)
{
    if (data == nullptr)
    {
        FieldDescriptor* recordField = RecordField(owner, field);
        data = recordField != nullptr ? owner.FindOrAddField(recordField) : nullptr;
    }
    return data != nullptr && (data->IsSet() || data->InitEmpty(owner)) ? data : nullptr;
}

bool IsBelow(ClassData& object, TextView className)
{
    const ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(object.GetClassDescriptor());
    return descriptor != nullptr && descriptor->IsSubClass(ClassRegistry::FindByName(className));
}

void SetUriText(ClassData& owner, ExternalRep& reference, TextView text)
{
    if (NeedsNormalising(text))
    {
        reference.SetText(owner.object, text, true);
        return;
    }
    reference.ReleaseTargets();
    reference.ClearTarget();
    reference.StoreText(text);
}

void SetLoad(ExternalRep& reference, bool load)
{
    reference.flags =
        load ? reference.flags | ExternalRep::kLoad : reference.flags & ~ExternalRep::kLoad;
}

void TellFormat(ClassData& owner, TextView format)
{
    const FieldDescriptor* field = UriField(owner);
    const FieldData* data = field != nullptr ? owner.FindField(field) : nullptr;
    if (data != nullptr && data->IsSet())
    {
        data->External()->SetFormat(owner.object, format, false);
    }
}

int CountTokens(TextView text, TextView separators)
{
    int count = 0;
    attribute_numbers::ForEachToken(text, separators, [&](TextView) { ++count; });
    return count;
}

void DestroyAll(Array<ExternalRep*>& references)
{
    for (ExternalRep* reference : references)
    {
        ExternalRep::Destroy(reference);
    }
    references.RemoveAll();
}

}  // namespace zorvex_api::attribute_write
