#pragma once

namespace zorvex_api::internal
{

/// Takes a dying object, or a thing of another format, out of the tables of all live resolvers.
/// Cheap for one that no resolver knows; never throws. Objects that a resolver may know have the
/// state flag kRegistered.
void ForgetObject(void* object) noexcept;

}  // namespace zorvex_api::internal
