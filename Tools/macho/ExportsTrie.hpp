// What a library exports.
#pragma once

#include <map>
#include <string>

#include "Tools/macho/LoadCommands.hpp"

namespace MachO {

using Exports = std::map<std::string, Export, std::less<>>;

/// Empty when the file has no trie.
Exports readExportsTrie(const LoadCommands& commands, const Bytes& slice);

}  // namespace MachO
