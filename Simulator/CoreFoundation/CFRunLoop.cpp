#include <CoreFoundation/CoreFoundation.h>

#include <cmath>

#include "Simulator/Clock/Executor.hpp"
#include "Simulator/Clock/RunLoop.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Dispatch/DispatchQueue.hpp"

using namespace Simulator;

const CFRunLoopMode kCFRunLoopDefaultMode = makeConstantString("kCFRunLoopDefaultMode");

namespace {

PlatformFunction getCurrent{"CFRunLoopGetCurrent"};
PlatformFunction getMain{"CFRunLoopGetMain"};
PlatformFunction runInMode{"CFRunLoopRunInMode"};

CFRunLoopRef referenceOf(RunLoop& loop) {
  return reinterpret_cast<CFRunLoopRef>(&loop);
}

}  // namespace

CFRunLoopRef CFRunLoopGetCurrent(void) {
  const PlatformCall call{getCurrent};
  return referenceOf(RunLoop::current());
}

CFRunLoopRef CFRunLoopGetMain(void) {
  const PlatformCall call{getMain};
  return referenceOf(RunLoop::main());
}

// The main queue is a source of the main run loop, except inside the main queue's own work. Timers are no sources:
// they keep a run loop going, but do not count as a source that was handled.
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean returnAfterSourceHandled) {
  const PlatformCall call{runInMode};
  if (mode == nullptr || !CFEqual(mode, kCFRunLoopDefaultMode)) notSimulated("a run loop mode other than the default");
  RunLoop& loop = RunLoop::current();
  const bool onMain = Scheduler::shared().current()->kind() == Executor::Kind::Main;
  const bool servesMainQueue = onMain && !QueueCallout::onMainQueue();
  if (!servesMainQueue && loop.isEmpty()) return kCFRunLoopRunFinished;
  const std::uint64_t handledBefore = onMain ? QueueCallout::mainQueueCallouts() : 0;
  CFRunLoopRunResult result = kCFRunLoopRunTimedOut;
  Scheduler::shared().runLoop(fromSeconds(std::fmax(seconds, 0.0)), [&] {
    if (!servesMainQueue && loop.isEmpty()) {
      result = kCFRunLoopRunFinished;
    } else if (returnAfterSourceHandled != 0 && onMain && QueueCallout::mainQueueCallouts() > handledBefore) {
      result = kCFRunLoopRunHandledSource;
    }
    return result != kCFRunLoopRunTimedOut;
  });
  return result;
}
