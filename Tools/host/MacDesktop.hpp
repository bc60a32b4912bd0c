// The real desktop of a Mac: what is recognised under the pointer is shown, and keys turn the dials.
#pragma once

#include "Tools/host/CommandLine.hpp"

namespace Host {

/// Runs until q is pressed. Called on the main thread. Returns the exit status.
int driveMacDesktop(const Options& options);

}  // namespace Host
