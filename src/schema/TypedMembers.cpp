#include "zorvex_api/TypedMembers.h"

#include "objectmodel/AttributeStore.h"
#include "objectmodel/ObjectPin.h"
#include "zorvex60/ProductRevisionView.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/Reference.h"

namespace zorvex_api::typed
{

namespace
{

constexpr char16_t kLocation[] = u"location";
constexpr char16_t kFormat[] = u"format";
constexpr char16_t kViews[] = u"StructureRevisionView";

String Location()
{
    return String(kLocation, -1);
}

Array<Handle> ReadHandles(const Object& object, String& text)
{
    Reference reference;
    object.GetAttributeValue(Location(), reference);
    text = reference.GetString();
    return reference.GetHandles();
}

// Any number of them, other than what setting the attribute takes.
void WriteHandles(Object& object, const String& text, const Array<Handle>& handles)
{
    const ObjectPin pin(&object);
    attribute_store::SetTargets(*pin, kLocation, Reference(text, handles));
}

}  // namespace

// --- external references -----------------------------------------------------------------------

Result SetExternalRef(Object& object, const Array<Handle>& targets)
{
    return object.SetAttributeValue(Location(), Reference(targets));
}

Result GetExternalRef(const Object& object, Array<Handle>& targets)
{
    Reference reference;
    Result result = object.GetAttributeValue(Location(), reference);
    targets = reference.GetHandles();
    return result;
}

Result ResolveExternalRef(Object& object, Array<Handle>& targets, Configuration* configuration)
{
    Reference reference;
    Result result = object.ResolveAttributeValue(Location(), reference, configuration);
    targets = reference.GetHandles();
    return result;
}

void AddExternalHandle(Object& object, void* data)
{
    String text;
    Array<Handle> handles = ReadHandles(object, text);
    handles.Add(Handle(data, GetString(object, kFormat)));
    WriteHandles(object, text, handles);
}

void SetExternalHandles(Object& object, int count, void** data)
{
    String text;
    ReadHandles(object, text);
    const String format = GetString(object, kFormat);
    Array<Handle> handles;
    for (int i = 0; data != nullptr && i < count; ++i)
    {
        handles.Add(Handle(data[i], format));
    }
    WriteHandles(object, text, handles);
}

void* GetExternalHandle(const Object& object, int index)
{
    String text;
    const Array<Handle> handles = ReadHandles(object, text);
    return index >= 0 && index < handles.GetSize() ? handles[index].GetData() : nullptr;
}

int CountExternalHandles(const Object& object)
{
    String text;
    return ReadHandles(object, text).GetSize();
}

void DetachExternalHandles(Object& object, Array<Handle>& handles)
{
    // Setting the text anew would end the things of a format that has an adapter.
    const ObjectPin pin(&object);
    attribute_store::DetachTargets(*pin, kLocation, handles);
}

// --- parts -------------------------------------------------------------------------------------

Object* AddPart(Object& object)
{
    return AddElement(object, u"ProductRevisionView", kViews);
}

Result AddPart(Object& object, Object* element)
{
    return AttachElement(object, element, kViews);
}

Object* GetPart(const Object& object, int index)
{
    Array<Object*> parts;
    GetParts(object, parts);
    return index >= 0 && index < parts.GetSize() ? parts[index] : nullptr;
}

void GetParts(const Object& object, Array<Object*>& elements)
{
    Array<Object*> views;
    GetElements(object, kViews, views);
    elements.RemoveAll();
    for (Object* view : views)
    {
        if (view->Is(zorvex60::zorvexClassProductRevisionView))
        {
            elements.Add(view);
        }
    }
}

int CountParts(const Object& object)
{
    Array<Object*> parts;
    GetParts(object, parts);
    return parts.GetSize();
}

void DeletePart(Object& object, int index)
{
    Object* part = GetPart(object, index);
    if (part == nullptr)
    {
        throw Exception(16);
    }
    object.DeleteElement(part);
}

void DeleteParts(Object& object)
{
    Array<Object*> parts;
    GetParts(object, parts);
    for (Object* part : parts)
    {
        object.DeleteElement(part);
    }
}

}  // namespace zorvex_api::typed
