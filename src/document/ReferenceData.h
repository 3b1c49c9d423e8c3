#pragma once

#include <cstddef>
#include <deque>

namespace zorvex_api
{

class FieldDescriptor;
class Object;

/// A URI reference that the reader met: resolved after the parse, when all ids are known.
struct ReferenceData
{
    Object* object;          // the object whose field holds it
    FieldDescriptor* field;  // of type 9, 10 or 11
    int index;               // within a multiple URI field
};

/// In document order. Grows without moving what it holds, so that a large document isn't copied.
using ReferenceList = std::deque<ReferenceData>;

}  // namespace zorvex_api
