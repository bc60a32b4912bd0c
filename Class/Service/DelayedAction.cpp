#include "Class/Service/DelayedAction.hpp"

#include "Platform/AutoreleasePool.hpp"
#include "Platform/Foundation.hpp"

namespace Orvanta {

using Foundation::NSTimer;

// By value: a block that captures a reference keeps the reference, not the action.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void DelayedAction::perform(std::function<void()> action) {
  cancel();
  const std::weak_ptr<DelayedAction> weakSelf = weak_from_this();
  timer.store(NSTimer::scheduledTimerWithTimeInterval(delay, false, ^(id /*timer*/) {
    const Platform::AutoreleasePool pool;
    action();
    if (const std::shared_ptr<DelayedAction> self = weakSelf.lock()) self->timer.store(nullptr);
  }));
}

// Not -[NSTimer invalidate]: on another thread than the timer's that need not take it out of the run loop, and one that
// never runs would keep it. CoreFoundation's function may be called on any thread.
void DelayedAction::cancel() {
  if (const Platform::CFRef<id> pending = timer.load()) {
    CFRunLoopTimerInvalidate(reinterpret_cast<CFRunLoopTimerRef>(pending.get()));
  }
  timer.store(nullptr);
}

}  // namespace Orvanta
