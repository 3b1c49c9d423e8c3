#include "objectmodel/ClassData.h"

#include <memory>
#include <new>

#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/DocumentMap.h"
#include "objectmodel/FieldDataIndex.h"
#include "objectmodel/FieldDescriptor.h"
#include "objectmodel/ObjectBlock.h"
#include "runtime/FreeList.h"
#include "runtime/JavaHooks.h"
#include "runtime/LocalTime.h"
#include "runtime/PagingHooks.h"

namespace zorvex_api
{

namespace
{

constexpr double kSchemaVersion = 6.0;
constexpr TextView kSchemaVersionText = u"6";
constexpr TextView kAuthor = u"unset";

/// A list of more records than this is searched by an index.
constexpr int kIndexedFrom = 64;

/// The field of a name, made and still not set; null when the class hasn't got it or it has a
/// value.
FieldData* EmptyField(ClassData& document, TextView name)
{
    FieldDescriptor* field = ClassDescriptorImpl::Of(document.GetClassDescriptor())
                                 ->FindField(name, field_kind::kAttribute, true, true);
    FieldData* data = field != nullptr ? document.FindOrAddField(field) : nullptr;
    return data != nullptr && !data->IsSet() ? data : nullptr;
}

void SetInitialText(ClassData& document, TextView name, TextView text)
{
    FieldData* data = EmptyField(document, name);
    if (data != nullptr && FieldData::FormOf(*data->descriptor) == FieldData::Form::Text)
    {
        data->SetPointer(stored::Make(text));
    }
}

void SetInitialVersion(ClassData& document)
{
    constexpr TextView kName = u"schemaVersion";
    FieldData* data = EmptyField(document, kName);
    if (data != nullptr && FieldData::FormOf(*data->descriptor) == FieldData::Form::Double)
    {
        data->SetDouble(kSchemaVersion);
        return;
    }
    SetInitialText(document, kName, kSchemaVersionText);
}

void DestroyFieldIndex(ClassData&, void* index)
{
    delete static_cast<FieldDataIndex*>(index);
}

[[maybe_unused]] const int s_fieldIndexRegistered =
    ClassData::RegisterExtensionDestroyer(extension_tag::kFieldIndex, &DestroyFieldIndex);

}  // namespace

// --- life -------------------------------------------------------------------------------------

ClassData* ClassData::Make(Object* shell)
{
    void* place = internal::ObjectBlock::TakeRecordPlace(shell);
    const std::uint32_t flags = place != nullptr ? kInBlock : 0;
    ClassData* data =
        new (place != nullptr ? place : FreeList<sizeof(ClassData)>::Take()) ClassData();
    data->stateFlags = flags;
    data->object = shell;
    data->id.SetNone();
    if (PagingHooks::IsActive())
    {
        data->stateFlags |= kChainedLists;
    }
    if (JavaHooks::IsPresent())
    {
        JavaHooks::Get()->ObjectMade(data);
    }
    return data;
}

// --- class ------------------------------------------------------------------------------------

void ClassData::SetDescriptor(ClassDescriptor* newDescriptor)
{
    ClassDescriptorImpl* old =
        (stateFlags & kLazyClass) == 0 ? ClassDescriptorImpl::Of(descriptor) : nullptr;
    if (newDescriptor != nullptr)
    {
        ClassDescriptorImpl::Of(newDescriptor)->AddObject();
    }
    descriptor = newDescriptor;
    stateFlags &= ~kLazyClass;
    if (old != nullptr)
    {
        old->RemoveObject();
    }
}

void ClassData::SetClassValue(short newClassValue)
{
    if ((stateFlags & kLazyClass) == 0 && descriptor != nullptr)
    {
        SetDescriptor(nullptr);
    }
    descriptor = nullptr;
    stateFlags &= ~kLazyClass;
    if (newClassValue != 0)
    {
        classValue = newClassValue;
        stateFlags |= kLazyClass;
    }
}

ClassDescriptor* ClassData::ResolveClass()
{
    return Initialise(ClassRegistry::FindByClass(classValue)) ? descriptor : nullptr;
}

bool ClassData::Initialise(ClassDescriptor* newDescriptor)
{
    if (newDescriptor == nullptr)
    {
        return false;
    }
    if ((stateFlags & kLazyClass) == 0)
    {
        return true;
    }
    AdoptClass(newDescriptor);
    if ((stateFlags & kDocumentBase) != 0)
    {
        FillInitialAttributes();
    }
    else if ((stateFlags & kIdObject) != 0 && id.IsNone())
    {
        id.Clear();
    }
    return true;
}

void ClassData::AdoptClass(ClassDescriptor* newDescriptor)
{
    SetDescriptor(newDescriptor);
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(newDescriptor);
    if (impl == nullptr)
    {
        return;
    }
    if (impl->IsDocumentBase())
    {
        BecomeDocument();
    }
    else if (impl->IsIdObject())
    {
        stateFlags |= kIdObject;
    }
}

void ClassData::BecomeDocument()
{
    stateFlags |= kDocumentBase | kNetworkRef;
    if ((stateFlags & kInDocumentMap) == 0)
    {
        DocumentMap::Add(this);
        stateFlags |= kInDocumentMap;
    }
    if (JavaHooks::IsPresent())
    {
        JavaHooks::Get()->DocumentInitialised(this);
    }
}

void ClassData::FillInitialAttributes()
{
    if (ClassDescriptorImpl::Of(GetClassDescriptor()) == nullptr)
    {
        return;
    }
    const LocalTime now = LocalTime::Now();
    SetInitialVersion(*this);
    SetInitialText(*this, u"author", kAuthor);
    SetInitialText(*this, u"date", View(now.DateText()));
    SetInitialText(*this, u"time", View(now.TimeText()));
}

short ClassData::GetClassValue() const
{
    if ((stateFlags & kLazyClass) != 0)
    {
        return classValue;
    }
    return descriptor != nullptr ? ClassDescriptorImpl::Of(descriptor)->Value()
                                 : class_value::kUnset;
}

bool ClassData::IsSubClass(const ClassDescriptor* other)
{
    const ClassDescriptorImpl* mine = ClassDescriptorImpl::Of(GetClassDescriptor());
    return mine != nullptr && mine->IsSubClass(other);
}

// --- fields -----------------------------------------------------------------------------------

/// The record of exactly this descriptor.
FieldData* ClassData::FindRecord(const FieldDescriptor* field) const
{
    int steps = kIndexedFrom;
    FieldData* data = fields;
    while (data != nullptr && data->descriptor != field)
    {
        data = data->next;
        if (--steps == 0 && data != nullptr)
        {
            if (const FieldDataIndex* index = FieldIndexOf())
            {
                return index->Find(field);
            }
        }
    }
    return data;
}

/// Made on first need. Null without memory for it: the list serves as well.
const FieldDataIndex* ClassData::FieldIndexOf() const
{
    if ((stateFlags & kFieldsIndexed) != 0)
    {
        return static_cast<const FieldDataIndex*>(GetExtension(extension_tag::kFieldIndex));
    }
    try
    {
        std::unique_ptr<FieldDataIndex> fresh(new FieldDataIndex(fields));
        auto* const self = const_cast<ClassData*>(this);
        *self->ExtensionSlot(extension_tag::kFieldIndex) = fresh.get();
        self->stateFlags |= kFieldsIndexed;
        return fresh.release();
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

void ClassData::DropFieldIndex()
{
    if ((stateFlags & kFieldsIndexed) == 0)
    {
        return;
    }
    stateFlags &= ~kFieldsIndexed;
    DestroyFieldIndex(*this, GetExtension(extension_tag::kFieldIndex));
    SetExtension(extension_tag::kFieldIndex, nullptr);
}

FieldData* ClassData::FindField(const FieldDescriptor* field) const
{
    if (FieldData* data = FindRecord(field))
    {
        return data;
    }
    const bool isExternal =
        field != nullptr &&
        (field->Type() == zorvexFieldExternalReference ||
         (field->IsBuiltIn() && field != FieldDescriptor::BuiltIn(FieldDescriptor::kId)));
    if (!isExternal)
    {
        return nullptr;
    }
    FieldData* data = fields;  // "load" and "location" share the one external reference
    while (data != nullptr && data->descriptor->Type() != zorvexFieldExternalReference)
    {
        data = data->next;
    }
    return data;
}

FieldData* ClassData::AddField(FieldDescriptor* field)
{
    if (field->IsBuiltIn())
    {
        if (field == FieldDescriptor::BuiltIn(FieldDescriptor::kId))
        {
            return nullptr;
        }
        const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(GetClassDescriptor());
        field = impl != nullptr ? impl->Layout().ExternalReference() : nullptr;
        if (field == nullptr)
        {
            return nullptr;
        }
    }
    FieldData* data = static_cast<FieldData*>(FreeList<sizeof(FieldData)>::Take());
    field->NoteUse();
    data->descriptor = field;
    data->value = FieldData::kNotSet;
    data->next = fields;
    fields = data;
    if ((stateFlags & kFieldsIndexed) != 0)
    {
        IndexField(data);
    }
    return data;
}

FieldData* ClassData::FindOrAddField(FieldDescriptor* field)
{
    FieldData* data = FindField(field);
    return data != nullptr ? data : AddField(field);
}

/// Enters a new record; without memory for that the index goes.
void ClassData::IndexField(FieldData* field)
{
    try
    {
        static_cast<FieldDataIndex*>(GetExtension(extension_tag::kFieldIndex))->Insert(field);
    }
    catch (const std::bad_alloc&)
    {
        DropFieldIndex();
    }
}

void ClassData::RemoveField(FieldData* field)
{
    DropFieldIndex();
    for (FieldData** place = &fields; *place != nullptr; place = &(*place)->next)
    {
        if (*place == field)
        {
            *place = field->next;
            FreeList<sizeof(FieldData)>::Give(field);
            return;
        }
    }
}

}  // namespace zorvex_api
