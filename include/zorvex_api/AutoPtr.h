#pragma once

#include "zorvex_api/Allocator.h"

namespace zorvex_api
{

/// Owns one object and deletes it at the end of the scope.
template <class T>
class ZORVEX_API AutoPtr : public Allocator
{
public:
    explicit AutoPtr(T* object = nullptr) : m_object(object) {}
    virtual ~AutoPtr() { delete m_object; }
    AutoPtr(const AutoPtr&) = delete;
    AutoPtr& operator=(const AutoPtr&) = delete;

    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }
    /// The object, still owned here.
    T* Get() const { return m_object; }
    /// The object, now the caller's.
    T* Release()
    {
        T* object = m_object;
        m_object = nullptr;
        return object;
    }
    /// Deletes the object held and takes over another.
    void Reset(T* object = nullptr)
    {
        if (m_object != object)
        {
            delete m_object;
            m_object = object;
        }
    }

private:
    T* m_object;  // owned
};

}  // namespace zorvex_api
