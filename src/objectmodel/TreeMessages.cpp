#include "objectmodel/TreeMessages.h"

#include "objectmodel/ClassDescriptorImpl.h"

namespace zorvex_api::tree_message
{

namespace
{

std::string NameOf(const ClassDescriptorImpl* impl)
{
    return impl != nullptr ? ToUtf8(impl->Name()) : std::string();
}

}  // namespace

String CannotAdd(const ClassDescriptorImpl* child, const ClassDescriptorImpl* parent)
{
    return String::Format("Cannot add child of type: %s to parent of type: %s.",
                          NameOf(child).c_str(), NameOf(parent).c_str());
}

String CannotFind(const ClassDescriptorImpl* child, const ClassDescriptorImpl* parent)
{
    return String::Format("Cannot find child of type %s in parent of type %s",
                          NameOf(child).c_str(), NameOf(parent).c_str());
}

String CannotCreateField(TextView field, const ClassDescriptorImpl* parent)
{
    return String::Format("Unable to create field \"%s\" for parent class \"%s\".",
                          ToUtf8(field).c_str(), NameOf(parent).c_str());
}

String NullElement(TextView field, const ClassDescriptorImpl* parent)
{
    return String::Format(
        "Unable to add Element: \"%s\" to parent class: \"%s\". NULL input element.",
        ToUtf8(field).c_str(), NameOf(parent).c_str());
}

String OwnSelf()
{
    return String("Cannot set the owner to be this Object.");
}

String HasOwner()
{
    return String("Object already has owner");
}

String UnknownClass(TextView name)
{
    return String::Format("Unable to find class: \"%s\".", ToUtf8(name).c_str());
}

String UnknownClass(short value)
{
    return String::Format("Unable to find class: \"%d\".", static_cast<int>(value));
}

String CannotMake(TextView className)
{
    return String::Format("Unable to create class: \"%s\".", ToUtf8(className).c_str());
}

String NoSuchClass(TextView name)
{
    return String::Format("Cannot find the class: \"%s\".", ToUtf8(name).c_str());
}

String NotElementField(TextView field, const ClassDescriptorImpl* parent)
{
    return String::Format("\"%s\" is not an allowed element field of: \"%s\".",
                          ToUtf8(field).c_str(), NameOf(parent).c_str());
}

String NullCallback()
{
    return String("Call back must be non NULL.");
}

String NullChild()
{
    return String("Element to delete is NULL.");
}

}  // namespace zorvex_api::tree_message
