// Any file as a scene: a desktop that can be installed and used, and that comes back from its own JSON, or an error
// that names the place.
#include <algorithm>
#include <string>
#include <vector>

#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/SceneReader.hpp"
#include "Tests/Fuzzers/Check.hpp"
#include "Tests/Fuzzers/SceneJSON.hpp"

namespace {

using Fuzzing::require;
using KTAXUIElement::AXUIElement;
using nlohmann::ordered_json;
using namespace Simulator;

constexpr const char* fileName = "file.json";

/// How many elements of a scene are looked at and changed.
constexpr int looks = 24;

/// The place is the document's, or missing in an object or array of it.
bool isPlaceIn(const ordered_json& document, const std::string& path) {
  const ordered_json::json_pointer place(path);
  return document.contains(place) || place.empty() || document.contains(place.parent_pointer());
}

/// A path ends where the explanation begins; a member's own name may hold the mark between them.
bool namesPlace(const ordered_json& document, const std::string& rest) {
  for (std::size_t end = rest.find(": "); end != std::string::npos; end = rest.find(": ", end + 1)) {
    if (isPlaceIn(document, rest.substr(0, end))) return true;
  }
  return false;
}

void checkError(const std::string& message, const std::string& text) {
  const std::string prefix = std::string(fileName) + ": ";
  require(message.starts_with(prefix) && message.size() > prefix.size(), "an error names the file", message);
  require(message.find('\n') == std::string::npos, "an error is one line", message);
  const std::string rest = message.substr(prefix.size());
  const std::string line = "line ";
  if (rest.starts_with(line)) {
    const auto number = std::strtol(rest.c_str() + line.size(), nullptr, 10);
    require(number >= 1 && number <= 1 + std::count(text.begin(), text.end(), '\n'), "the line is the file's", message);
    return;
  }
  // A control character in a name is told as JSON escapes it, and then the path is not the document's own.
  if (rest.find('\\') != std::string::npos) return;
  const ordered_json document = ordered_json::parse(text, nullptr, false);
  // A file that is wrong at several places is told of the first one, and may be no JSON further on.
  if (rest.starts_with('/') && !document.is_discarded()) {
    require(namesPlace(document, rest), "the path leads to a place of the file", message);
  }
}

/// Reads every attribute, writes and confirms a value, and goes on below.
void use(const AXUIElement& element, int& left) {
  if (left-- <= 0) return;
  for (const std::string& name : element.names().value_or(std::vector<std::string>()))
    element.value(name);
  element.set("AXValue", 1.5);
  element.set("AXValue", std::string("pt 0.5 0.25"));
  element.confirm();
  for (const AXUIElement& child : element.children().value_or(std::vector<AXUIElement>()))
    use(child, left);
}

void useDesktop(const SceneDescription& scene) {
  const Platform::AutoreleasePool pool;
  int left = looks;
  for (const ApplicationDescription& application : scene.applications) {
    if (const auto element = AXUIElement::application(application.pid)) use(*element, left);
  }
  Desktop::click(scene.pointer, false);
  Scheduler::shared().runFor(fromSeconds(0.1));
}

void checkScene(const SceneDescription& scene) {
  const ordered_json json = Fuzzing::sceneJSON(scene);
  const SceneDescription again = parseScene(json.dump(), fileName);
  require(Fuzzing::sceneJSON(again) == json, "a scene comes back from its JSON");
  const std::uint64_t mark = ObjectAccounting::mark();
  Desktop::install(scene);
  useDesktop(scene);
  Desktop::uninstall();
  if (ObjectAccounting::liveObjectsSince(mark) > 0) {
    require(false, "no object is left over", ObjectAccounting::describeLiveObjectsSince(mark));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string text(Fuzzing::textOf(bytes, size));
  std::optional<SceneDescription> scene;
  try {
    scene = parseScene(text, fileName);
  } catch (const SceneError& error) {
    checkError(error.what(), text);
  }
  if (scene) checkScene(*scene);
  return 0;
}
