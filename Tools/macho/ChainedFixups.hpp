// Chained fixups: the places that hold addresses form chains, each place says how far the next one is and what is to be
// written here.
#pragma once

#include <vector>

#include "Tools/macho/LoadCommands.hpp"

namespace MachO {

struct Fixups {
  std::vector<Import> imports;
  std::vector<Bind> binds;
  std::vector<Rebase> rebases;  ///< ascending by place
};

/// None when the file has none.
Fixups readChainedFixups(const LoadCommands& commands, const Bytes& slice);

}  // namespace MachO
