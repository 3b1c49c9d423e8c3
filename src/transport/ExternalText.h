#pragma once

#include "zorvex_api/Pointer.h"

namespace zorvex_api
{

class Object;

namespace internal
{

/// A relative pointer that is meant from the folder of a document, as seen from the working folder.
/// Any other pointer comes back as it is.
Pointer FromFolderOf(const Pointer& document, const Pointer& pointer);

/// How a reference of `owner` (may be null) keeps a pointer: a relative one from the folder of the
/// owner's document, so that it means the same whenever it is followed.
String TextWithin(Object* owner, const Pointer& pointer);
/// The same, but the way that `before` took to the same document stays.
String TextWithin(Object* owner, const Pointer& pointer, const Pointer& before);

}  // namespace internal
}  // namespace zorvex_api
