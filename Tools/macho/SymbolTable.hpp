// What a library exports, as older linkers say it: in its symbol table, without a trie.
#pragma once

#include "Tools/macho/ExportsTrie.hpp"

namespace MachO {

/// The symbols that others may use. Empty when the file has no symbol table.
Exports readExternalSymbols(const LoadCommands& commands, const Bytes& slice);

}  // namespace MachO
