#pragma once

#include "zorvex_api/Export.h"

namespace zorvex_api
{

/// Class values of the library's own classes; -999 until the registry is filled.
extern ZORVEX_API short zorvexClassObject;
extern ZORVEX_API short zorvexClassGenericObject;
extern ZORVEX_API short zorvexClassConfiguration;

namespace internal
{

/// Fills the class "Object", the root of every class chain, with its field schemaLocation.
int InitObjectClass(void* record);
/// Fills the class "Configuration".
int InitConfigurationClass(void* record);

}  // namespace internal
}  // namespace zorvex_api
