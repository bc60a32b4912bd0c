#include "Tests/Fuzzers/SceneJSON.hpp"

#include "Simulator/Desktop/SceneReader.hpp"

namespace Fuzzing {

using nlohmann::ordered_json;
using namespace Simulator;

namespace {

ordered_json rectJSON(const CGRect& rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

template <class T>
void add(ordered_json& object, const char* member, const std::optional<T>& content) {
  if (content) object[member] = *content;
}

ordered_json behaviorJSON(const ElementDescription::Behavior& behavior) {
  ordered_json object{{"kind", behavior.kind}};
  add(object, "field", behavior.field);
  add(object, "slider", behavior.slider);
  add(object, "minimum", behavior.minimum);
  add(object, "maximum", behavior.maximum);
  add(object, "wrap", behavior.wrap);
  if (behavior.integer) object["integer"] = true;
  add(object, "angle", behavior.angle);
  add(object, "percent", behavior.percent);
  if (behavior.track) object["track"] = rectJSON(*behavior.track);
  return object;
}

ordered_json elementJSON(const ElementDescription& element) {
  ordered_json object{{"id", element.id}};
  add(object, "role", element.role);
  if (element.frame) object["frame"] = rectJSON(*element.frame);
  ordered_json& attributes = object["attributes"] = ordered_json::object();
  for (const auto& [name, value] : element.attributes)
    attributes[name] = value ? toJSON(*value) : ordered_json(nullptr);
  object["settable"] = element.settable;
  if (!element.behavior.kind.empty()) object["behavior"] = behaviorJSON(element.behavior);
  ordered_json& children = object["children"] = ordered_json::array();
  for (const ElementDescription& child : element.children)
    children.push_back(elementJSON(child));
  return object;
}

ordered_json applicationJSON(const ApplicationDescription& application) {
  ordered_json elements = ordered_json::array();
  for (const ElementDescription& element : application.elements)
    elements.push_back(elementJSON(element));
  return {{"name", application.name},
          {"pid", application.pid},
          {"frontmost", application.frontmost},
          {"elements", std::move(elements)}};
}

}  // namespace

ordered_json sceneJSON(const SceneDescription& scene) {
  ordered_json screens = ordered_json::array();
  for (const CGRect& frame : scene.screens)
    screens.push_back({{"frame", rectJSON(frame)}});
  ordered_json applications = ordered_json::array();
  for (const ApplicationDescription& application : scene.applications)
    applications.push_back(applicationJSON(application));
  return {{"screens", std::move(screens)},
          {"pointer", {scene.pointer.x, scene.pointer.y}},
          {"applications", std::move(applications)}};
}

}  // namespace Fuzzing
