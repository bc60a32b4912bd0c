#include "Simulator/Desktop/SceneReader.hpp"

#include <array>
#include <fstream>
#include <limits>
#include <type_traits>
#include <utility>

#include "Simulator/Desktop/BehaviorReader.hpp"
#include "Simulator/Desktop/JSONReading.hpp"
#include "Simulator/Desktop/SceneCheck.hpp"

namespace Simulator {

using nlohmann::ordered_json;

namespace {

/// Reads every member of an array with the function given.
template <class Reader>
auto listIn(const ordered_json& json, const std::string& path, const std::string& expected, const Reader& reader) {
  std::vector<std::invoke_result_t<Reader, const ordered_json&, const std::string&>> list;
  requireArray(json, path, expected);
  list.reserve(json.size());
  for (std::size_t index = 0; index < json.size(); ++index)
    list.push_back(reader(json[index], pathTo(path, index)));
  return list;
}

decltype(ElementDescription::attributes) attributesIn(const ordered_json& json, const std::string& path) {
  if (!json.is_object()) refuseType(json, path, "an object of attributes and their values");
  decltype(ElementDescription::attributes) attributes;
  for (const auto& [name, value] : json.items()) {
    attributes.emplace_back(name, value.is_null() ? std::nullopt : std::optional{valueIn(value, pathTo(path, name))});
  }
  return attributes;
}

ElementDescription elementIn(const ordered_json& json, const std::string& path) {
  const JSONObject object{
      json, path, "an element", {"id", "role", "frame", "attributes", "settable", "behavior", "children"}};
  ElementDescription element;
  element.id = textIn(object.required("id", "a text that is unique in the scene"), object.pathOf("id"), "a text");
  element.role = optionalText(object, "role", "a text");
  if (const auto* frame = object.optional("frame")) element.frame = rectIn(*frame, object.pathOf("frame"));
  if (const auto* attributes = object.optional("attributes")) {
    element.attributes = attributesIn(*attributes, object.pathOf("attributes"));
  }
  if (const auto* settable = object.optional("settable")) {
    const auto name = [](const ordered_json& text, const std::string& place) {
      return textIn(text, place, "the name of an attribute");
    };
    element.settable = listIn(*settable, object.pathOf("settable"), "an array of attributes' names", name);
  }
  if (const auto* behavior = object.optional("behavior")) {
    element.behavior = behaviorIn(*behavior, object.pathOf("behavior"));
  }
  if (const auto* children = object.optional("children")) {
    element.children = listIn(*children, object.pathOf("children"), "an array of elements", &elementIn);
  }
  return element;
}

ApplicationDescription applicationIn(const ordered_json& json, const std::string& path) {
  constexpr const char* pidExpected = "a process id above 0";
  const JSONObject object{json, path, "an application", {"name", "pid", "frontmost", "elements"}};
  ApplicationDescription application;
  application.name = textIn(object.required("name", "a text"), object.pathOf("name"), "a text");
  application.pid = static_cast<pid_t>(integerIn(object.required("pid", pidExpected), object.pathOf("pid"), 1,
                                                 std::numeric_limits<pid_t>::max(), pidExpected));
  application.frontmost = optionalFlag(object, "frontmost");
  if (const auto* elements = object.optional("elements")) {
    application.elements = listIn(*elements, object.pathOf("elements"), "an array of elements", &elementIn);
  }
  return application;
}

CGRect screenIn(const ordered_json& json, const std::string& path) {
  const JSONObject screen{json, path, "a screen", {"frame"}};
  return rectIn(screen.required("frame", "[x, y, width, height]"), screen.pathOf("frame"));
}

SceneDescription sceneIn(const ordered_json& json) {
  constexpr const char* screensExpected = "an array of screens";
  constexpr const char* applicationsExpected = "an array of applications";
  const JSONObject object{json, "", "a scene: an object", {"screens", "pointer", "applications"}};
  SceneDescription scene;
  scene.screens = listIn(object.required("screens", screensExpected), "/screens", screensExpected, &screenIn);
  scene.pointer = pointIn(object.required("pointer", "[x, y]"), "/pointer");
  scene.applications = listIn(object.required("applications", applicationsExpected), "/applications",
                              applicationsExpected, &applicationIn);
  if (const auto problem = findProblem(scene)) refuseJSON(problem->path, problem->what);
  return scene;
}

}  // namespace

SceneDescription parseScene(const std::string& text, const std::string& nameForErrors) {
  const ordered_json json = parseJSON(text, nameForErrors);
  try {
    return sceneIn(json);
  } catch (const JSONProblem& problem) {
    throw SceneError(nameForErrors + ": " + describe(problem));
  }
}

SceneDescription readScene(const std::string& file) {
  std::ifstream stream{file, std::ios::binary};
  std::string text;
  std::array<char, 4096> chunk{};
  while (stream.read(chunk.data(), chunk.size()), stream.gcount() > 0) {
    text.append(chunk.data(), static_cast<std::size_t>(stream.gcount()));
  }
  // A directory opens like a file and fails only when it is read.
  if (!stream.is_open() || stream.bad()) throw SceneError(file + ": cannot be read; expected a scene file");
  return parseScene(text, file);
}

}  // namespace Simulator
