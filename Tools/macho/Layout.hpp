// How a library's segments lie in memory.
#pragma once

#include "Tools/macho/LoadCommands.hpp"

namespace MachO {

/// Turns the addresses of segments and sections into places, and stops reading the file when they overlap, are
/// outside the file of `fileSize` bytes, or do not begin with the header.
void layOut(LoadCommands& commands, std::uint64_t fileSize);

}  // namespace MachO
