#include "objectmodel/ClassData.h"

#include <new>

#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/DocumentMap.h"
#include "objectmodel/FieldDescriptor.h"
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

}  // namespace

// --- life -------------------------------------------------------------------------------------

ClassData* ClassData::Make(Object* shell)
{
    ClassData* data = new (FreeList<sizeof(ClassData)>::Take()) ClassData();
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
    SetDescriptor(nullptr);
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

FieldData* ClassData::FindField(const FieldDescriptor* field) const
{
    for (FieldData* data = fields; data != nullptr; data = data->next)
    {
        if (data->descriptor == field)
        {
            return data;
        }
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
    data->descriptor = field;
    data->value = FieldData::kNotSet;
    data->next = fields;
    fields = data;
    return data;
}

FieldData* ClassData::FindOrAddField(FieldDescriptor* field)
{
    FieldData* data = FindField(field);
    return data != nullptr ? data : AddField(field);
}

void ClassData::RemoveField(FieldData* field)
{
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
