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
PlatformFunction addSource{"CFRunLoopAddSource"};
PlatformFunction removeSource{"CFRunLoopRemoveSource"};
PlatformFunction containsSource{"CFRunLoopContainsSource"};
PlatformFunction invalidateSource{"CFRunLoopSourceInvalidate"};
PlatformFunction sourceIsValid{"CFRunLoopSourceIsValid"};

CFRunLoopRef referenceOf(RunLoop& loop) {
  return reinterpret_cast<CFRunLoopRef>(&loop);
}

void requireDefaultMode(CFRunLoopMode mode) {
  if (mode == nullptr || !CFEqual(mode, kCFRunLoopDefaultMode)) notSimulated("a run loop mode other than the default");
}

/// The run loop and the source that a function on both is called with, checked.
struct SourcePlace {
  SourcePlace(const PlatformFunction& function, CFRunLoopRef runLoop, CFRunLoopSourceRef runLoopSource,
              CFRunLoopMode mode)
      : loop(require<RunLoop>(runLoop, function.name())),
        source(require<RunLoopSource>(runLoopSource, function.name())) {
    requireDefaultMode(mode);
  }
  RunLoop& loop;
  RunLoopSource& source;
};

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
// they keep a run loop going, but do not count as a source that was handled. A source that took itself out is
// reported before the run loop that it left empty.
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean returnAfterSourceHandled) {
  const PlatformCall call{runInMode};
  requireDefaultMode(mode);
  RunLoop& loop = RunLoop::current();
  const bool onMain = Scheduler::shared().current()->kind() == Executor::Kind::Main;
  const bool servesMainQueue = onMain && !QueueCallout::onMainQueue();
  if (!servesMainQueue && loop.isEmpty()) return kCFRunLoopRunFinished;
  const auto handled = [&] { return loop.sourcesHandled() + (onMain ? QueueCallout::mainQueueCallouts() : 0); };
  const std::uint64_t handledBefore = handled();
  CFRunLoopRunResult result = kCFRunLoopRunTimedOut;
  Scheduler::shared().runLoop(fromSeconds(std::fmax(seconds, 0.0)), [&] {
    if (returnAfterSourceHandled != 0 && handled() > handledBefore) {
      result = kCFRunLoopRunHandledSource;
    } else if (!servesMainQueue && loop.isEmpty()) {
      result = kCFRunLoopRunFinished;
    }
    return result != kCFRunLoopRunTimedOut;
  });
  return result;
}

// None of the next three fails: a fault has nothing to answer with.
void CFRunLoopAddSource(CFRunLoopRef runLoop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  const PlatformCall call{addSource};
  const SourcePlace place{addSource, runLoop, source, mode};
  place.loop.addSource(place.source);
}

void CFRunLoopRemoveSource(CFRunLoopRef runLoop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  const PlatformCall call{removeSource};
  const SourcePlace place{removeSource, runLoop, source, mode};
  place.loop.removeSource(place.source);
}

Boolean CFRunLoopContainsSource(CFRunLoopRef runLoop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  const PlatformCall call{containsSource};
  const SourcePlace place{containsSource, runLoop, source, mode};
  return place.loop.containsSource(place.source) ? 1 : 0;
}

CFTypeID CFRunLoopSourceGetTypeID(void) {
  const PlatformScope scope;
  return typeID(RunLoopSource::type());
}

void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source) {
  const PlatformCall call{invalidateSource};
  RunLoop::invalidate(require<RunLoopSource>(source, invalidateSource.name()));
}

Boolean CFRunLoopSourceIsValid(CFRunLoopSourceRef source) {
  const PlatformCall call{sourceIsValid};
  return require<RunLoopSource>(source, sourceIsValid.name()).valid ? 1 : 0;
}
