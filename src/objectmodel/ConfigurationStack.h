#pragma once

/// What the library asks of the configurations that are active on this thread.

namespace zorvex_api::configuration_stack
{

/// Whether the innermost active configuration has "adapters/ZORVEX/empty_attributes" set to
/// "treat_as_set". Cheap as long as that configuration isn't changed.
bool EmptyIsValue();

/// The pointer of "serialise/callbacks": of the innermost active configuration that has one.
void* SerialiseCallbacks();

}  // namespace zorvex_api::configuration_stack
