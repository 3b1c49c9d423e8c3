#pragma once

#include <cstddef>

#include "objectmodel/HookedVector.h"
#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

class FieldDescriptor;
struct FieldData;

/// The records of one object by descriptor, for the rare object that has very many.
///
/// Open addressing, insertion only: when a record leaves the object, its index goes with it.
class FieldDataIndex : public Allocator
{
public:
    /// `list`: the object's records; of one descriptor there is one.
    explicit FieldDataIndex(FieldData* list);

    FieldData* Find(const FieldDescriptor* descriptor) const;
    void Insert(FieldData* record);

private:
    std::size_t SlotOf(const FieldDescriptor* descriptor) const;
    void Place(FieldData* record);
    void Grow();

    HookedVector<FieldData*> m_slots;  // a power of two, at most half full; null is free
    std::size_t m_used = 0;
};

}  // namespace zorvex_api
