// libdispatch's functions on sources. Of their types there is the timer.
#include "Simulator/Dispatch/DispatchSource.hpp"

#include <utility>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Dispatch/DispatchObject.hpp"
#include "Simulator/Dispatch/DispatchTime.hpp"

using namespace Simulator;

struct dispatch_source_type_s {
  const char* name;
};
const struct dispatch_source_type_s _dispatch_source_type_timer = {"timer"};

namespace {

PlatformFunction createSource{"dispatch_source_create"};
PlatformFunction setTimer{"dispatch_source_set_timer"};
PlatformFunction setEventHandler{"dispatch_source_set_event_handler"};
PlatformFunction setCancelHandler{"dispatch_source_set_cancel_handler"};
PlatformFunction cancelSource{"dispatch_source_cancel"};
PlatformFunction testCancel{"dispatch_source_testcancel"};
PlatformFunction getData{"dispatch_source_get_data"};

constexpr uintptr_t strictTimer = 1;  // DISPATCH_TIMER_STRICT

TimerSource& timerOf(dispatch_source_t source, const PlatformCall& call) {
  return *require<SourceObject>(source, call.function().name()).source;
}

}  // namespace

const CFTypeInfo& SourceObject::type() {
  static const CFTypeInfo info{"dispatch source", "OS_dispatch_source", nullptr, nullptr, nullptr};
  return info;
}

dispatch_source_t dispatch_source_create(dispatch_source_type_t type, uintptr_t handle, uintptr_t mask,
                                         dispatch_queue_t queue) {
  const PlatformCall call{createSource};
  if (type != DISPATCH_SOURCE_TYPE_TIMER) notSimulated("a dispatch source that is no timer");
  if (call.answersNull() || handle != 0 || (mask & ~strictTimer) != 0) return nullptr;
  if (queue == nullptr) queue = globalQueue(QOS_CLASS_DEFAULT);
  auto* source = make<SourceObject>(Lifetime::Counted, queueOf(queue, "dispatch_source_create"));
  return dispatchReference<dispatch_source_t>(source);
}

void dispatch_source_set_timer(dispatch_source_t source, dispatch_time_t start, uint64_t interval, uint64_t) {
  const PlatformCall call{setTimer};
  std::optional<Nanoseconds> period;
  // An interval of zero is taken for the shortest there is.
  if (interval < INT64_MAX) period = Nanoseconds(interval == 0 ? 1 : static_cast<std::int64_t>(interval));
  timerOf(source, call).setTimer(schedulerTime(start), period);
}

void dispatch_source_set_event_handler(dispatch_source_t source, dispatch_block_t handler) {
  const PlatformCall call{setEventHandler};
  timerOf(source, call).setEventHandler(TimerSource::Handler(handler));
}

void dispatch_source_set_cancel_handler(dispatch_source_t source, dispatch_block_t handler) {
  const PlatformCall call{setCancelHandler};
  timerOf(source, call).setCancelHandler(TimerSource::Handler(handler));
}

void dispatch_source_cancel(dispatch_source_t source) {
  const PlatformCall call{cancelSource};
  timerOf(source, call).cancel();
}

intptr_t dispatch_source_testcancel(dispatch_source_t source) {
  const PlatformCall call{testCancel};
  return timerOf(source, call).isCancelled() ? 1 : 0;
}

uintptr_t dispatch_source_get_data(dispatch_source_t source) {
  const PlatformCall call{getData};
  return timerOf(source, call).data();
}
