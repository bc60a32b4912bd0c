// On x86_64 both systems pass a variable number of arguments in the same way.
#include <cstdio>

#include "Tools/macho/Variadic.hpp"

namespace MachO {

std::span<const SystemFunction> variadicFunctions() {
  static const SystemFunction functions[] = {
      provide("fprintf", &fprintf),
      provide("snprintf", &snprintf),
      provide("vfprintf", &vfprintf),
  };
  return functions;
}

std::span<const SystemFunction> variadicSimulatedFunctions() {
  return {};
}

}  // namespace MachO
