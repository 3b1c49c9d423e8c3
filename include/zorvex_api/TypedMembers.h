#pragma once

#include "zorvex_api/TypedAccess.h"

/// What hand-written members do that several generated classes share. Applications use the members.
namespace zorvex_api::typed
{

// --- the file that `location` names, and client data below it ----------------------------------

ZORVEX_API Result SetExternalRef(Object& object, const Array<Handle>& targets);
ZORVEX_API Result GetExternalRef(const Object& object, Array<Handle>& targets);
ZORVEX_API Result ResolveExternalRef(Object& object, Array<Handle>& targets,
                                     Configuration* configuration);

/// The format of each handle is the text of the attribute `format`.
ZORVEX_API void AddExternalHandle(Object& object, void* data);
ZORVEX_API void SetExternalHandles(Object& object, int count, void** data);
ZORVEX_API void* GetExternalHandle(const Object& object, int index);
ZORVEX_API int CountExternalHandles(const Object& object);
ZORVEX_API void DetachExternalHandles(Object& object, Array<Handle>& handles);

// --- the elements `StructureRevisionView` that are of class ProductRevisionView ----------------

ZORVEX_API Object* AddPart(Object& object);
ZORVEX_API Result AddPart(Object& object, Object* element);
/// Null for an index out of range.
ZORVEX_API Object* GetPart(const Object& object, int index);
/// Empties `elements` and fills it.
ZORVEX_API void GetParts(const Object& object, Array<Object*>& elements);
template <class T>
void GetParts(const Object& object, Array<T*>& elements)
{
    Array<Object*> objects;
    GetParts(object, objects);
    AssignAs(objects, elements);
}
ZORVEX_API int CountParts(const Object& object);
/// Raises code 16 for an index out of range.
ZORVEX_API void DeletePart(Object& object, int index);
ZORVEX_API void DeleteParts(Object& object);

}  // namespace zorvex_api::typed
