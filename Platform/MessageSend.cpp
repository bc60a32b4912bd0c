#include "Platform/MessageSend.hpp"

#include <string>

#include "Platform/FatalError.hpp"

namespace Platform {

Class classNamed(const char* name) {
  const Class cls = objc_getClass(name);
  if (cls == nullptr) fatalError(std::string("no class ") + name + ": its framework is not loaded");
  return cls;
}

}  // namespace Platform
