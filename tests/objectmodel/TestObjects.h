#pragma once

#include <memory>
#include <string>

#include "support/SessionTest.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Reference.h"

namespace zorvex_test
{

/// Makes a root of a class.
inline std::unique_ptr<zorvex_api::Object> Make(const zorvex_api::String& className)
{
    zorvex_api::ClassDescriptor* descriptor = zorvex_api::ClassDescriptor::FindByName(className);
    return std::unique_ptr<zorvex_api::Object>(descriptor != nullptr ? descriptor->MakeObject()
                                                                     : nullptr);
}

/// Makes a child of a class; the tree owns it.
inline zorvex_api::Object* AddChild(zorvex_api::Object& owner, const zorvex_api::String& className)
{
    zorvex_api::Object* child = nullptr;
    const zorvex_api::Result result = owner.AddElement(className, zorvex_api::String(), child);
    EXPECT_TRUE(result.Ok()) << Utf8(result.GetMessage());
    return child;
}

/// The text of an attribute; the messages when it can't be read.
inline std::string Text(const zorvex_api::Object& object, const zorvex_api::String& name)
{
    zorvex_api::String value;
    const zorvex_api::Result result = object.GetAttributeValue(name, value);
    return result.NumberOfErrors() == 0 ? Utf8(value) : "! " + Utf8(result.GetMessage());
}

/// Whether a value is stored, default or not.
inline bool IsStored(const zorvex_api::Object& object, const zorvex_api::String& name)
{
    int hasValue = 0;
    object.HasAttributeValue(name, hasValue);
    return hasValue != 0;
}

inline std::string IdOf(const zorvex_api::Object& object)
{
    return Utf8(object.GetId());
}

}  // namespace zorvex_test
