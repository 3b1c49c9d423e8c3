#pragma once

#include <utility>

#include "objectmodel/ClassData.h"
#include "runtime/PagingHooks.h"

namespace zorvex_api
{

/// An ObjectPin that can stand in a container: for walks that keep their own stack.
class MovablePin
{
public:
    explicit MovablePin(const Object* object) : m_object(object)
    {
        if (PagingHooks::IsActive())
        {
            PagingHooks::Pin(object);
            m_pinned = true;
        }
    }
    MovablePin(MovablePin&& other) noexcept
        : m_object(other.m_object), m_pinned(std::exchange(other.m_pinned, false))
    {
    }
    ~MovablePin()
    {
        if (m_pinned)
        {
            PagingHooks::Unpin(m_object);
        }
    }
    MovablePin(const MovablePin&) = delete;
    MovablePin& operator=(const MovablePin&) = delete;
    MovablePin& operator=(MovablePin&&) = delete;

    ClassData* Data() const { return ClassData::Of(m_object); }
    ClassData* operator->() const { return Data(); }
    ClassData& operator*() const { return *Data(); }

private:
    const Object* m_object;
    bool m_pinned = false;
};

}  // namespace zorvex_api
