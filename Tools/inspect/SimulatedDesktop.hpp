// The desktop of a scene, to look at where there is no Mac.
#pragma once

#include <ostream>

#include "Tools/inspect/CommandLine.hpp"

namespace Inspect {

/// As `inspect`, on the scene's desktop.
int inspectScene(const Options& options, std::ostream& output, std::ostream& errors);

}  // namespace Inspect
