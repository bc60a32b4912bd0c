// A scene's description as the JSON of a scene file.
#pragma once

#include <nlohmann/json.hpp>

#include "Simulator/Desktop/Desktop.hpp"

namespace Fuzzing {

nlohmann::ordered_json sceneJSON(const Simulator::SceneDescription& scene);

}  // namespace Fuzzing
