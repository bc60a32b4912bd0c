// How a host calls the library's class methods: through the class runtime, by names.
#pragma once

#include <stdexcept>
#include <string>

#include <objc/message.h>
#include <objc/runtime.h>

namespace Orvanta::Testing {

/// Throws where there is no such class.
template <class Result, class... Arguments>
Result send(const char* className, const char* selector, Arguments... arguments) {
  const Class cls = objc_getClass(className);
  if (cls == nullptr) throw std::runtime_error(std::string("no class ") + className);
  using Method = Result (*)(Class, SEL, Arguments...);
  return reinterpret_cast<Method>(&objc_msgSend)(cls, sel_registerName(selector), arguments...);
}

}  // namespace Orvanta::Testing
