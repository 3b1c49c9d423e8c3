#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ElementList.h"
#include "objectmodel/FieldDescriptor.h"
#include "objectmodel/IdTable.h"
#include "objectmodel/TreeMessages.h"
#include "runtime/JavaHooks.h"

namespace zorvex_api
{

namespace
{

bool IsFilledSingle(const ClassData& parent, const FieldDescriptor& field)
{
    if (field.Type() != zorvexFieldSingleElement)
    {
        return false;
    }
    const FieldData* data = parent.FindField(&field);
    return data != nullptr && data->HasValue(parent, true);
}

/// Where a child goes.
struct Choice
{
    FieldDescriptor* field = nullptr;
    int count = 0;          // named fields that would take it
    bool takesAny = false;  // a field for any child was met

    bool Fits() const { return count > 0 || takesAny; }
};

/// Whether there can be an id in the tree of this root.
bool HasIds(const ClassData& root)
{
    return root.id.HasValue() || root.idTable != nullptr;
}

bool HasExactField(const ClassLayout& layout, TextView name)
{
    const FieldDescriptor* field = layout.FindElement(name);
    return field != nullptr && field->IsElement();
}

/// The first named field that takes the child counts, unless a field for any child follows it and
/// no match follows that one.
Choice ChooseField(const ClassData& parent, const ClassLayout& layout,
                   const ClassDescriptorImpl& childClass, TextView name)
{
    Choice choice;
    const bool exact = !name.empty() && HasExactField(layout, name);
    for (FieldDescriptor* field : layout.ElementFields())
    {
        if (field->IsWildcard())
        {
            if (!IsFilledSingle(parent, *field))
            {
                choice.takesAny = true;
                choice.field = field;
            }
            continue;
        }
        const bool named = name.empty() || (exact ? field->NameView() == name
                                                  : field->Matches(name, field_kind::kElement));
        if (!named || !childClass.IsSubClass(field->ClassValue()) || IsFilledSingle(parent, *field))
        {
            continue;
        }
        if (choice.count++ == 0)
        {
            choice.field = field;
        }
    }
    return choice;
}

}  // namespace

ClassData* ClassData::Root()
{
    ClassData* data = this;
    while (data->owner != nullptr)
    {
        data = Of(data->owner);
    }
    return data;
}

bool ClassData::IsUnder(const ClassData* ancestor) const
{
    const ClassData* data = this;
    while (data != nullptr && data != ancestor)
    {
        data = data->OwnerData();
    }
    return data != nullptr;
}

// --- placing ----------------------------------------------------------------------------------

Result ClassData::PlaceChild(Object* child, TextView fieldName, FieldDescriptor* field,
                             int strictness)
{
    if (child == nullptr)
    {
        return PlaceNull(fieldName, field);
    }
    ClassData& childData = *Of(child);
    const ClassDescriptorImpl* parentClass = ClassDescriptorImpl::Of(GetClassDescriptor());
    const ClassDescriptorImpl* childClass = ClassDescriptorImpl::Of(childData.GetClassDescriptor());
    Choice choice;
    if (field != nullptr)
    {
        choice.field = field;
        choice.count = IsFilledSingle(*this, *field) ? 0 : 1;
    }
    else if (parentClass != nullptr && childClass != nullptr)
    {
        choice = ChooseField(*this, parentClass->Layout(), *childClass, fieldName);
    }
    if (choice.Fits() || (strictness == 2 && field != nullptr))
    {
        return Store(child, *choice.field);
    }
    if (strictness == 1)
    {
        KeepAside(&childData);
        return Result(2, WARNING, tree_message::CannotAdd(childClass, parentClass));
    }
    return Result(2, ERROR, tree_message::CannotAdd(childClass, parentClass));
}

Result ClassData::PlaceNull(TextView fieldName, FieldDescriptor* field)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(GetClassDescriptor());
    if (field == nullptr && impl != nullptr)
    {
        field = impl->FindField(fieldName, field_kind::kElement);
    }
    FieldData* data = field != nullptr ? FindField(field) : nullptr;
    if (data == nullptr || !data->IsSet())
    {
        return Result(
            2, tree_message::NullElement(field != nullptr ? field->NameView() : fieldName, impl));
    }
    DeleteChildren(*data);
    RemoveField(data);
    return Result();
}

Result ClassData::Store(Object* child, FieldDescriptor& field)
{
    FieldData* data = field.IsElement() ? FindOrAddField(&field) : nullptr;
    if (data == nullptr || (!data->IsSet() && !data->InitEmpty(*this)))
    {
        return Result(2, tree_message::CannotCreateField(
                             field.NameView(), ClassDescriptorImpl::Of(GetClassDescriptor())));
    }
    if (field.Type() == zorvexFieldMultipleElement)
    {
        data->Elements()->Append(child);
    }
    else
    {
        if (Object* displaced = data->Element())
        {
            KeepAside(Of(displaced));
        }
        data->SetPointer(child);
    }
    Of(child)->holdingField = &field;
    return Result();
}

void ClassData::KeepAside(ClassData* child)
{
    void** place = ExtensionSlot(extension_tag::kAsideChildren);
    if (*place == nullptr)
    {
        *place = new Array<Object*>;
    }
    static_cast<Array<Object*>*>(*place)->Add(child->object);
    child->holdingField = nullptr;
}

