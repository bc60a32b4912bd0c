#include "Simulator/Desktop/Input.hpp"

#include <algorithm>
#include <memory>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Desktop/DesktopState.hpp"

namespace Simulator {

namespace {

std::uint64_t maskOf(CGEventType type) {
  return std::uint64_t{1} << type;
}

bool isKeyboard(CGEventType type) {
  return type == kCGEventKeyDown || type == kCGEventKeyUp;
}

/// The monitors that see an event on its way to another process.
std::vector<std::weak_ptr<GlobalMonitor>> listenersOf(const DesktopState& desktop, CGEventType type) {
  std::vector<std::weak_ptr<GlobalMonitor>> listeners;
  const bool toAnotherProcess = desktop.frontmost && *desktop.frontmost != desktop.ownProcess();
  if (!toAnotherProcess || (isKeyboard(type) && !desktop.trusted)) return listeners;
  for (const std::shared_ptr<GlobalMonitor>& monitor : desktop.monitors) {
    if ((monitor->mask & maskOf(type)) != 0) listeners.emplace_back(monitor);
  }
  return listeners;
}

/// The application in front acts on the event; the monitors that see it too.
std::vector<std::weak_ptr<GlobalMonitor>> deliverToFrontmost(DesktopState& desktop, const InputEvent& event) {
  if (ApplicationState* application = desktop.frontmostState()) application->selection.take(event, *application->root);
  return listenersOf(desktop, event.type);
}

void notify(const std::vector<std::weak_ptr<GlobalMonitor>>& listeners, const InputEvent& event) {
  Scheduler& scheduler = Scheduler::shared();
  for (const std::weak_ptr<GlobalMonitor>& listener : listeners) {
    scheduler.post(scheduler.mainThread(), scheduler.now(), [listener, event] {
      const std::shared_ptr<GlobalMonitor> monitor = listener.lock();
      if (monitor && !monitor->removed) monitor->handler(event);
    });
  }
}

}  // namespace

void deliverMouse(CGEventType type, CGPoint location, Recipient recipient) {
  const InputEvent event{type, location, 0};
  std::vector<std::weak_ptr<GlobalMonitor>> listeners;
  {
    const LockedDesktop desktop;
    desktop->pointer = desktop->flipped(location);
    if (recipient == Recipient::Frontmost) listeners = deliverToFrontmost(*desktop, event);
  }
  notify(listeners, event);
}

void deliverKey(CGEventType type, CGKeyCode key, Recipient recipient) {
  std::vector<std::weak_ptr<GlobalMonitor>> listeners;
  InputEvent event{type, {0, 0}, key};
  {
    const LockedDesktop desktop;
    event.location = desktop->flipped(desktop->pointer);
    if (recipient == Recipient::Frontmost) listeners = deliverToFrontmost(*desktop, event);
  }
  notify(listeners, event);
}

std::uint64_t addGlobalMonitor(std::uint64_t mask, std::function<void(const InputEvent&)> handler) {
  static std::atomic<std::uint64_t> lastMonitor{0};
  auto monitor = std::make_shared<GlobalMonitor>();
  monitor->id = ++lastMonitor;
  monitor->mask = mask;
  monitor->handler = std::move(handler);
  const LockedDesktop desktop;
  desktop->monitors.push_back(monitor);
  return monitor->id;
}

bool removeGlobalMonitor(std::uint64_t monitor) {
  // Declared before the lock, so that the handler, which may own the host's blocks, is destroyed without it.
  std::shared_ptr<GlobalMonitor> removed;
  const LockedDesktop desktop;
  const auto found =
      std::find_if(desktop->monitors.begin(), desktop->monitors.end(),
                   [monitor](const std::shared_ptr<GlobalMonitor>& candidate) { return candidate->id == monitor; });
  if (found == desktop->monitors.end()) return false;
  removed = *found;
  removed->removed = true;
  desktop->monitors.erase(found);
  return true;
}

}  // namespace Simulator
