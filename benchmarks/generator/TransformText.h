#pragma once

#include <string>

#include "generator/Random.h"

namespace zorvex_bench
{

// Numbers in the text form in which the library saves them. Lengths are in metres.

/// Three numbers: a way.
std::string MoveTransform(Random& random);
/// Sixteen numbers: a turn about one of the axes and a way.
std::string GeneralTransform(Random& random);
/// Six numbers: centre and half sizes of a box.
std::string BoxNumbers(Random& random);
/// Three numbers from 0 to 1.
std::string ColourNumbers(Random& random);

}  // namespace zorvex_bench
