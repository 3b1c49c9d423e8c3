#include "transport/PointerRef.h"

#include "runtime/MutexLock.h"

namespace zorvex_api
{

namespace
{

constexpr int kMaxWaiting = 10;

/// Pointers without use, under the lock of the free list.
Pointer* g_waiting[kMaxWaiting];
int g_waitingCount = 0;

Pointer* Take()
{
    {
        const MutexLock lock(kMutexPointerRefs);
        if (g_waitingCount > 0)
        {
            return g_waiting[--g_waitingCount];
        }
    }
    return new Pointer;
}

void Give(Pointer* pointer)
{
    pointer->Reset();
    {
        const MutexLock lock(kMutexPointerRefs);
        if (g_waitingCount < kMaxWaiting)
        {
            g_waiting[g_waitingCount++] = pointer;
            return;
        }
    }
    delete pointer;
}

}  // namespace

PointerRef::PointerRef() : AutoPtr<Pointer>(Take()) {}

PointerRef::PointerRef(const String& text) : PointerRef()
{
    Get()->Parse(text);
}

PointerRef::PointerRef(const unsigned short* text) : PointerRef(String(text)) {}

PointerRef::PointerRef(const char16_t* text) : PointerRef(String(text)) {}

PointerRef::~PointerRef()
{
    if (Pointer* pointer = Release())
    {
        Give(pointer);
    }
}

void PointerRef::ReleaseFreeList()
{
    const MutexLock lock(kMutexPointerRefs);
    while (g_waitingCount > 0)
    {
        delete g_waiting[--g_waitingCount];
    }
}

}  // namespace zorvex_api
