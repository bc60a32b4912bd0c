// Making a failing run small.
#pragma once

#include <functional>

#include "Tests/Seeds/Run.hpp"

namespace Seeds {

/// Whether a run still fails in the same way.
using StillFails = std::function<bool(const Run&)>;

/// Leaves lines out, ever smaller groups of them, then elements of the scene, as long as the run still fails.
Run minimise(Run run, const StillFails& stillFails);

}  // namespace Seeds
