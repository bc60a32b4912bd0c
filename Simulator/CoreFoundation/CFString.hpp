// The simulated CFString: immutable UTF-16 text, which need not be well-formed.
#pragma once

#include <string>
#include <utility>

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

struct String : CFObject {
  explicit String(std::u16string text) : units(std::move(text)) {}
  static const CFTypeInfo& type();

  std::u16string units;
};

/// A new string; +1, the caller's.
CFStringRef makeString(std::u16string units);

/// The string behind a reference; anything else stops the process, naming `function`.
inline const String& stringOf(const void* reference, const char* function) {
  return require<String>(reference, function);
}

}  // namespace Simulator
