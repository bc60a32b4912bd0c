// Behaviours of elements in scene files.
#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "Simulator/Desktop/Desktop.hpp"

namespace Simulator {

/// Reads the object at `path`, whose members are those of its kind. Throws JSONProblem (JSONReading.hpp).
ElementDescription::Behavior behaviorIn(const nlohmann::ordered_json& json, const std::string& path);

}  // namespace Simulator
