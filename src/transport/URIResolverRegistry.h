#pragma once

namespace zorvex_api
{

class Object;

namespace internal
{

/// Takes a dying object out of the tables of all live resolvers. Cheap for an object that no
/// resolver knows; never throws. Objects that a resolver may know have the state flag kRegistered.
void ForgetObject(Object* object) noexcept;

}  // namespace internal
}  // namespace zorvex_api
