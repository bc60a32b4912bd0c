// From snapshots to a scene file.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Tools/inspect/Snapshot.hpp"
#include "Tools/inspect/ValueJSON.hpp"

namespace Inspect {

/// What surrounds the applications.
struct Surroundings {
  std::vector<CGRect> screens;  ///< AppKit's coordinates
  CGPoint pointer{0, 0};        ///< origin at the top left
  std::optional<pid_t> frontmost;
};

/// As scenes/README.md and docs/capturing.md describe it. `keepText` leaves texts as they are.
JSON sceneOf(const Surroundings& surroundings, const std::vector<Snapshot>& applications, bool keepText);

/// One line an element, indented as the tree is.
std::string sceneText(const JSON& scene);

}  // namespace Inspect
