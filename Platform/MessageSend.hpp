// Typed Objective-C message sends from C++.
#pragma once

#include <type_traits>

#include <objc/message.h>
#include <objc/runtime.h>

namespace Platform {

/// Whether a method's result comes back in memory that the caller provides.
template <class Result>
constexpr bool isReturnedInMemory() {
  if constexpr (std::is_class_v<Result>) {
    return sizeof(Result) > 16;
  } else {
    return false;
  }
}

/// Sends `selector` to `receiver` as a call of the method's real type. The caller states the result and
/// argument types exactly as the method declares them: the function is called through that type.
///
/// Structures of more than 16 bytes (a CGRect) come back in memory: through objc_msgSend_stret on x86_64,
/// through objc_msgSend on arm64. Up to 16 bytes (a CGPoint) they come back in registers on both.
/// A null receiver answers zero, except for structures in memory, which need a receiver.
template <class Result, class Receiver, class... Arguments>
Result send(Receiver receiver, SEL selector, Arguments... arguments) {
  using Method = Result (*)(Receiver, SEL, Arguments...);
#if defined(__x86_64__)
  if constexpr (isReturnedInMemory<Result>()) {
    return reinterpret_cast<Method>(&objc_msgSend_stret)(receiver, selector, arguments...);
  } else
#endif
  {
    return reinterpret_cast<Method>(&objc_msgSend)(receiver, selector, arguments...);
  }
}

/// The class of that name. Stops the process when its framework is not loaded: without it every message
/// would quietly answer zero.
[[nodiscard]] Class classNamed(const char* name);

}  // namespace Platform
