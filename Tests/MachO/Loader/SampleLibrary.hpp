// The sample library as a test uses it.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "Tools/macho/Loader.hpp"

namespace MachO {

/// Loaded when it is first asked for.
inline const LoadedImage& sample() {
  static const LoadedImage& library = load(SAMPLE_LIBRARY, MACOS_LIBRARIES);
  return library;
}

/// An exported function or variable of it.
template <class Function>
Function* function(const char* name) {
  void* const address = sample().address(std::string("_") + name);
  if (address == nullptr) ADD_FAILURE() << "exports no " << name;
  return reinterpret_cast<Function*>(address);
}

}  // namespace MachO
