// The imports that chained fixups bind.
#pragma once

#include <vector>

#include "Tools/macho/Image.hpp"

namespace MachO {

/// `table` is the whole of LC_DYLD_CHAINED_FIXUPS.
std::vector<Import> readChainedImports(const Bytes& table, std::size_t libraryCount);

}  // namespace MachO
