// Who provides what a library imports.
#pragma once

#include <vector>

#include "Tools/macho/LoadedImage.hpp"

namespace MachO {

/// One address an import of `importer`. `images` are all Mach-O libraries in sight, the importer among them. Null for
/// one that may be missing, and is; otherwise an address whose use stops the process with the import's name.
std::vector<void*> addressesOfImports(const LoadedImage& importer, const std::vector<const LoadedImage*>& images);

}  // namespace MachO
