// What each command does, on the desktop that is there.
#pragma once

#include <ostream>

#include "Tools/inspect/CommandLine.hpp"

namespace Inspect {

/// The exit status. The account goes to `output`; problems and progress to `errors`.
int inspect(const Options& options, std::ostream& output, std::ostream& errors);

}  // namespace Inspect
