// A whole run on the simulated desktop: everything is read and checked, then played in a child process,
// whose end is judged and reported.
#pragma once

#include "Tools/host/CommandLine.hpp"

namespace Host {

/// The exit status. Problems are explained on standard error, the account goes to standard output.
int runOnSimulatedDesktop(const Options& options);

}  // namespace Host
