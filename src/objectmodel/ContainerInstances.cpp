// The containers of the object model's types, as the library exports them.

#include "zorvex_api/Array.h"
#include "zorvex_api/ClassDescriptor.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/FieldInfo.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Map.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Reference.h"

namespace zorvex_api
{

template class Array<Handle>;
template class Array<Reference>;
template class Array<Object*>;
template class Array<FieldInfo>;
template class Array<FieldType>;
template class Array<Configuration*>;
template class Array<ClassDescriptor*>;
template class Map<FieldInfo, FieldInfo>;

}  // namespace zorvex_api
