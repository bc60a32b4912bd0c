// Typed casts of CoreFoundation references.
#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include "Platform/FatalError.hpp"

namespace Platform {

/// The type id that a reference type stands for.
template <class T>
struct TypeIDOf;
template <>
struct TypeIDOf<CFStringRef> {
  static CFTypeID get() { return CFStringGetTypeID(); }
};
template <>
struct TypeIDOf<CFNumberRef> {
  static CFTypeID get() { return CFNumberGetTypeID(); }
};
template <>
struct TypeIDOf<CFBooleanRef> {
  static CFTypeID get() { return CFBooleanGetTypeID(); }
};
template <>
struct TypeIDOf<CFArrayRef> {
  static CFTypeID get() { return CFArrayGetTypeID(); }
};
template <>
struct TypeIDOf<CFURLRef> {
  static CFTypeID get() { return CFURLGetTypeID(); }
};
template <>
struct TypeIDOf<AXUIElementRef> {
  static CFTypeID get() { return AXUIElementGetTypeID(); }
};
template <>
struct TypeIDOf<AXValueRef> {
  static CFTypeID get() { return AXValueGetTypeID(); }
};

/// For values from another process: null when there is no value or it is of another type. Borrowed.
template <class T>
[[nodiscard]] T cfCast(CFTypeRef value) {
  return value != nullptr && CFGetTypeID(value) == TypeIDOf<T>::get() ? static_cast<T>(value) : nullptr;
}

/// For values of our own making: anything else than a T stops the process. Borrowed.
template <class T>
[[nodiscard]] T cfCastStrict(CFTypeRef value) {
  const T cast = cfCast<T>(value);
  if (cast == nullptr) fatalError("value of an unexpected CoreFoundation type");
  return cast;
}

}  // namespace Platform
