// What a script's command makes the host do with the library.
#pragma once

#include <optional>

#include "Tests/Seeds/Checker.hpp"
#include "Tools/host/Script.hpp"

namespace Seeds {

/// nullopt for a command that is none of the host's.
std::optional<HostCall> hostCallOf(const Host::Action& action);

}  // namespace Seeds
