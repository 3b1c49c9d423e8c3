#include "schema/members/ExternalRefMembers.h"

#include "zorvex_api/Reference.h"
#include "zorvex_api/TypedAccess.h"

namespace zorvex_api::internal
{

namespace
{

constexpr char16_t kLocation[] = u"location";
constexpr char16_t kFormat[] = u"format";

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

}  // namespace

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
    handles.Add(Handle(data, typed::GetString(object, kFormat)));
    object.SetAttributeValue(Location(), Reference(text, handles));
}

void SetExternalHandles(Object& object, int count, void** data)
{
    String text;
    ReadHandles(object, text);
    const String format = typed::GetString(object, kFormat);
    Array<Handle> handles;
    for (int i = 0; i < count; ++i)
    {
        handles.Add(Handle(data[i], format));
    }
    object.SetAttributeValue(Location(), Reference(text, handles));
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
    String text;
    for (const Handle& handle : ReadHandles(object, text))
    {
        handles.Add(handle);
    }
    object.SetAttributeValue(Location(), Reference(text));
}

}  // namespace zorvex_api::internal
