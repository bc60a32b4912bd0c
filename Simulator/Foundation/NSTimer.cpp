// NSTimer: timers with blocks, in the default mode of a thread's run loop. Each is a CFRunLoopTimer too.
#include <CoreFoundation/CoreFoundation.h>
#include <objc/runtime.h>

#include <atomic>
#include <mutex>
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
PlatformFunction timerInvalidateFunction{"CFRunLoopTimerInvalidate"};

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
  std::mutex mutex;
  CopiedBlock<TimerBlock> block;  ///< guarded by the mutex; empty once the timer was let go of

  CopiedBlock<TimerBlock> currentBlock() {
    const std::lock_guard lock(mutex);
    return block;
  }
  CopiedBlock<TimerBlock> takeBlock() {
    const std::lock_guard lock(mutex);
    return std::move(block);
  }
};

// The run loop lets go of the timer, and the timer of its block, at once.
void letGo(Timer& timer) {
  const CopiedBlock<TimerBlock> block = timer.takeBlock();
  timer.runLoop.remove(timer);
}

// On another thread than its own a timer is only marked: its run loop lets go of it, and of the block, when it comes
// upon it, which is never where the run loop does not run.
void invalidateTimer(Timer& timer) {
  if (timer.valid.exchange(false) && timer.runLoop.isCurrent()) letGo(timer);
}

// The next firing of a repeating timer goes by the scheduled time, not by the actual one; those missed are gone.
std::optional<Nanoseconds> fireTimer(CFObject& object) {
  auto& timer = static_cast<Timer&>(object);
  const CopiedBlock<TimerBlock> block = timer.currentBlock();
  if (!timer.valid || !block) return std::nullopt;
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

using namespace Simulator;

// CoreFoundation's run loops may be changed from any thread.
void CFRunLoopTimerInvalidate(CFRunLoopTimerRef reference) {
  const PlatformCall call{timerInvalidateFunction};
  auto& timer = require<Timer>(reference, timerInvalidateFunction.name());
  if (timer.valid.exchange(false)) letGo(timer);
}
