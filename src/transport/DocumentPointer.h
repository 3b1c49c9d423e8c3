#pragma once

namespace zorvex_api
{

class Object;
class Pointer;

namespace internal
{

/// The pointer that a root was first loaded from or saved to; null when there is none. Owned by the
/// root.
const Pointer* GetDocumentPointer(const Object* root);
/// Notes it, unless the root has one or the pointer names a stream in memory.
void RememberDocumentPointer(Object* root, const Pointer& pointer);
/// Takes the note back, when the document doesn't stand there after all.
void ForgetDocumentPointer(Object* root);
/// Whether a pointer leads through a stream in memory: such a pointer means nothing later.
bool HasStreamElement(const Pointer& pointer);

}  // namespace internal
}  // namespace zorvex_api
