#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/ObjectPin.h"
#include "objectmodel/TreeMessages.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

namespace
{

const ClassDescriptor* DocumentClass()
{
    ClassRegistry::Fill();
    return ClassRegistry::FindByName(u"Document");
}

bool IsExactly(ClassData& data, const ClassDescriptor* descriptor)
{
    return descriptor != nullptr && data.GetClassDescriptor() == descriptor;
}

bool IsDocumentBase(ClassData& data)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(data.GetClassDescriptor());
    return impl != nullptr && impl->IsDocumentBase();
}

/// The first object from `object` upwards that `test` accepts.
template <class Test>
Object* FindUpwards(const Object* object, Test test)
{
    while (object != nullptr)
    {
        ObjectPin pin(object);
        if (test(*pin))
        {
            return pin->object;
        }
        object = pin->owner;
    }
    return nullptr;
}

/// The class of the element field that `fieldName` means, and the field.
ClassDescriptor* ClassOfField(ClassData& parent, const String& fieldName, FieldDescriptor*& field)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(parent.GetClassDescriptor());
    field = impl != nullptr ? impl->FindField(View(fieldName), field_kind::kElement) : nullptr;
    return field != nullptr ? field->Class() : nullptr;
}

/// Makes a child of a known class and attaches it. `field` may be null.
Result AddNewChild(ClassData& parent, const ClassDescriptor& descriptor, TextView fieldName,
                   FieldDescriptor* field, Object*& out)
{
    Object* child = descriptor.MakeObject();
    if (child == nullptr)
    {
        return Result(2, tree_message::CannotMake(View(descriptor.GetName())));
    }
    ClassData& childData = *ClassData::Of(child);
    Result result = parent.PlaceChild(child, fieldName, field, 0);
    if (!result.Ok())
    {
        delete child;
        return result;
    }
    parent.AdoptNewChild(childData);
    out = child;
    return result;
}

}  // namespace

// --- adding -----------------------------------------------------------------------------------

Result Object::AddElement(const String& className, const String& fieldName, Object*& out)
{
    ObjectPin pin(this);
    if (className.IsEmpty() && fieldName.IsEmpty())
    {
        return Result(19);
    }
    ClassDescriptor* descriptor =
        className.IsEmpty() ? nullptr : ClassDescriptor::FindByName(className);
    FieldDescriptor* field = nullptr;
    if (descriptor == nullptr && !fieldName.IsEmpty())
    {
        descriptor = ClassOfField(*pin, fieldName, field);
    }
    if (descriptor == nullptr)
    {
        return Result(2, tree_message::UnknownClass(View(className)));
    }
    return AddNewChild(*pin, *descriptor, View(fieldName), className.IsEmpty() ? field : nullptr,
                       out);
}

Result Object::AddElement(short classValue, const String& fieldName, Object*& out)
{
    ObjectPin pin(this);
    ClassDescriptor* descriptor = ClassDescriptor::FindByClass(classValue);
    FieldDescriptor* field = nullptr;
    if (descriptor == nullptr && !fieldName.IsEmpty())
    {
        descriptor = ClassOfField(*pin, fieldName, field);
    }
    if (descriptor == nullptr)
    {
        return Result(2, tree_message::UnknownClass(classValue));
    }
    return AddNewChild(*pin, *descriptor, View(fieldName), field, out);
}

Result Object::AddElement(Object* child)
{
    return child != nullptr ? child->SetOwner(this) : AddElement(child, String());
}

Result Object::AddElement(Object* child, const String& fieldName)
{
    if (child != nullptr)
    {
        return child->SetOwner(this, fieldName);
    }
    ObjectPin pin(this);
    return Result(2, tree_message::NullElement(View(fieldName),
                                               ClassDescriptorImpl::Of(pin->GetClassDescriptor())));
}

Object* Object::AddChildElement(const String& name, Result& result)
{
    Object* child = nullptr;
    result = AddElement(name, String(), child);
    if (!result.Ok())
    {
        result = AddElement(String(), name, child);
    }
    return child;
}

Result Object::SetOwner(Object* owner)
{
    return SetOwner(owner, String());
}

Result Object::SetOwner(Object* owner, const String& fieldName)
{
    ObjectPin pin(this);
    ObjectPin ownerPin(owner != nullptr ? owner : this);
    return pin->SetOwner(owner, View(fieldName), nullptr, true, false, 0);
}

// --- upwards ----------------------------------------------------------------------------------

Object* Object::GetOwner() const
{
    return ObjectPin(this)->owner;
}

Object* Object::GetRoot() const
{
    return FindUpwards(this, [](const ClassData& data) { return data.owner == nullptr; });
}

Object* Object::GetDocument() const
{
    return FindUpwards(
        this, [wanted = DocumentClass()](ClassData& data) { return IsExactly(data, wanted); });
}

Object* Object::GetDocumentRoot() const
{
    Object* root = GetRoot();
    ObjectPin pin(root);
    return IsExactly(*pin, DocumentClass()) ? root : nullptr;
}

Object* Object::GetDocumentBase() const
{
    return FindUpwards(this, &IsDocumentBase);
}

Object* Object::GetDocumentBaseRoot() const
{
    Object* top = nullptr;
    for (Object* base = GetDocumentBase(); base != nullptr;)
    {
        top = base;
        const Object* above = base->GetOwner();
        base = above != nullptr ? above->GetDocumentBase() : nullptr;
    }
    return top;
}

// --- names ------------------------------------------------------------------------------------

String Object::GetElementName()
{
    ObjectPin pin(this);
    if (pin->owner != nullptr)
    {
        return pin->owner->GetChildElementName(this);
    }
    const ClassDescriptor* descriptor = pin->GetClassDescriptor();
    if (descriptor == nullptr)
    {
        return String();
    }
    return Equals(descriptor->GetName(), u"Document") ? String(u"ZORVEX")
                                                      : descriptor->GetOutputName();
}

String Object::GetChildElementName(const Object* child)
{
    if (child == nullptr)
    {
        return String();
    }
    ObjectPin pin(this);
    ObjectPin childPin(child);
    return pin->ChildElementName(childPin.Data(), nullptr);
}

}  // namespace zorvex_api
