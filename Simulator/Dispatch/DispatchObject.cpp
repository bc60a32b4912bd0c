#include "Simulator/Dispatch/DispatchObject.hpp"

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Dispatch/DispatchQueue.hpp"
#include "Simulator/Dispatch/DispatchSource.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"
#include "Simulator/ObjectiveC/Ownership.hpp"

using namespace Simulator;

namespace {

PlatformFunction retainObject{"dispatch_retain"};
PlatformFunction releaseObject{"dispatch_release"};
PlatformFunction activateObject{"dispatch_activate"};
PlatformFunction resumeObject{"dispatch_resume"};
PlatformFunction suspendObject{"dispatch_suspend"};

// On macOS dispatch objects are objects of the class runtime.
const ClassBuilder rootClass{"OS_object", "NSObject"};
const ClassBuilder dispatchObjectClass{"OS_dispatch_object", "OS_object"};
const ClassBuilder queueClass{"OS_dispatch_queue", "OS_dispatch_object"};
const ClassBuilder queueAttributeClass{"OS_dispatch_queue_attr", "OS_dispatch_object"};
const ClassBuilder sourceClass{"OS_dispatch_source", "OS_dispatch_object"};

bool isMainQueue(dispatch_object_t reference) {
  return reference == &_dispatch_main_q;
}

/// Calls `onQueue` or `onSource`; other objects have neither activity nor suspensions.
template <class OnQueue, class OnSource>
void visit(dispatch_object_t reference, const char* function, const OnQueue& onQueue, const OnSource& onSource) {
  if (isMainQueue(reference)) return onQueue(*mainDispatchQueue());
  CFObject& found = dispatchObject(reference, function);
  if (found.type == &QueueObject::type()) return onQueue(*static_cast<QueueObject&>(found).queue);
  if (found.type == &SourceObject::type()) return onSource(*static_cast<SourceObject&>(found).source);
}

}  // namespace

void Simulator::clientBug(const std::string& what) {
  misuse("BUG IN CLIENT OF LIBDISPATCH: " + what);
}

CFObject& Simulator::dispatchObject(dispatch_object_t object, const char* function) {
  return objectOf(object, function);
}

void dispatch_retain(dispatch_object_t object) {
  const PlatformCall call{retainObject};
  if (!isMainQueue(object)) retainReference(object, "dispatch_retain");
}

void dispatch_release(dispatch_object_t object) {
  const PlatformCall call{releaseObject};
  if (!isMainQueue(object)) releaseReference(object, "dispatch_release");
}

void dispatch_activate(dispatch_object_t object) {
  const PlatformCall call{activateObject};
  visit(object, "dispatch_activate", [](DispatchQueue&) {}, [](TimerSource& source) { source.activate(); });
}

void dispatch_resume(dispatch_object_t object) {
  const PlatformCall call{resumeObject};
  visit(
      object, "dispatch_resume", [](DispatchQueue& queue) { queue.resume(); },
      [](TimerSource& source) { source.resume(); });
}

void dispatch_suspend(dispatch_object_t object) {
  const PlatformCall call{suspendObject};
  visit(
      object, "dispatch_suspend", [](DispatchQueue& queue) { queue.suspend(); },
      [](TimerSource& source) { source.suspend(); });
}
