#pragma once

#include "objectmodel/ClassDescriptorImpl.h"

namespace zorvex_api
{

/// A class that the reader made for an element that nobody has described. Its elements and those
/// below it are of the namespace that they were read in, whatever class or field holds them.
inline bool IsUnknownClass(const ClassDescriptorImpl* descriptor)
{
    return descriptor != nullptr && descriptor->IsRuntimeClass() && !descriptor->HasSchemaFile();
}

}  // namespace zorvex_api
