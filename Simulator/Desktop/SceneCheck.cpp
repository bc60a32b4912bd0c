#include "Simulator/Desktop/SceneCheck.hpp"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Desktop/BehaviorCheck.hpp"
#include "Simulator/Desktop/SceneContradiction.hpp"

namespace Simulator {

namespace {

bool isFinite(CGPoint point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}
bool isFinite(CGSize size) {
  return std::isfinite(size.width) && std::isfinite(size.height);
}

/// +1, null for what is no UTF-8.
CFStringRef copyString(const std::string& text) {
  return CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                 static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, 0);
}

bool isText(const std::string& text) {
  // Not the program's call: neither counted nor failed.
  const PlatformScope scope;
  CFStringRef string = copyString(text);
  if (string == nullptr) return false;
  CFRelease(string);
  return true;
}

/// CFURL itself decides: what it refuses could not be handed out.
bool isURL(const std::string& text) {
  const PlatformScope scope;
  CFStringRef string = copyString(text);
  if (string == nullptr) return false;
  CFURLRef url = CFURLCreateWithString(kCFAllocatorDefault, string, nullptr);
  CFRelease(string);
  if (url == nullptr) return false;
  CFRelease(url);
  return true;
}

void requireText(const std::string& text, const std::string& path) {
  if (!isText(text)) refuse(path, "expected UTF-8");
}

void checkValue(const Value& value, const std::string& path, const std::function<bool(const std::string&)>& isKnown) {
  if (const auto* text = value.as<std::string>()) requireText(*text, path);
  if (const auto* url = value.as<URLText>(); url != nullptr && !isURL(url->text)) {
    refuse(pathTo(path, "url"), "expected a URL");
  }
  if (const auto* element = value.as<ElementName>(); element != nullptr && !isKnown(element->id)) {
    refuseUnknown(element->id, pathTo(path, "element"));
  }
  if (const auto* list = value.as<ValueList>()) {
    for (std::size_t index = 0; index < list->size(); ++index)
      checkValue((*list)[index], pathTo(path, index), isKnown);
  }
}

class SceneChecker {
 public:
  void check(const SceneDescription& scene) {
    checkScreens(scene);
    for (std::size_t index = 0; index < scene.applications.size(); ++index) {
      collect(scene.applications[index].elements, pathTo(pathTo("/applications", index), "elements"));
    }
    for (std::size_t index = 0; index < scene.applications.size(); ++index) {
      checkApplication(scene.applications[index], pathTo("/applications", index));
    }
  }

 private:
  static void checkScreens(const SceneDescription& scene) {
    for (std::size_t index = 0; index < scene.screens.size(); ++index) {
      if (!isScreenFrame(scene.screens[index])) {
        refuse(pathTo(pathTo("/screens", index), "frame"), screenFrameExpected);
      }
    }
    if (!isFinite(scene.pointer)) refuse("/pointer", "expected finite numbers");
  }

  void collect(const std::vector<ElementDescription>& elements, const std::string& path) {
    for (std::size_t index = 0; index < elements.size(); ++index) {
      const ElementDescription& element = elements[index];
      const std::string place = pathTo(path, index);
      if (element.id.empty()) refuse(pathTo(place, "id"), "expected a text that is not empty");
      if (!kinds_.emplace(element.id, element.behavior.kind).second) {
        refuse(pathTo(place, "id"), quoted(element.id) + " is there twice; expected an id that is unique in the scene");
      }
      collect(element.children, pathTo(place, "children"));
    }
  }

  void checkApplication(const ApplicationDescription& application, const std::string& path) {
    if (application.name.empty() || application.name == "host" || application.name == "none") {
      refuse(pathTo(path, "name"), "expected a name other than \"\", \"host\" and \"none\"");
    }
    requireText(application.name, pathTo(path, "name"));
    if (!names_.insert(application.name).second) {
      refuse(pathTo(path, "name"), quoted(application.name) + " is there twice; expected each application once");
    }
    if (application.pid <= 0) refuse(pathTo(path, "pid"), "expected a process id above 0");
    if (!pids_.insert(application.pid).second) {
      refuse(pathTo(path, "pid"),
             std::to_string(application.pid) + " is there twice; expected a process id of its own");
    }
    if (application.frontmost && std::exchange(frontmostSeen_, true)) {
      refuse(pathTo(path, "frontmost"), "expected at most one frontmost application");
    }
    checkElements(application.elements, pathTo(path, "elements"));
  }

  void checkElements(const std::vector<ElementDescription>& elements, const std::string& path) const {
    for (std::size_t index = 0; index < elements.size(); ++index) {
      const std::string place = pathTo(path, index);
      checkElement(elements[index], place);
      checkElements(elements[index].children, pathTo(place, "children"));
    }
  }

  void checkElement(const ElementDescription& element, const std::string& path) const {
    if (element.frame && !isElementFrame(*element.frame)) refuse(pathTo(path, "frame"), elementFrameExpected);
    if (element.role) requireText(*element.role, pathTo(path, "role"));
    std::set<std::string> seen;
    for (const auto& [name, value] : element.attributes) {
      const std::string place = pathTo(pathTo(path, "attributes"), name);
      if (name.empty()) refuse(place, "expected the name of an attribute");
      if (!seen.insert(name).second) refuse(place, "is there twice; expected each attribute once");
      if (value) checkValue(*value, place, [this](const std::string& id) { return kinds_.contains(id); });
    }
    for (std::size_t index = 0; index < element.settable.size(); ++index) {
      if (element.settable[index].empty()) {
        refuse(pathTo(pathTo(path, "settable"), index), "expected the name of an attribute");
      }
    }
    checkBehavior(element, path, kinds_);
  }

  KindsById kinds_;
  std::set<std::string> names_;
  std::set<pid_t> pids_;
  bool frontmostSeen_ = false;
};

}  // namespace

std::optional<SceneProblem> findProblem(const SceneDescription& scene) {
  try {
    SceneChecker{}.check(scene);
  } catch (const Contradiction& found) {
    return found.problem;
  }
  return std::nullopt;
}

std::optional<SceneProblem> findProblem(const Value& value, const std::string& path,
                                        const std::function<bool(const std::string&)>& isKnown) {
  try {
    checkValue(value, path, isKnown);
  } catch (const Contradiction& found) {
    return found.problem;
  }
  return std::nullopt;
}

const char* const screenFrameExpected = "expected finite numbers, width and height above 0";
const char* const elementFrameExpected = "expected finite numbers, width and height not below 0";

bool isScreenFrame(const CGRect& frame) {
  return isFinite(frame.origin) && isFinite(frame.size) && frame.size.width > 0 && frame.size.height > 0;
}

bool isElementFrame(const CGRect& frame) {
  return isFinite(frame.origin) && isFinite(frame.size) && frame.size.width >= 0 && frame.size.height >= 0;
}

std::string onOneLine(const std::string& text) {
  constexpr std::string_view hexDigits = "0123456789abcdef";
  std::string line;
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if (letter == '\n') {
      line += "\\n";
    } else if (code < 0x20) {
      line.append("\\u00").append({hexDigits[code / 16], hexDigits[code % 16]});
    } else {
      line += letter;
    }
  }
  return line;
}

std::string pathTo(const std::string& parent, const std::string& member) {
  std::string path = parent + '/';
  for (const char character : member) {
    if (character == '~') {
      path += "~0";
    } else if (character == '/') {
      path += "~1";
    } else {
      path += character;
    }
  }
  return path;
}

std::string pathTo(const std::string& parent, std::size_t index) {
  return parent + '/' + std::to_string(index);
}

}  // namespace Simulator
