#pragma once

namespace zorvex_api
{

/// What each slot of the process-wide table of locks guards. Slots are taken one at a time; the
/// one nested pair is kNamespaces, then kRuntimeClasses.
enum MutexSlot
{
    kMutexResolver = 0,        ///< object registrations of the URI resolvers
    kMutexPointerRefs = 1,     ///< free list of PointerRef
    kMutexExternalReps = 2,    ///< tables of external references
    kMutexLocalTime = 3,       ///< the C library's local time conversion
    kMutexRuntimeClasses = 4,  ///< tables of classes made at run time
    kMutexClassValues = 5,     ///< making and releasing of class values
    kMutexNamespaces = 6,      ///< table of namespaces
    kMutexStringPool = 7,      ///< pool of field text
    kMutexSlots = 15
};

/// A recursive lock that works at any time, before `Initialise` and while the process ends.
class Mutex
{
public:
    Mutex();
    ~Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void Lock();
    void Unlock();

    /// The lock of a slot, or null for a number outside the table.
    static Mutex* OfSlot(int slot);

private:
    struct Impl;
    Impl* m_impl;  // owned
};

/// Holds the lock of a slot, or a given one, for a scope. A slot outside the table, or null, locks
/// nothing.
class MutexLock
{
public:
    explicit MutexLock(int slot);
    explicit MutexLock(Mutex* mutex);
    ~MutexLock();
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex* m_mutex;
};

}  // namespace zorvex_api
