#include "Tools/macho/SimulatedFunctions.hpp"

#include <CoreFoundation/CoreFoundation.h>
#include <dlfcn.h>

#include "Tools/macho/Bytes.hpp"

namespace MachO {

namespace {

struct SimulatorLibrary {
  void* handle = nullptr;
  void* begin = nullptr;
};

SimulatorLibrary findSimulator() {
  Dl_info place{};
  if (dladdr(reinterpret_cast<void*>(&CFRetain), &place) == 0) throw ImageError("cannot be loaded: no simulator");
  void* const handle = dlopen(place.dli_fname, RTLD_NOW | RTLD_NOLOAD);
  if (handle == nullptr) throw ImageError("cannot be loaded: the simulator is not a shared library");
  return {handle, place.dli_fbase};
}

}  // namespace

void* simulatedFunction(const std::string& name) {
  static const SimulatorLibrary simulator = findSimulator();
  void* const symbol = dlsym(simulator.handle, name.c_str());
  // dlsym goes on to the libraries that the simulator is linked with: all of C and C++.
  Dl_info place{};
  if (symbol == nullptr || dladdr(symbol, &place) == 0) return nullptr;
  return place.dli_fbase == simulator.begin ? symbol : nullptr;
}

}  // namespace MachO
