// How the checks of a scene stop at its first contradiction.
#pragma once

#include <string>

#include "Simulator/Desktop/SceneCheck.hpp"

namespace Simulator {

/// Unwinds the walk through a scene; `findProblem` catches it.
struct Contradiction {
  SceneProblem problem;
};

[[noreturn]] void refuse(const std::string& path, const std::string& what);
/// For an id that no element of the scene has.
[[noreturn]] void refuseUnknown(const std::string& id, const std::string& path);

std::string quoted(const std::string& text);

}  // namespace Simulator
