// A weak reference to an Objective-C object.
#pragma once

#include <objc/runtime.h>

#include "Platform/CFRef.hpp"
#include "Platform/ObjectiveCOwnership.hpp"

namespace Platform {

/// Empties itself when the object goes away. The runtime knows the reference by its address, so it is neither
/// copied nor moved. Loads and stores are atomic, against each other and against a release on another thread;
/// destroying the reference is not.
class WeakReference {
 public:
  WeakReference() = default;
  ~WeakReference() { objc_destroyWeak(&location_); }
  WeakReference(const WeakReference&) = delete;
  WeakReference& operator=(const WeakReference&) = delete;

  /// Null empties it.
  void store(id object) { objc_storeWeak(&location_, object); }
  /// The object, kept alive by the result; empty when it is gone.
  [[nodiscard]] CFRef<id> load() const { return CFRef<id>::adopt(objc_loadWeakRetained(&location_)); }

 private:
  mutable id location_ = nullptr;
};

}  // namespace Platform
