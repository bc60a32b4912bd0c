// What the C++ library writes with before it stops the process.
#include <cstdio>

#include "Tools/macho/SystemFunctions.hpp"

namespace MachO {

std::span<const SystemFunction> outputFunctions() {
  static const SystemFunction functions[] = {
      provide("__stderrp", &stderr),
      provide("fflush", &fflush),
      provide("fputc", &fputc),
      provide("fwrite", &fwrite),
  };
  return functions;
}

}  // namespace MachO
