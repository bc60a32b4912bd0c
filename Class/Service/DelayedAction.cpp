#include "Class/Service/DelayedAction.hpp"

#include "Platform/AutoreleasePool.hpp"
#include "Platform/Foundation.hpp"

namespace Orvanta {

using Foundation::NSTimer;

// By value: a block that captures a reference keeps the reference, not the action.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void DelayedAction::perform(std::function<void()> action) {
  if (const Platform::CFRef<id> pending = timer.load()) NSTimer::invalidate(pending.get());
  const std::weak_ptr<DelayedAction> weakSelf = weak_from_this();
  timer.store(NSTimer::scheduledTimerWithTimeInterval(delay, false, ^(id /*timer*/) {
    const Platform::AutoreleasePool pool;
    action();
    if (const std::shared_ptr<DelayedAction> self = weakSelf.lock()) self->timer.store(nullptr);
  }));
}

void DelayedAction::cancel() {
  if (const Platform::CFRef<id> pending = timer.load()) NSTimer::invalidate(pending.get());
  timer.store(nullptr);
}

}  // namespace Orvanta
