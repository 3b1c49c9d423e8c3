#pragma once

#include "zorvex_api/Array.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class Adapter;
class Object;
class Pointer;
class URIResolver;

namespace internal
{

/// What a file name for the target of a reference is made from. Nothing is owned.
struct FileNameSource
{
    const Pointer& pointer;        // of the reference, with its format
    const Array<Handle>& targets;  // what the reference leads to
    const Array<Handle>& roots;    // what is to be saved
    Object* owner;                 // whose field holds the reference
    Adapter* adapter;              // that will write the file
    URIResolver* resolver;         // may be null
};

/// A name for a document that has none yet, with the adapter's extension. `number` below 0 leaves
/// the number out. `stripLocator` becomes 0 when the locator is part of the name and so stays out
/// of the pointer, else 1.
String MakeFileName(const FileNameSource& source, int number, int& stripLocator);

}  // namespace internal
}  // namespace zorvex_api
