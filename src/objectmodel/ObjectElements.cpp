#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"
#include "objectmodel/ElementList.h"
#include "objectmodel/ObjectCallbackBase.h"
#include "objectmodel/ObjectPin.h"
#include "objectmodel/TreeMessages.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

namespace
{

/// Appends children to an array.
class Gatherer final : public ObjectCallbackBase
{
public:
    explicit Gatherer(Array<Object*>& out) : m_out(out) {}
    void Process(Object** children, int count) override { m_out.Add(count, children); }
    int Process(Object* child) override
    {
        m_out.Add(child);
        return 1;
    }

private:
    Array<Object*>& m_out;
};

/// Calls visit(child) for each child of a field that isn't an attribute.
template <class Visit>
void ForEachChild(const FieldData& field, Visit visit)
{
    if (!field.IsSet())
    {
        return;
    }
    if (field.descriptor->Type() == zorvexFieldMultipleElement)
    {
        field.Elements()->Walk(
            [&visit](Object* child)
            {
                visit(child);
                return true;
            });
    }
    else if (field.descriptor->Type() == zorvexFieldSingleElement && field.Element() != nullptr)
    {
        visit(field.Element());
    }
}

bool IsUnder(Object* child, const ClassDescriptor* descriptor)
{
    return ObjectPin(child)->IsSubClass(descriptor);
}

/// Deletes the children of a class, in order; the field keeps the others.
void DeleteOfClass(FieldData& field, const ClassDescriptor* descriptor)
{
    if (!field.IsSet())
    {
        return;
    }
    Array<Object*> taken;
    const auto isWanted = [descriptor](Object* child) { return IsUnder(child, descriptor); };
    if (field.descriptor->Type() == zorvexFieldMultipleElement)
    {
        field.Elements()->Extract(isWanted, taken);
    }
    else if (field.descriptor->Type() == zorvexFieldSingleElement && field.Element() != nullptr &&
             isWanted(field.Element()))
    {
        taken.Add(field.Element());
        field.value = 0;
    }
    for (Object* child : taken)
    {
        delete child;
    }
}

}  // namespace

// --- gathering --------------------------------------------------------------------------------

Result Object::GetElements(Array<Object*>& out) const
{
    ObjectPin pin(this);
    out.RemoveAll();
    for (const FieldData* field = pin->fields; field != nullptr; field = field->next)
    {
        ForEachChild(*field, [&out](Object* child) { out.Add(child); });
    }
    return Result();
}

Result Object::GetChildElements(Array<Object*>& out) const
{
    return GetElements(out);
}

Result Object::GetElementsByClass(const String& className, Array<Object*>& out) const
{
    ObjectPin pin(this);
    const ClassDescriptor* descriptor = ClassDescriptor::FindByName(className);
    if (descriptor == nullptr)
    {
        return Result(2, tree_message::NoSuchClass(View(className)));
    }
    for (const FieldData* field = pin->fields; field != nullptr; field = field->next)
    {
        ForEachChild(*field,
                     [&out, descriptor](Object* child)
                     {
                         if (IsUnder(child, descriptor))
                         {
                             out.Add(child);
                         }
                     });
    }
    return Result();
}

Result Object::GetElementsByField(const String& fieldName, Array<Object*>& out) const
{
    ObjectPin pin(this);
    Gatherer gatherer(out);
    return pin->ElementsByField(View(fieldName), &gatherer);
}

Result Object::GetChildElements(const String& name, Array<Object*>& out) const
{
    const Result byClass = GetElementsByClass(name, out);
    return byClass.Ok() ? byClass : GetElementsByField(name, out);
}

Result Object::GetChildElementTypes(Array<FieldType>& out) const
{
    ObjectPin pin(this);
    out.RemoveAll();
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(pin->GetClassDescriptor());
    if (impl == nullptr)
    {
        return Result();
    }
    for (const FieldDescriptor* field : impl->Layout().ElementFields())
    {
        FieldType type;
        type.m_name = field->Name();
        type.m_class = field->ClassValue();
        type.m_type = field->Type();
        out.Add(type);
    }
    return Result();
}

// --- deleting ---------------------------------------------------------------------------------

Result Object::DeleteElement(Object* child)
{
    if (child == nullptr)
    {
        return Result(19, tree_message::NullChild());
    }
    Result result = child->SetOwner(nullptr);
    if (result.Ok())
    {
        delete child;
    }
    return result;
}

Result Object::DeleteChildElement(Object* child)
{
    return DeleteElement(child);
}

Result Object::DeleteElements()
{
    ObjectPin pin(this);
    for (FieldData* field = pin->fields; field != nullptr; field = field->next)
    {
        if (field->IsSet() && field->descriptor->IsElement())
        {
            field->DeleteValue(*pin, FieldData::kDeleteAll);
        }
    }
    pin->MarkNetwork();
    return Result();
}

Result Object::DeleteElementsByClass(const String& className)
{
    ObjectPin pin(this);
    const ClassDescriptor* descriptor = ClassDescriptor::FindByName(className);
    if (descriptor == nullptr)
    {
        return Result(2, tree_message::NoSuchClass(View(className)));
    }
    for (FieldData* field = pin->fields; field != nullptr; field = field->next)
    {
        DeleteOfClass(*field, descriptor);
    }
    pin->MarkNetwork();
    return Result();
}

Result Object::DeleteElementsByField(const String& fieldName)
{
    ObjectPin pin(this);
    if (FieldData* field = pin->FindSetElementField(View(fieldName)))
    {
        pin->DeleteChildren(*field);
    }
    return Result();
}

}  // namespace zorvex_api
