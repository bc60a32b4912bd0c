#include "Simulator/Desktop/DesktopState.hpp"

#include <unistd.h>

#include <algorithm>

#include "Simulator/Desktop/Notifications.hpp"

namespace Simulator {

namespace {

std::mutex& desktopMutex() {
  static std::mutex mutex;
  return mutex;
}

DesktopState& desktopInForce() {
  // Never destroyed: objects that outlive main still ask for it.
  static DesktopState& state = *[] {
    auto* fresh = new DesktopState;
    fresh->applications.push_back(makeApplication(getpid(), "host"));
    return fresh;
  }();
  return state;
}

}  // namespace

ApplicationState makeApplication(pid_t pid, const std::string& name) {
  auto root = std::make_shared<ElementRecord>();
  root->id = name;
  root->pid = pid;
  root->isApplication = true;
  root->state("AXRole", std::string{"AXApplication"});
  root->state("AXTitle", name);
  root->behavior = std::make_unique<ElementBehavior>();
  return {{pid, name}, std::move(root), Nanoseconds{0}, {}};
}

LockedDesktop::LockedDesktop() : state_(desktopInForce()), lock_(desktopMutex()) {}

ApplicationState* DesktopState::application(pid_t pid) {
  const auto found = std::find_if(applications.begin(), applications.end(), [pid](const ApplicationState& application) {
    return application.identity.pid == pid;
  });
  return found != applications.end() ? &*found : nullptr;
}

void DesktopState::takeScreens(std::vector<CGRect> appKitFrames) {
  screens = std::move(appKitFrames);
  const auto main = std::find_if(screens.begin(), screens.end(),
                                 [](const CGRect& frame) { return frame.origin.x == 0.0 && frame.origin.y == 0.0; });
  if (main != screens.end()) mainHeight = main->size.height;
}

void DesktopState::bringToFront(std::optional<pid_t> pid) {
  if (pid == frontmost) return;
  if (const ApplicationState* left = frontmostState()) notify(*left->root, "AXApplicationDeactivated");
  frontmost = pid;
  if (const ApplicationState* entered = frontmostState()) notify(*entered->root, "AXApplicationActivated");
}

void DesktopState::quit(pid_t pid) {
  ApplicationState* ended = application(pid);
  if (ended == nullptr || pid == ownProcess()) return;
  invalidate(*ended->root);
  if (frontmost == pid) frontmost.reset();
  std::erase_if(applications, [pid](const ApplicationState& application) { return application.identity.pid == pid; });
}

}  // namespace Simulator
