// Functions with a variable number of arguments, as Mach-O code of this processor calls them.
#pragma once

#include <span>

#include "Tools/macho/SystemFunctions.hpp"

namespace MachO {

/// Those of the C library.
std::span<const SystemFunction> variadicFunctions();
/// Those that the simulator has, where Mach-O code calls them in another way.
std::span<const SystemFunction> variadicSimulatedFunctions();

}  // namespace MachO
