#pragma once

/// Where the object model and the session meet the service that moves objects out of memory.

namespace zorvex_api
{

class ClassData;
class Configuration;
class Object;

/// What a paging service does for the layers below it.
class PagingService
{
public:
    virtual ~PagingService() = default;

    /// A session starts, or a Configuration becomes the active one (null: none is left).
    /// `popped` is 1 when the one before had paging on, `starting` is 1 in `Initialise`.
    /// Says whether paging is on. May raise codes 19 and 527.
    virtual bool Configure(Configuration* options, int popped, int starting) = 0;
    /// The session ends: frees what is kept for reuse and the callback.
    virtual void Stop() = 0;

    /// Brings an object into memory and keeps it there until `Unpin`.
    virtual void Pin(const Object* object) = 0;
    virtual void Unpin(const Object* object) = 0;
    /// A new object has its ClassData.
    virtual void Made(Object* object) = 0;
    /// An object ends.
    virtual void Ending(Object* object) noexcept = 0;
};

/// The one paging service, absent until a higher layer sets it.
class PagingHooks
{
public:
    static PagingService* Get() { return s_service; }
    /// Not owned.
    static void Set(PagingService* service) { s_service = service; }

    /// True while paging is on; the one test that everything costs otherwise.
    static bool IsActive() { return s_active; }

    static bool Configure(Configuration* options, int popped, int starting)
    {
        if (s_service == nullptr)
        {
            return false;
        }
        s_active = s_service->Configure(options, popped, starting);
        return s_active;
    }
    static void Stop()
    {
        s_active = false;
        if (s_service != nullptr)
        {
            s_service->Stop();
        }
    }

    /// Only while active.
    static void Pin(const Object* object) { s_service->Pin(object); }
    static void Unpin(const Object* object) { s_service->Unpin(object); }
    static void Made(Object* object) { s_service->Made(object); }
    static void Ending(Object* object) noexcept { s_service->Ending(object); }

private:
    static inline PagingService* s_service = nullptr;
    static inline bool s_active = false;
};

}  // namespace zorvex_api
