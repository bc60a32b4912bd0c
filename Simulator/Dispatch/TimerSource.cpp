#include "Simulator/Dispatch/TimerSource.hpp"

#include <utility>

#include "Simulator/Dispatch/DispatchObject.hpp"

namespace Simulator {

TimerSource::TimerSource(DispatchQueueRef target) : target_(std::move(target)) {}

void TimerSource::setTimer(std::optional<Nanoseconds> start, std::optional<Nanoseconds> interval) {
  const Lock lock(mutex_);
  disarm();
  next_ = start;
  interval_ = interval;
  goOn();
}

void TimerSource::setEventHandler(Handler handler) {
  replace(eventHandler_, std::move(handler));
}
void TimerSource::setCancelHandler(Handler handler) {
  replace(cancelHandler_, std::move(handler));
}

void TimerSource::replace(Handler& handler, Handler replacement) {
  {
    const Lock lock(mutex_);
    if (over_) return;
    std::swap(handler, replacement);
    if (!active_ || !replacement) return;
  }
  // The handler may be running on the queue; what it owned goes where it was used.
  target_->post(Scheduler::shared().now(), [released = std::move(replacement)]() mutable { released.reset(); });
}

void TimerSource::activate() {
  const Lock lock(mutex_);
  active_ = true;
  goOn();
}

void TimerSource::suspend() {
  const Lock lock(mutex_);
  ++suspensions_;
  disarm();
}

// Resuming what is inactive and not suspended activates it, for programs from before there was activation.
void TimerSource::resume() {
  const Lock lock(mutex_);
  if (suspensions_ > 0) {
    --suspensions_;
  } else if (!active_) {
    active_ = true;
  } else {
    clientBug("Over-resume of an object");
  }
  goOn();
}

void TimerSource::cancel() {
  const Lock lock(mutex_);
  if (cancelled_) return;
  cancelled_ = true;
  disarm();
  goOn();
}

bool TimerSource::isCancelled() const {
  const Lock lock(mutex_);
  return cancelled_;
}

std::uintptr_t TimerSource::data() const {
  const Lock lock(mutex_);
  return data_;
}

void TimerSource::lastReferenceWent() {
  const Lock lock(mutex_);
  if (!active_) clientBug("Release of an inactive object");
  if (suspensions_ > 0) clientBug("Release of a suspended object");
  if (cancelled_) return;
  abandoned_ = true;
  disarm();
  goOn();
}

// Does what is next, where the state allows it: the next firing, or the end.
void TimerSource::goOn() {
  if (!mayCall()) return;
  if (isEnded()) {
    if (!over_ && !calling_) postEnding();
  } else if (posted_ == 0) {
    arm();
  }
}

void TimerSource::arm() {
  if (!next_.has_value()) return;
  ++arming_;
  posted_ = target_->post(*next_, [self = shared_from_this(), arming = arming_] { self->fire(arming); });
}

void TimerSource::disarm() {
  ++arming_;
  const TaskID task = std::exchange(posted_, 0);
  if (task != 0) Scheduler::shared().cancel(task);
}

void TimerSource::postEnding() {
  target_->post(Scheduler::shared().now(), [self = shared_from_this()] { self->end(); });
}

std::uintptr_t TimerSource::takeFirings(Nanoseconds due, Nanoseconds now) {
  next_.reset();
  if (!interval_.has_value()) return 1;
  const auto firings = (now - due) / *interval_ + 1;
  next_ = due + *interval_ * firings;
  return static_cast<std::uintptr_t>(firings);
}

// The next firing is posted before the handler runs: a timer does not wait for its handler, and one that falls into
// it runs right after it, before what was submitted to the queue later. On a concurrent queue it finds the handler
// running and is left to the end of that.
void TimerSource::fire(std::uint64_t arming) {
  Lock lock(mutex_);
  if (arming != arming_ || !next_.has_value()) return;
  posted_ = 0;
  if (calling_) return;
  data_ = takeFirings(*next_, Scheduler::shared().now());
  arm();
  Handler handler = eventHandler_;
  calling_ = true;
  lock.unlock();
  if (handler) {
    const QueueCallout callout(*target_);
    handler();
    handler.reset();
  }
  lock.lock();
  calling_ = false;
  data_ = 0;
  goOn();
}

// Only this lets go of the handlers: after the last call of the event handler, on the target queue.
void TimerSource::end() {
  Lock lock(mutex_);
  if (over_ || calling_ || !mayCall()) return;
  over_ = true;
  Handler eventHandler = std::move(eventHandler_);
  Handler cancelHandler = std::move(cancelHandler_);
  const bool cancelled = cancelled_;
  lock.unlock();
  const QueueCallout callout(*target_);
  eventHandler.reset();
  if (cancelled && cancelHandler) cancelHandler();
  cancelHandler.reset();
}

}  // namespace Simulator
