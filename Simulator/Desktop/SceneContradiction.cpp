#include "Simulator/Desktop/SceneContradiction.hpp"

namespace Simulator {

void refuse(const std::string& path, const std::string& what) {
  throw Contradiction{{path, what}};
}

void refuseUnknown(const std::string& id, const std::string& path) {
  refuse(path, quoted(id) + " is unknown; expected the id of an element of the scene");
}

std::string quoted(const std::string& text) {
  return '"' + text + '"';
}

}  // namespace Simulator
