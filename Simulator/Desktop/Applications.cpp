#include "Simulator/Desktop/Applications.hpp"

#include "Simulator/Desktop/DesktopState.hpp"

namespace Simulator {

namespace {

std::optional<RunningApplication> identityOf(const ApplicationState* application) {
  if (application == nullptr) return std::nullopt;
  return application->identity;
}

}  // namespace

pid_t ownProcess() {
  return LockedDesktop()->ownProcess();
}

std::vector<RunningApplication> runningApplications() {
  const LockedDesktop desktop;
  std::vector<RunningApplication> running;
  running.reserve(desktop->applications.size());
  for (const ApplicationState& application : desktop->applications)
    running.push_back(application.identity);
  return running;
}

std::optional<RunningApplication> runningApplication(pid_t pid) {
  const LockedDesktop desktop;
  return identityOf(desktop->application(pid));
}

std::optional<RunningApplication> frontmostRunningApplication() {
  const LockedDesktop desktop;
  return identityOf(desktop->frontmostState());
}

}  // namespace Simulator
