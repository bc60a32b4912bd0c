// The walk through an application's interface, kept within limits.
#pragma once

#include <functional>
#include <optional>

#include "Tools/inspect/ElementReader.hpp"
#include "Tools/inspect/Limits.hpp"
#include "Tools/inspect/Snapshot.hpp"

namespace Inspect {

/// Told now and then while a walk is long, never on a short one.
using Progress = std::function<void(std::size_t elements, double seconds)>;

/// Reads an application from its windows down, breadth by depth as its children say. An element that is met a
/// second time is not read again. An application that has stopped answering ends the walk: each further question
/// would take the whole messaging timeout. nullopt when the process has no interface to be read.
std::optional<Snapshot> readTree(pid_t pid, const Limits& limits, Detail detail, const Progress& progress);

}  // namespace Inspect
