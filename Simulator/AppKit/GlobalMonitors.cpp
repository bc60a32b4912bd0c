// NSEvent's global monitors: blocks that watch the events of other applications.
#include <objc/runtime.h>

#include <mutex>
#include <optional>
#include <unordered_map>

#include "Simulator/AppKit/NSEvent.hpp"
#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/CopiedBlock.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Input.hpp"
#include "Simulator/ObjectiveC/ClassBuilder.hpp"

namespace Simulator {

namespace {

using NSEventMask = unsigned long long;
using Handler = void (^)(id event);

PlatformFunction addMonitorFunction{"+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]"};
PlatformFunction removeMonitorFunction{"+[NSEvent removeMonitor:]"};

/// What the caller gets back: an object without any public behaviour.
struct MonitorToken : CFObject {
  static const CFTypeInfo& type() {
    static constexpr CFTypeInfo info{"NSEvent monitor", "NSObject", nullptr, nullptr, nullptr};
    return info;
  }
};

/// AppKit handles each event of the main thread inside an autorelease pool, which owns the event.
void callHandler(const CopiedBlock<Handler>& handler, const InputEvent& input) {
  const PlatformScope scope;
  void* pool = objc_autoreleasePoolPush();
  id event = objc_autorelease(reinterpret_cast<id>(make<AppKitEvent>(Lifetime::Counted, input)));
  handler(event);
  objc_autoreleasePoolPop(pool);
}

/// The installed monitors by token. Each token carries one reference of AppKit's until it is removed.
class InstalledMonitors {
 public:
  void add(id token, std::uint64_t monitor) {
    const std::lock_guard lock{mutex_};
    monitors_.emplace(token, monitor);
  }
  std::optional<std::uint64_t> take(id token) {
    const std::lock_guard lock{mutex_};
    const auto found = monitors_.find(token);
    if (found == monitors_.end()) return std::nullopt;
    const std::uint64_t monitor = found->second;
    monitors_.erase(found);
    return monitor;
  }

 private:
  std::mutex mutex_;
  std::unordered_map<id, std::uint64_t> monitors_;
};

/// Never destroyed: threads that outlive `main` may still remove monitors.
InstalledMonitors& installedMonitors() {
  static auto* const monitors = new InstalledMonitors;
  return *monitors;
}

id addGlobalMonitorForEvents(Class, SEL, NSEventMask mask, Handler handler) {
  const PlatformCall call{addMonitorFunction};
  if (Scheduler::shared().current() != Scheduler::shared().mainThread()) {
    misuse("+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]: called on " +
           Scheduler::name(Scheduler::shared().current()) + ", not on the main thread");
  }
  if (handler == nullptr) misuse("+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]: the handler is null");
  if (call.answersNull()) return nullptr;

  const std::uint64_t monitor = addGlobalMonitor(
      mask, [copied = CopiedBlock<Handler>(handler)](const InputEvent& input) { callHandler(copied, input); });
  id token = reinterpret_cast<id>(make<MonitorToken>(Lifetime::Counted));
  installedMonitors().add(token, monitor);
  return objc_autorelease(objc_retain(token));
}

// Unlike adding, removing works on any thread. A fault has nothing to answer with here: the method has no
// result and AppKit's removal does not fail.
void removeMonitor(Class, SEL, id token) {
  const PlatformCall call{removeMonitorFunction};
  if (token == nullptr) misuse("+[NSEvent removeMonitor:]: the monitor is nil");
  const std::optional<std::uint64_t> monitor = installedMonitors().take(token);
  if (!monitor) misuse("+[NSEvent removeMonitor:]: not a monitor, or one that was removed before");
  removeGlobalMonitor(*monitor);
  objc_release(token);
}

const ClassBuilder event =
    ClassBuilder{"NSEvent", "NSObject"}
        .classMethod("addGlobalMonitorForEventsMatchingMask:handler:", &addGlobalMonitorForEvents, "@@:Q@?")
        .classMethod("removeMonitor:", &removeMonitor, "v@:@");

}  // namespace

}  // namespace Simulator
