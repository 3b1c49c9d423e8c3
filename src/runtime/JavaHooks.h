#pragma once

/// Where the object model meets the Java bridge.

namespace zorvex_api
{

class ClassData;
class Object;

/// What the bridge wants to know of objects.
class JavaBridge
{
public:
    virtual ~JavaBridge() = default;

    /// True on a thread that the Java machine knows.
    virtual bool IsActive() = 0;
    /// A ClassData was made; the bridge adds its record while it is active.
    virtual void ObjectMade(ClassData* data) = 0;
    /// A document of a class under DocumentBase got its initial attributes.
    virtual void DocumentInitialised(ClassData* data) = 0;
    /// An object moved between trees; either root can be null.
    virtual void OwnerChanged(Object* object, Object* oldRoot, Object* newRoot) = 0;
    /// A ClassData ends: detaches the wrappers.
    virtual void ObjectEnding(ClassData* data) noexcept = 0;
};

/// The one bridge, absent until a higher layer sets it.
class JavaHooks
{
public:
    static JavaBridge* Get() { return s_bridge; }
    /// Not owned.
    static void Set(JavaBridge* bridge) { s_bridge = bridge; }
    /// The one test that everything costs while there is no bridge.
    static bool IsPresent() { return s_bridge != nullptr; }

private:
    static inline JavaBridge* s_bridge = nullptr;
};

}  // namespace zorvex_api
