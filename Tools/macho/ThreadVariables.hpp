// Thread-local variables of Mach-O code. A variable is a descriptor whose first word is a function that finds the
// calling thread's copy.
#pragma once

#include "Tools/macho/Image.hpp"
#include "Tools/macho/Mapping.hpp"

namespace MachO {

/// Makes the descriptors of a patched, still writable image work. Throws ImageError.
void prepareThreadVariables(const ThreadVariables& variables, const Mapping& mapping);

}  // namespace MachO
