#pragma once

#include "runtime/Text.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class ClassDescriptorImpl;

/// The wording of what goes wrong with the element tree. Classes may be null.
namespace tree_message
{

String CannotAdd(const ClassDescriptorImpl* child, const ClassDescriptorImpl* parent);
String CannotFind(const ClassDescriptorImpl* child, const ClassDescriptorImpl* parent);
String CannotCreateField(TextView field, const ClassDescriptorImpl* parent);
String NullElement(TextView field, const ClassDescriptorImpl* parent);
String OwnSelf();
String HasOwner();
String UnknownClass(TextView name);  ///< for adding, by name
String UnknownClass(short value);    ///< for adding, by class value
String CannotMake(TextView className);
String NoSuchClass(TextView name);  ///< for gathering and deleting
String NotElementField(TextView field, const ClassDescriptorImpl* parent);
String NullCallback();
String NullChild();

}  // namespace tree_message
}  // namespace zorvex_api
