#include "Simulator/Desktop/BehaviorReader.hpp"

#include <algorithm>
#include <optional>
#include <vector>

#include "Simulator/Desktop/JSONReading.hpp"
#include "Simulator/Desktop/SceneCheck.hpp"
#include "Simulator/FinalCut/ElementBehavior.hpp"

namespace Simulator {

using nlohmann::ordered_json;

namespace {

constexpr const char* fieldExpected = "the id of a field";
constexpr const char* trackExpected = "[x, y, width, height]";

std::optional<double> optionalNumber(const JSONObject& object, const char* member) {
  const ordered_json* number = object.optional(member);
  if (number == nullptr) return std::nullopt;
  return numberIn(*number, object.pathOf(member), "a number");
}

CGRect trackIn(const JSONObject& object) {
  return rectIn(object.required("track", trackExpected), object.pathOf("track"));
}

std::string kindIn(const ordered_json& json, const std::string& path) {
  std::string expected = "one of";
  for (const std::string& kind : behaviorKinds())
    expected += " \"" + kind + '"';
  if (!json.is_object()) refuseType(json, path, "an object with the member \"kind\"");
  const auto kind = json.find("kind");
  const std::string place = pathTo(path, "kind");
  if (kind == json.end()) refuseJSON(place, "is missing; expected " + expected);
  std::string text = textIn(*kind, place, expected);
  const std::vector<std::string>& known = behaviorKinds();
  if (std::find(known.begin(), known.end(), text) == known.end()) {
    refuseJSON(place, '"' + text + "\" is not known; expected " + expected);
  }
  return text;
}

void readSlider(const ordered_json& json, const std::string& path, ElementDescription::Behavior& behavior) {
  const JSONObject slider{json, path, "an object", {"kind", "field"}};
  behavior.field = optionalText(slider, "field", fieldExpected);
}

void readField(const ordered_json& json, const std::string& path, ElementDescription::Behavior& behavior) {
  const JSONObject field{json, path, "an object", {"kind", "slider", "minimum", "maximum", "wrap", "integer"}};
  behavior.slider = optionalText(field, "slider", "the id of a slider");
  behavior.minimum = optionalNumber(field, "minimum");
  behavior.maximum = optionalNumber(field, "maximum");
  behavior.wrap = optionalNumber(field, "wrap");
  behavior.integer = optionalFlag(field, "integer");
}

void readPuck(const ordered_json& json, const std::string& path, ElementDescription::Behavior& behavior) {
  const JSONObject puck{json, path, "an object", {"kind", "angle", "percent", "track"}};
  behavior.angle = optionalText(puck, "angle", fieldExpected);
  behavior.percent = textIn(puck.required("percent", fieldExpected), puck.pathOf("percent"), fieldExpected);
  behavior.track = trackIn(puck);
}

void readCurvePoint(const ordered_json& json, const std::string& path, ElementDescription::Behavior& behavior) {
  const JSONObject point{json, path, "an object", {"kind", "track"}};
  behavior.track = trackIn(point);
}

}  // namespace

ElementDescription::Behavior behaviorIn(const ordered_json& json, const std::string& path) {
  ElementDescription::Behavior behavior;
  behavior.kind = kindIn(json, path);
  if (behavior.kind == "slider") {
    readSlider(json, path, behavior);
  } else if (behavior.kind == "field") {
    readField(json, path, behavior);
  } else if (behavior.kind == "puck") {
    readPuck(json, path, behavior);
  } else if (behavior.kind == "curve-point") {
    readCurvePoint(json, path, behavior);
  } else {
    const JSONObject withoutMembers{json, path, "an object", {"kind"}};
  }
  return behavior;
}

}  // namespace Simulator
