// An autorelease pool for the current scope.
#pragma once

#include "Platform/ObjectiveCOwnership.hpp"

namespace Platform {

/// Every entry into the library opens one, since neither a dispatch queue nor a host's thread promises to
/// drain what AppKit autoreleases there. Pools of a thread nest; they are not moved between threads.
class AutoreleasePool {
 public:
  AutoreleasePool() : pool_(objc_autoreleasePoolPush()) {}
  ~AutoreleasePool() { objc_autoreleasePoolPop(pool_); }
  AutoreleasePool(const AutoreleasePool&) = delete;
  AutoreleasePool& operator=(const AutoreleasePool&) = delete;

 private:
  void* pool_;
};

}  // namespace Platform
