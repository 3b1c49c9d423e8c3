#pragma once

namespace zorvex_api
{

class Object;

/// Receives the children of a field, whichever way the field keeps them.
class ObjectCallbackBase
{
public:
    /// All children of an array at once.
    virtual void Process(Object** children, int count) = 0;
    /// One child; non-zero to go on.
    virtual int Process(Object* child) = 0;

protected:
    ~ObjectCallbackBase() = default;
};

}  // namespace zorvex_api
