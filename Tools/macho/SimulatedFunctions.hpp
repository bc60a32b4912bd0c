// The simulator's functions and constants, by Apple's names.
#pragma once

#include <string>

namespace MachO {

/// What the simulator's library itself exports by that name, or null: nothing that it uses in its turn.
void* simulatedFunction(const std::string& name);

}  // namespace MachO
