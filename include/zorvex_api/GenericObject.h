#pragma once

#include "zorvex_api/Export.h"
#include "zorvex_api/Object.h"

namespace zorvex_api
{

class ClassDescriptorImpl;

/// An object of a class that only a schema or a document made known at run time.
class ZORVEX_API GenericObject : public Object
{
public:
    /// An object without a class.
    GenericObject();
    /// An object of the class; a null class leaves it without one.
    explicit GenericObject(ClassDescriptorImpl* descriptor);
    /// Attaches the new object to `owner`. A refusal raises an Exception of code 2 with the
    /// Result's message.
    GenericObject(ClassDescriptorImpl* descriptor, Object* owner);
    ~GenericObject() override;

    /// Makes an object of a run-time class: an object of the nearest built-in base class with the
    /// run-time class's metadata, or a GenericObject when there is no such base. The caller owns
    /// it. Null for null.
    static Object* MakeFunction(ClassDescriptorImpl* descriptor);

private:
    ClassDescriptorImpl* m_class;  // not owned
};

}  // namespace zorvex_api
