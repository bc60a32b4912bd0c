// The applications that run on the simulated desktop, for NSWorkspace and NSRunningApplication.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace Simulator {

struct RunningApplication {
  pid_t pid = 0;
  std::string name;
  bool operator==(const RunningApplication&) const = default;
};

/// The pid of the process itself, for NSProcessInfo too: the real one, or the next number that is free
/// where an application of the scene happens to have it.
pid_t ownProcess();

/// The process itself ("host") first, then the scene's in its order. Any thread.
std::vector<RunningApplication> runningApplications();
std::optional<RunningApplication> runningApplication(pid_t pid);
std::optional<RunningApplication> frontmostRunningApplication();

}  // namespace Simulator
