#pragma once

#include <atomic>
#include <cstdint>

#include "runtime/Text.h"

namespace zorvex_api
{

class ClassDescriptor;
class FieldDescriptor;

/// What the reader found for an element below a class: which field takes it and of which class it
/// is. Lives in a class's layout, so it goes when fields change; an entry also goes out of use when
/// the set of class names changes.
///
/// Safe from any thread, without a lock. A fixed number of entries: what doesn't fit isn't kept, so
/// a document can't make it grow.
class ElementCache
{
public:
    struct Entry
    {
        FieldDescriptor* field = nullptr;
        ClassDescriptor* descriptor = nullptr;
        int kind = 0;  // the reader's own mark
    };

    ElementCache() = default;
    ~ElementCache();
    ElementCache(const ElementCache&) = delete;
    ElementCache& operator=(const ElementCache&) = delete;

    /// False when nothing is known.
    bool Find(TextView name, TextView namespaceUri, Entry& out) const;
    void Remember(TextView name, TextView namespaceUri, const Entry& entry);

private:
    struct Slot;
    struct Table;

    std::atomic<Table*> m_table{nullptr};  // owned, made by the first Remember
};

}  // namespace zorvex_api
