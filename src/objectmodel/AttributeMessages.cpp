#include "objectmodel/AttributeMessages.h"

#include "objectmodel/ClassData.h"
#include "objectmodel/ClassDescriptorImpl.h"

namespace zorvex_api::attribute_message
{

namespace
{

constexpr int kFailed = 2;
constexpr int kExists = 20;
constexpr int kReferenceProblem = 517;
constexpr int kUnknownEnumText = 523;
constexpr int kUnknownAttribute = 525;

std::string ClassName(ClassData& owner)
{
    const ClassDescriptorImpl* descriptor = ClassDescriptorImpl::Of(owner.GetClassDescriptor());
    return descriptor != nullptr ? ToUtf8(descriptor->Name()) : std::string();
}

}  // namespace

Result NotAllowed(TextView name, ClassData& owner)
{
    return Result(kUnknownAttribute,
                  String::Format("\"%s\" is not an allowed attribute of: \"%s\".",
                                 ToUtf8(name).c_str(), ClassName(owner).c_str()));
}

Result NotSet(TextView name)
{
    return Result(kFailed, String::Format("Attribute: \"%s\" is not set.", ToUtf8(name).c_str()));
}

Result NotSetWarning(TextView name)
{
    return Result(kFailed, WARNING,
                  String::Format("Attribute: \"%s\" is not set.", ToUtf8(name).c_str()));
}

Result WrongType(TextView name)
{
    return Result(kFailed, String::Format("Cannot get attribute: \"%s\". Attribute field is of the "
                                          "wrong type.",
                                          ToUtf8(name).c_str()));
}

Result CannotSet(TextView name)
{
    return Result(kFailed,
                  String::Format("Unable to set attribute: \"%s\".", ToUtf8(name).c_str()));
}

Result CannotAdd(TextView name)
{
    return Result(kFailed,
                  String::Format("Unable to add attribute: \"%s\".", ToUtf8(name).c_str()));
}

Result CannotCreate(TextView name, ClassData& owner)
{
    return Result(kFailed, String::Format("Unable to create attribute: \"%s\" of class: \"%s\"",
                                          ToUtf8(name).c_str(), ClassName(owner).c_str()));
}

Result IdIsNoInt()
{
    return Result(kFailed, "Id attribute cannot be represented as an int.");
}

Result IntOverflow(TextView text)
{
    return Result(kFailed, String::Format("Unable to convert one of: \"%s\" to integer. Overflow?.",
                                          ToUtf8(text).c_str()));
}

Result OtherRoot(TextView name, TextView id)
{
    return Result(kFailed, String::Format("Unable to set attribute: \"%s\". The reference \"%s\" "
                                          "must be in the same root as object.",
                                          ToUtf8(name).c_str(), ToUtf8(id).c_str()));
}

Result SizeNotOne(const char* fieldType)
{
    return Result(kFailed, String::Format("Field is of type \"%s\" and size of Reference array != "
                                          "1.",
                                          fieldType));
}

Result MultipleHandles(TextView name)
{
    return Result(kFailed, String::Format("Unable to set attribute, multiple handles in "
                                          "ExternalReference: \"%s\".",
                                          ToUtf8(name).c_str()));
}

Result IncorrectFieldType()
{
    return Result(kFailed, "Incorrect Field Type.");
}

Result AlreadyExists()
{
    return Result(kExists, "At least one supplied reference already exists.");
}

Result UnexpectedType()
{
    return Result(kReferenceProblem, "Unexpected field type.");
}

Result SeveralIds()
{
    return Result(kReferenceProblem, "More then one IDREF value exists.");
}

Result SeveralUris()
{
    return Result(kReferenceProblem, "More then one URI ref exists");
}

Result NotInEnum(TextView text, const String& className)
{
    return Result(kUnknownEnumText, WARNING,
                  String::Format("\"%s\" is not an allowed value of the enum: \"%s\".",
                                 ToUtf8(text).c_str(), ToUtf8(className).c_str()));
}

}  // namespace zorvex_api::attribute_message
