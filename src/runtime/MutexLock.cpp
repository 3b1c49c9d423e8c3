#include "runtime/MutexLock.h"

#include <mutex>

namespace zorvex_api
{

struct Mutex::Impl
{
    std::recursive_mutex mutex;
};

namespace
{

/// Made on first use and never destroyed: locks are taken while the process ends.
Mutex* Table()
{
    static Mutex* const table = new Mutex[kMutexSlots];
    return table;
}

}  // namespace

Mutex::Mutex() : m_impl(new Impl) {}
Mutex::~Mutex()
{
    delete m_impl;
}
void Mutex::Lock()
{
    m_impl->mutex.lock();
}
void Mutex::Unlock()
{
    m_impl->mutex.unlock();
}

Mutex* Mutex::OfSlot(int slot)
{
    return slot >= 0 && slot < kMutexSlots ? Table() + slot : nullptr;
}

MutexLock::MutexLock(int slot) : MutexLock(Mutex::OfSlot(slot)) {}

MutexLock::MutexLock(Mutex* mutex) : m_mutex(mutex)
{
    if (m_mutex != nullptr)
    {
        m_mutex->Lock();
    }
}

MutexLock::~MutexLock()
{
    if (m_mutex != nullptr)
    {
        m_mutex->Unlock();
    }
}

}  // namespace zorvex_api
