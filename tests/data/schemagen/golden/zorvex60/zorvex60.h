// Generated from the vocabulary of the schemas; don't edit.
#pragma once

/// All classes and enumerations of zorvex60.

#include "zorvex60/Bolt.h"
#include "zorvex60/Frame.h"
#include "zorvex60/IdObject.h"
#include "zorvex60/Part.h"
#include "zorvex60/eHead.h"