bool ClassData::AppendChild(ClassData* child, FieldDescriptor* field)
{
    FieldData* data = FindOrAddField(field);
    const bool isList = field->Type() == zorvexFieldMultipleElement;
    if (!isList && data->IsSet() && data->Element() != nullptr)
    {
        return false;
    }
    if (!data->IsSet())
    {
        data->InitEmpty(*this);
    }
    if (isList)
    {
        data->Elements()->Append(child->object);
    }
    else
    {
        data->SetPointer(child->object);
    }
    child->holdingField = field;
    child->owner = object;
    return true;
}

// --- attaching --------------------------------------------------------------------------------

Result ClassData::SetOwner(Object* newOwner, TextView fieldName, FieldDescriptor* field,
                           bool resolveConflict, bool markNetwork, int strictness)
{
    return newOwner != nullptr
               ? Attach(newOwner, fieldName, field, resolveConflict, markNetwork, strictness)
               : Detach(fieldName, markNetwork);
}

Result ClassData::Attach(Object* newOwner, TextView fieldName, FieldDescriptor* field,
                         bool resolveConflict, bool markNetwork, int strictness)
{
    ClassData& ownerData = *Of(newOwner);
    ClassData& newRoot = *ownerData.Root();
    if (&ownerData == this || &newRoot == this)
    {
        return Result(2, tree_message::OwnSelf());
    }
    elementName = nullptr;
    if (owner != nullptr)
    {
        return Result(2, tree_message::HasOwner());
    }
    if (resolveConflict && HasIds(*this) && HasIds(newRoot))
    {
        Result conflict = object->ResolveIdConflict(newOwner, 0);
        if (!conflict.Ok())
        {
            return conflict;
        }
    }
    Result result = ownerData.PlaceChild(object, fieldName, field, strictness);
    if (!result.Ok())
    {
        return result;
    }
    ++changeStamp;
    BecomeChildOf(ownerData, newRoot);
    if (markNetwork)
    {
        newRoot.MarkNetwork();
    }
    else
    {
        ++newRoot.changeStamp;
    }
    return result;
}

void ClassData::BecomeChildOf(ClassData& newOwner, ClassData& newRoot)
{
    owner = newOwner.object;
    stateFlags &= ~kPulledInRoot;  // the tree owns it now, not the references that led to it
    JoinIds(newRoot);
    if ((stateFlags & kIdObject) != 0 && !id.HasValue() && !id.IsNone())
    {
        TakeGeneratedId();
    }
    if (JavaHooks::IsPresent())
    {
        JavaHooks::Get()->OwnerChanged(object, object, newRoot.object);
    }
}

void ClassData::AdoptNewChild(ClassData& child)
{
    ClassData& root = *Root();
    root.MarkNetwork();
    child.BecomeChildOf(*this, root);
    if ((child.stateFlags & kIdObject) != 0 && !child.id.IsGenerated())
    {
        child.TakeGeneratedId();
    }
}

// --- detaching --------------------------------------------------------------------------------

Result ClassData::Detach(TextView fieldName, bool markNetwork)
{
    if (owner == nullptr)
    {
        return Result();
    }
    ClassData& parent = *OwnerData();
    if (!parent.TakeChild(*this, fieldName))
    {
        return Result(
            2, tree_message::CannotFind(ClassDescriptorImpl::Of(GetClassDescriptor()),
                                        ClassDescriptorImpl::Of(parent.GetClassDescriptor())));
    }
    parent.MarkNetwork();
    ClassData& oldRoot = *Root();
    owner = nullptr;
    holdingField = nullptr;
    elementName = nullptr;
    SplitIds(oldRoot);
    ++changeStamp;
    if (markNetwork)
    {
        MarkNetwork();
    }
    if (JavaHooks::IsPresent())
    {
        JavaHooks::Get()->OwnerChanged(object, oldRoot.object, nullptr);
    }
    return Result();
}

bool ClassData::TakeChild(ClassData& child, TextView fieldName)
{
    FieldDescriptor* field = child.holdingField;
    if (field == nullptr)
    {
        Array<Object*>* aside = AsideChildren();
        const int index = aside != nullptr ? aside->Lookup(child.object) : -1;
        if (index >= 0)
        {
            aside->RemoveAt(index);
        }
        return index >= 0;
    }
    if (!fieldName.empty() && !field->IsWildcard() && field->NameView() != fieldName)
    {
        return false;
    }
    FieldData* data = FindField(field);
    if (data == nullptr || !data->IsSet())
    {
        return false;
    }
    if (field->Type() == zorvexFieldMultipleElement)
    {
        const bool found = data->Elements()->Remove(child.object);
        if (data->Elements()->Count() == 0)
        {
            data->DeleteValue(*this, FieldData::kDeleteAll);
        }
        return found;
    }
    if (data->Element() != child.object)
    {
        return false;
    }
    data->value = FieldData::kNotSet;
    return true;
}

void ClassData::DeleteChildren(FieldData& field)
{
    field.DeleteValue(*this, FieldData::kDeleteAll);
    MarkNetwork();
}

}  // namespace zorvex_api
