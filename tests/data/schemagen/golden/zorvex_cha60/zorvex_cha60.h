// Generated from the vocabulary of the schemas; don't edit.
#pragma once

/// All classes and enumerations of zorvex_cha60.

#include "zorvex_cha60/Nut.h"
