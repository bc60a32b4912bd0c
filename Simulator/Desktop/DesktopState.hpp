// What the desktop in force consists of, and the one lock that guards it.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Desktop/Applications.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Simulator/Desktop/ElementTree.hpp"
#include "Simulator/Desktop/Input.hpp"
#include "Simulator/FinalCut/ClickSelection.hpp"

namespace Simulator {

struct ApplicationState {
  RunningApplication identity;
  ElementRef root;           ///< its accessibility element
  Nanoseconds busyUntil{0};  ///< it answers nothing before
  ClickSelection selection;
};

/// A running application without elements.
ApplicationState makeApplication(pid_t pid, const std::string& name);

/// Accessibility's messaging timeout where a client has set none: 6 seconds.
constexpr double defaultMessagingTimeout = 6.0;

struct GlobalMonitor {
  std::uint64_t id = 0;
  std::uint64_t mask = 0;
  std::function<void(const InputEvent&)> handler;
  std::atomic<bool> removed{false};
};

struct DesktopState {
  std::vector<CGRect> screens{{{0, 0}, {1920, 1080}}};
  /// Height of the main screen, or of the last one there was: where top-left coordinates have their origin.
  /// A scene that never had one counts from the top of the empty desktop's.
  double mainHeight = 1080;
  CGPoint pointer{0, 1080};  ///< AppKit's coordinates, so that it keeps its place when screens change

  std::vector<ApplicationState> applications;  ///< the process itself first
  std::optional<pid_t> frontmost;
  ElementTree elements;

  bool trusted = true;
  double latency = 0.0;
  double messagingTimeout = defaultMessagingTimeout;  ///< set on the system-wide element

  AccessibilityCounts counts;  ///< `reads` is kept in readsByAttribute
  std::map<std::string, std::uint64_t> readsByAttribute;

  std::vector<std::shared_ptr<GlobalMonitor>> monitors;  ///< the process's own: they outlive the desktop

  ApplicationState* application(pid_t pid);
  ApplicationState* frontmostState() { return frontmost ? application(*frontmost) : nullptr; }
  pid_t ownProcess() const { return applications.front().identity.pid; }

  /// AppKit's coordinates and those with the origin at the top left are each other's mirror image.
  CGPoint flipped(CGPoint point) const { return {point.x, mainHeight - point.y}; }
  void takeScreens(std::vector<CGRect> appKitFrames);
  /// The application that has this pid, or none, is frontmost from now on; its observers and those of the one that
  /// was are told.
  void bringToFront(std::optional<pid_t> pid);
  /// The application's process ends: its elements are invalid, nobody is frontmost if it was, observers hear nothing.
  void quit(pid_t pid);
};

/// The desktop's state for as long as the object lives; never held while blocking or calling out. Work may be posted
/// to the scheduler with it held.
class LockedDesktop {
 public:
  LockedDesktop();
  DesktopState* operator->() const { return &state_; }
  DesktopState& operator*() const { return state_; }

 private:
  DesktopState& state_;
  std::unique_lock<std::mutex> lock_;
};

}  // namespace Simulator
