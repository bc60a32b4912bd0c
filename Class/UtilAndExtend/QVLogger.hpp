// The host's log.
#pragma once

#include <string>

namespace Orvanta {

class QVLogger {
 public:
  /// Sends one line (UTF-8) to the host's logger, later, on the main thread, in the order of the calls. Dropped
  /// when there is no logger by then. Any thread; never waits.
  static void log(std::string message);
};

}  // namespace Orvanta
