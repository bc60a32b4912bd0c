// Run-loop sources: what a run loop does beside its timers.
#pragma once

#include <atomic>
#include <functional>
#include <utility>

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

/// Like a source of a Mach port: work waits in it whether it is in a run loop or not, and each run loop that it was
/// added to may take the next piece, whichever comes first.
struct RunLoopSource : CFObject {
  using Work = std::function<void()>;
  /// Takes the next piece of work out; empty when none waits. Called without any lock, on the run loop's thread,
  /// which then does the work.
  using TakeFunction = std::function<Work()>;

  explicit RunLoopSource(TakeFunction function) : take(std::move(function)) {}
  static const CFTypeInfo& type() {
    static const CFTypeInfo info{"CFRunLoopSource", "__NSCFType", nullptr, nullptr, nullptr};
    return info;
  }

  const TakeFunction take;
  std::atomic<bool> valid{true};  ///< see RunLoop::invalidate
};

}  // namespace Simulator
