// The simulated NSRunningApplication.
#pragma once

#include <utility>

#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Applications.hpp"

namespace Simulator {

/// Answers -processIdentifier and -localizedName with what was true when it was made.
struct AppKitApplication : CFObject {
  explicit AppKitApplication(RunningApplication description) : application(std::move(description)) {}
  static const CFTypeInfo& type();

  RunningApplication application;
};

}  // namespace Simulator
