// Generated from the vocabulary of the schemas; don't edit.
#pragma once

#include <array>
#include <cstddef>

namespace zorvex_api::internal
{

/// Fills the descriptor of one class; see LinkNode.
using ClassInitialiser = int (*)(void*);

inline constexpr std::size_t kGeneratedClassCount = 5;

/// The generated classes in registration order.
using ClassInitialisers = std::array<ClassInitialiser, kGeneratedClassCount>;
const ClassInitialisers& GeneratedClassInitialisers();
inline std::size_t GeneratedClassCount() { return kGeneratedClassCount; }

int Initialise_zorvex60_Bolt(void* record);
int Initialise_zorvex60_Part(void* record);
int Initialise_zorvex60_IdObject(void* record);
int Initialise_zorvex60_Frame(void* record);
int Initialise_zorvex_cha60_Nut(void* record);

}  // namespace zorvex_api::internal
