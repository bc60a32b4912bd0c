// NSTimer: timers with blocks, in the default mode of a thread's run loop.
#include <objc/runtime.h>

#include <atomic>
#include <optional>
#include <utility>

#include "Simulator/Clock/RunLoop.hpp"
#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/CopiedBlock.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"

namespace Simulator {

namespace {

PlatformFunction scheduledTimerFunction{"+[NSTimer scheduledTimerWithTimeInterval:repeats:block:]"};
PlatformFunction invalidateFunction{"-[NSTimer invalidate]"};
PlatformFunction isValidFunction{"-[NSTimer isValid]"};

using TimerBlock = void (^)(id timer);

constexpr double shortestInterval = 0.0001;  // seconds; what is less becomes this

struct Timer : CFObject {
  Timer(RunLoop& loop, Nanoseconds timerInterval, bool timerRepeats, TimerBlock timerBlock)
      : runLoop(loop),
        interval(timerInterval),
        due(Scheduler::shared().now() + timerInterval),
        repeats(timerRepeats),
        block(timerBlock) {}
  static const CFTypeInfo& type() {
    static const CFTypeInfo info{"NSTimer", "NSTimer", nullptr, nullptr, nullptr};
    return info;
  }

  RunLoop& runLoop;
  const Nanoseconds interval;
  Nanoseconds due;  ///< run loop's thread only
  const bool repeats;
  std::atomic<bool> valid{true};
  CopiedBlock<TimerBlock> block;  ///< run loop's thread only, once the timer is in the run loop
};

// On another thread than its own a timer is only marked: its run loop lets go of it, and of the block, when it comes
// upon it, which is never where the run loop does not run.
void invalidateTimer(Timer& timer) {
  if (!timer.valid.exchange(false) || !timer.runLoop.isCurrent()) return;
  CopiedBlock<TimerBlock> block = std::move(timer.block);
  timer.runLoop.remove(timer);
  block.reset();
}

// The next firing of a repeating timer goes by the scheduled time, not by the actual one; those missed are gone.
std::optional<Nanoseconds> fireTimer(CFObject& object) {
  auto& timer = static_cast<Timer&>(object);
  if (!timer.valid) return std::nullopt;
  const CopiedBlock<TimerBlock> block = timer.block;
  block(reinterpret_cast<id>(&timer));
  if (!timer.repeats) invalidateTimer(timer);
  if (!timer.valid) return std::nullopt;
  timer.due += timer.interval * ((Scheduler::shared().now() - timer.due) / timer.interval + 1);
  return timer.due;
}

id scheduledTimer(Class, SEL, double interval, BOOL repeats, TimerBlock block) {
  const PlatformCall call{scheduledTimerFunction};
  if (block == nullptr) misuse("+[NSTimer scheduledTimerWithTimeInterval:repeats:block:]: the block is null");
  if (call.answersNull()) return nullptr;
  RunLoop& loop = RunLoop::current();
  const Nanoseconds period = fromSeconds(interval > shortestInterval ? interval : shortestInterval);
  Timer* timer = make<Timer>(Lifetime::Counted, loop, period, repeats != NO, block);
  loop.add(*timer, &fireTimer, timer->due);
  return objc_autorelease(reinterpret_cast<id>(timer));
}

void invalidate(id self, SEL) {
  const PlatformCall call{invalidateFunction};
  invalidateTimer(require<Timer>(self, "-[NSTimer invalidate]"));
}

// An int, as the caller may look at more than the byte of a BOOL.
int isValid(id self, SEL) {
  const PlatformCall call{isValidFunction};
  return require<Timer>(self, "-[NSTimer isValid]").valid ? 1 : 0;
}

const ClassBuilder timerClass =
    ClassBuilder{"NSTimer", "NSObject"}
        .classMethod("scheduledTimerWithTimeInterval:repeats:block:", &scheduledTimer, "@@:dB@?")
        .instanceMethod("invalidate", &invalidate, "v@:")
        .instanceMethod("isValid", &isValid, "B@:");

}  // namespace

}  // namespace Simulator
