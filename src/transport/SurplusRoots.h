#pragma once

#include "zorvex_api/Array.h"

namespace zorvex_api
{

class Object;

namespace internal
{

/// Leaves the roots behind the first one, which nobody is handed, with the first: they go when it
/// does, unless they have gone or have an owner by then.
void KeepSurplusRoots(const Array<Object*>& documents);

}  // namespace internal
}  // namespace zorvex_api
