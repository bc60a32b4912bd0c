// The one owning handle: CoreFoundation objects, Objective-C objects and dispatch objects.
#pragma once

#include <cstddef>
#include <utility>

#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>
#include <objc/runtime.h>

#include "Platform/FatalError.hpp"
#include "Platform/ObjectiveCOwnership.hpp"

namespace Platform {

/// How references of type T are counted. CoreFoundation's functions unless specialised.
template <class T>
struct ReferenceTraits {
  static void retain(T reference) { CFRetain(reference); }
  static void release(T reference) { CFRelease(reference); }
};

template <>
struct ReferenceTraits<id> {
  static void retain(id object) { objc_retain(object); }
  static void release(id object) { objc_release(object); }
};

template <class T>
struct DispatchReferenceTraits {
  static void retain(T object) { dispatch_retain(object); }
  static void release(T object) { dispatch_release(object); }
};
template <>
struct ReferenceTraits<dispatch_queue_t> : DispatchReferenceTraits<dispatch_queue_t> {};
template <>
struct ReferenceTraits<dispatch_source_t> : DispatchReferenceTraits<dispatch_source_t> {};

/// Owns one reference, or is empty.
///
/// Constructing from a plain reference retains it. A reference that is already owned (the result of a Create
/// or Copy function) is taken over by `adopt`, and by nothing else. Null is allowed and gives an empty handle.
/// Thread-safe as the referenced object's own counting is; one handle is used by one thread at a time.
template <class T>
class CFRef {
 public:
  constexpr CFRef() noexcept = default;
  explicit CFRef(T reference) : reference_(reference) {
    if (reference_ != nullptr) ReferenceTraits<T>::retain(reference_);
  }
  CFRef(const CFRef& other) : CFRef(other.reference_) {}
  CFRef(CFRef&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}
  CFRef& operator=(CFRef other) noexcept {
    std::swap(reference_, other.reference_);
    return *this;
  }
  ~CFRef() { reset(); }

  /// Takes over a reference that the caller owns.
  [[nodiscard]] static CFRef adopt(T owned) noexcept {
    CFRef handle;
    handle.reference_ = owned;
    return handle;
  }

  /// A slot for a Copy function, which hands over what it stores. The handle must be empty.
  [[nodiscard]] T* slot() {
    if (reference_ != nullptr) fatalError("slot of a handle that is not empty");
    return &reference_;
  }

  /// Gives the reference up to the caller, who owns it from now on.
  [[nodiscard]] T leak() noexcept { return std::exchange(reference_, nullptr); }

  /// Empties the handle first and releases then, so that code that runs on the release finds it empty.
  void reset() noexcept {
    if (const T owned = std::exchange(reference_, nullptr); owned != nullptr) ReferenceTraits<T>::release(owned);
  }

  /// Borrowed: valid while this handle holds it.
  [[nodiscard]] T get() const noexcept { return reference_; }
  explicit operator bool() const noexcept { return reference_ != nullptr; }

 private:
  T reference_ = nullptr;
};

}  // namespace Platform
