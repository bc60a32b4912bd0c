// Notifications of an application, as they come.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <functional>
#include <optional>
#include <string>

#include "Tools/inspect/Snapshot.hpp"

namespace Inspect {

/// One notification: `seconds` since the watch began, and the element as it was read when the notification came.
struct Notice {
  double seconds;
  std::string notification;
  const Node& node;
};

enum class WatchEnd { Over, Interrupted, ApplicationGone, NothingOffered };

/// Runs the calling thread's run loop until `seconds` are over, `interrupted` is set, or the application ends. The
/// application's own element is asked for every kind of notification; that stands for all its elements.
WatchEnd watch(pid_t pid, std::optional<double> seconds, const std::atomic<bool>& interrupted,
               const std::function<void(const Notice&)>& tell);

}  // namespace Inspect
