#pragma once

#include "runtime/Text.h"
#include "zorvex_api/Result.h"

namespace zorvex_api
{

class ClassData;

/// The wording of what attribute access reports. `name` is the text that the caller used.
namespace attribute_message
{

/// Code 525.
Result NotAllowed(TextView name, ClassData& owner);
/// Code 2.
Result NotSet(TextView name);
/// The same as a WARNING.
Result NotSetWarning(TextView name);
Result WrongType(TextView name);
Result CannotSet(TextView name);
Result CannotAdd(TextView name);
Result CannotCreate(TextView name, ClassData& owner);
Result IdIsNoInt();
Result IntOverflow(TextView text);
Result OtherRoot(TextView name, TextView id);
Result SizeNotOne(const char* fieldType);
Result MultipleHandles(TextView name);
Result IncorrectFieldType();
/// Code 20.
Result AlreadyExists();
/// Code 517.
Result UnexpectedType();
Result SeveralIds();
Result SeveralUris();
/// Code 523, a WARNING.
Result NotInEnum(TextView text, const String& className);

}  // namespace attribute_message
}  // namespace zorvex_api
