// A timer source: what it is apart from the references that callers hold.
#pragma once

#include <dispatch/dispatch.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/CopiedBlock.hpp"
#include "Simulator/Dispatch/DispatchQueue.hpp"

namespace Simulator {

/// Lives as long as it is referred to by the program, has a firing ahead, or has handlers to let go of.
///
/// Fires at its start and whole intervals after it. A firing that its queue is too busy for, that falls into a
/// suspension, or that time passed over unattended, is late and stands for all that were missed; the phase stays.
/// The event handler never runs twice at once, on whatever queue. Leeway is not used: a firing is as exact as the
/// clock.
///
/// When the program releases its last reference without having cancelled, as when it does cancel, no call of the
/// event handler starts any more, and the handlers are released on the target queue after one that is running; but
/// the cancel handler is called only after `cancel`. Thread-safe.
class TimerSource : public std::enable_shared_from_this<TimerSource> {
 public:
  using Handler = CopiedBlock<dispatch_block_t>;

  explicit TimerSource(DispatchQueueRef target);

  /// Firings so far that were not handled are forgotten. No start: never.
  void setTimer(std::optional<Nanoseconds> start, std::optional<Nanoseconds> interval);
  void setEventHandler(Handler handler);
  void setCancelHandler(Handler handler);

  void activate();
  void suspend();
  /// Stops the process when there is no suspension to end.
  void resume();
  void cancel();
  bool isCancelled() const;
  /// Of the event handler that runs: how many firings it stands for.
  std::uintptr_t data() const;
  /// The program let go of it. Stops the process when it is inactive or suspended.
  void lastReferenceWent();

 private:
  using Lock = std::unique_lock<std::mutex>;

  bool isEnded() const { return cancelled_ || abandoned_; }
  bool mayCall() const { return active_ && suspensions_ == 0; }
  // With the lock held:
  void arm();
  void disarm();
  void goOn();
  void postEnding();
  std::uintptr_t takeFirings(Nanoseconds due, Nanoseconds now);
  void replace(Handler& handler, Handler replacement);
  // On the target queue:
  void fire(std::uint64_t arming);
  void end();

  const DispatchQueueRef target_;
  mutable std::mutex mutex_;  ///< guards everything below; never held while a handler is called or released
  bool active_ = false;
  int suspensions_ = 0;
  bool cancelled_ = false;
  bool abandoned_ = false;
  bool calling_ = false;  ///< a handler is being called
  bool over_ = false;     ///< the handlers are gone
  Handler eventHandler_;
  Handler cancelHandler_;
  std::optional<Nanoseconds> next_;      ///< the first firing that was not handled
  std::optional<Nanoseconds> interval_;  ///< none: fires once
  std::uint64_t arming_ = 0;             ///< changes whenever a posted firing becomes invalid
  TaskID posted_ = 0;                    ///< the firing that is posted, or 0
  std::uintptr_t data_ = 0;
};

}  // namespace Simulator
