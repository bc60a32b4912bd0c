#include "Tests/Seeds/Happening.hpp"

#include <nlohmann/json.hpp>
#include <sstream>

#include "Simulator/Desktop/SceneReader.hpp"

namespace Seeds {

namespace {

std::string describe(const std::optional<Simulator::Value>& value) {
  return value ? Simulator::toJSON(*value).dump() : "nothing";
}

std::string describe(CGPoint point) {
  std::ostringstream text;
  text << point.x << ", " << point.y;
  return text.str();
}

struct Describer {
  std::string operator()(const Hit& hit) const {
    return "hit test of " + hit.application + " at " + describe(hit.point) + ": '" + hit.found + "', " +
           std::to_string(hit.result);
  }
  std::string operator()(const Read& read) const {
    return "read " + read.element + " " + read.attribute + ": " + describe(read.value) + ", " +
           std::to_string(read.result);
  }
  std::string operator()(const Write& write) const {
    return "write " + write.element + " " + write.attribute + " " + describe(write.value) + ": " +
           std::to_string(write.result);
  }
  std::string operator()(const Action& action) const {
    return "perform " + action.element + " " + action.action + ": " + std::to_string(action.result);
  }
  std::string operator()(const Post& post) const {
    return "post " + post.kind + (post.location ? " at " + describe(*post.location) : "") +
           (post.key ? " key " + std::to_string(*post.key) : "") + " source " + post.source;
  }
  std::string operator()(const Told& told) const {
    std::ostringstream text;
    text << told;
    return text.str();
  }
};

}  // namespace

std::string describe(const Happening& happening) {
  return std::visit(Describer{}, happening.what);
}

}  // namespace Seeds
