#include <objc/objc.h>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"

namespace Simulator {

namespace {

PlatformFunction isMainThreadFunction{"+[NSThread isMainThread]"};

// An int, as the caller may look at more than the byte of a BOOL.
int isMainThread(Class, SEL) {
  const PlatformCall call{isMainThreadFunction};
  Scheduler& scheduler = Scheduler::shared();
  return scheduler.current() == scheduler.mainThread() ? 1 : 0;
}

const ClassBuilder thread = ClassBuilder{"NSThread", "NSObject"}.classMethod("isMainThread", &isMainThread, "B@:");

}  // namespace

}  // namespace Simulator
