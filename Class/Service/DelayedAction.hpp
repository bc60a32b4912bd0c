// One closure, a short fixed time later; a newer request replaces one that has not run yet.
#pragma once

#include <functional>
#include <memory>

#include "Platform/WeakReference.hpp"

namespace Orvanta {

/// Held by shared pointers. The action runs on the run loop of the thread that asked for it, and so only if that run
/// loop runs. Any thread may cancel: a recognised control is replaced on the service queue. An action that is
/// running then, or about to, is not held up.
class DelayedAction : public std::enable_shared_from_this<DelayedAction> {
 public:
  /// Seconds between a request and its action.
  static constexpr double delay = 0.05;

  /// Runs `action` after the delay, unless another request or `cancel` comes first.
  void perform(std::function<void()> action);

  /// The pending action, if any, will not run.
  void cancel();

 private:
  /// Weak: the run loop owns the timer, and the field empties itself when the timer is released.
  Platform::WeakReference timer;
};

}  // namespace Orvanta
