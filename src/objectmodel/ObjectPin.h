#pragma once

#include <utility>

#include "objectmodel/ClassData.h"
#include "runtime/PagingHooks.h"

namespace zorvex_api
{

/// Keeps an object in memory for a scope and gives its record.
///
/// Every step from an Object to its ClassData in a public operation, a walk or a destructor goes
/// through a pin. While no paging service runs it costs one test of a flag. It can be moved, for
/// walks that keep their own stack.
class ObjectPin
{
public:
    explicit ObjectPin(const Object* object) : m_object(object)
    {
        if (PagingHooks::IsActive())
        {
            PagingHooks::Pin(object);
            m_pinned = true;
        }
    }
    ObjectPin(ObjectPin&& other) noexcept
        : m_object(other.m_object), m_pinned(std::exchange(other.m_pinned, false))
    {
    }
    ~ObjectPin()
    {
        if (m_pinned)
        {
            PagingHooks::Unpin(m_object);
        }
    }
    ObjectPin(const ObjectPin&) = delete;
    ObjectPin& operator=(const ObjectPin&) = delete;
    ObjectPin& operator=(ObjectPin&&) = delete;

    ClassData* Data() const { return ClassData::Of(m_object); }
    ClassData* operator->() const { return Data(); }
    ClassData& operator*() const { return *Data(); }

private:
    const Object* m_object;
    bool m_pinned = false;
};

}  // namespace zorvex_api
