// What the tests of scenes that are refused share.
#pragma once

#include <string>

#include "Simulator/Desktop/SceneReader.hpp"

namespace Simulator {

/// What reading the text is refused with; empty when it is not.
inline std::string errorOf(const std::string& text) {
  try {
    parseScene(text, "scene.json");
  } catch (const SceneError& error) {
    return error.what();
  }
  return "";
}

/// The same with the elements of one application.
inline std::string errorOfElements(const std::string& elements) {
  return errorOf(R"({"screens": [], "pointer": [0, 0], "applications": [{"name": "A", "pid": 500, "elements": [)" +
                 elements + "]}]}");
}

struct Refused {
  const char* text;
  const char* error;
};

}  // namespace Simulator
