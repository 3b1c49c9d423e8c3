#pragma once

#include "zorvex_api/Array.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Object.h"

/// What the classes with the fields `location` and `load` have in common.
namespace zorvex_api::internal
{

Result GetExternalRef(const Object& object, Array<Handle>& targets);
Result ResolveExternalRef(Object& object, Array<Handle>& targets, Configuration* configuration);

void AddExternalHandle(Object& object, void* data);
void SetExternalHandles(Object& object, int count, void** data);
void* GetExternalHandle(const Object& object, int index);
int CountExternalHandles(const Object& object);
void DetachExternalHandles(Object& object, Array<Handle>& handles);

}  // namespace zorvex_api::internal
