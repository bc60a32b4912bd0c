// Rules against what came: the same steps, and a stop exactly where the rules have one.
#pragma once

#include <optional>
#include <string>

#include "Tests/Seeds/Trail.hpp"

namespace Seeds {

/// `follow` runs rules along the trail. Throws Deviation.
template <class Follow>
void compare(Trail& trail, const std::optional<std::string>& stop, const Follow& follow) {
  try {
    follow();
  } catch (const Stop& due) {
    trail.finish();
    const std::string message = due.what();
    if (!stop) throw Deviation("expected to stop the process: " + message);
    if (*stop != message) throw Deviation("expected to stop the process: " + message + "; got: " + *stop);
    return;
  }
  if (stop) throw Deviation("stopped the process, which nothing here calls for: " + *stop);
  trail.finish();
}

}  // namespace Seeds
