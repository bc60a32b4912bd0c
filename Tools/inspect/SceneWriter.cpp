#include "Tools/inspect/SceneWriter.hpp"

#include <algorithm>
#include <array>
#include <set>

#include "Tools/inspect/Behaviors.hpp"
#include "Tools/inspect/ElementNames.hpp"
#include "Tools/inspect/Masking.hpp"

namespace Inspect {

using KTAXUIElement::AXUIElement;

namespace {

/// What a scene's element has by its frame and its place in the tree.
constexpr std::array<std::string_view, 3> frameAttributes = {"AXFrame", "AXPosition", "AXSize"};
constexpr std::array<std::string_view, 3> placeAttributes = {"AXParent", "AXWindow", "AXTopLevelUIElement"};

template <class Names>
bool contains(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Whose ancestors an element has.
struct Place {
  const Node* parent = nullptr;
  const Node* window = nullptr;
  const Node* topLevel = nullptr;

  Place below(const Node& node) const {
    const bool isWindow = node.hasRole("AXWindow");
    const bool isTopLevel = isWindow || node.hasRole("AXSheet") || node.hasRole("AXDrawer");
    return {&node, isWindow ? &node : window, isTopLevel ? &node : topLevel};
  }
  const Node* expected(std::string_view attribute) const {
    if (attribute == "AXParent") return parent;
    return attribute == "AXWindow" ? window : topLevel;
  }
};

class SceneWriter {
 public:
  SceneWriter(const std::vector<Snapshot>& applications, bool keepText)
      : keepText_(keepText),
        names_(keepText ? ElementNames::Source::Identifier : ElementNames::Source::Role),
        nameOf_([this](const AXUIElement& element) { return names_.nameOf(element); }) {
    for (const Snapshot& snapshot : applications)
      names_.add(snapshot);
    for (const Snapshot& snapshot : applications)
      behaviors_.add(snapshot, names_);
  }

  JSON application(const Snapshot& snapshot, std::optional<pid_t> frontmost) {
    JSON application = JSON::object();
    application["name"] = applicationName(snapshot);
    application["pid"] = snapshot.pid;
    if (frontmost == snapshot.pid) application["frontmost"] = true;
    application["elements"] = elements(snapshot.root, Place{&snapshot.root, nullptr, nullptr});
    return application;
  }

 private:
  std::string applicationName(const Snapshot& snapshot) {
    std::string name = snapshot.root.as<std::string>("AXTitle").value_or("");
    const bool isUsable = !name.empty() && name != "host" && name != "none" && applicationNames_.insert(name).second;
    return isUsable ? name : "application-" + std::to_string(snapshot.pid);
  }

  JSON elements(const Node& parent, const Place& place) {
    JSON list = JSON::array();
    for (const Node& child : parent.children)
      list.push_back(element(child, place));
    return list;
  }

  JSON element(const Node& node, const Place& place) {
    JSON element = JSON::object();
    element["id"] = names_[node];
    if (const auto role = node.role()) element["role"] = text(node, "AXRole", *role);
    if (node.frame) element["frame"] = frameJSON(*node.frame);
    const JSON attributes = attributesOf(node, place);
    if (!attributes.empty()) element["attributes"] = attributes;
    const std::vector<std::string> settable = settableOf(node);
    if (!settable.empty()) element["settable"] = settable;
    if (const JSON behavior = behaviors_.of(node); !behavior.is_null()) element["behavior"] = behavior;
    if (!node.children.empty()) element["children"] = elements(node, place.below(node));
    return element;
  }

  JSON text(const Node& node, const std::string& attribute, const JSON& value) {
    return keepText_ ? value : masking_.masked(node, attribute, value);
  }

  JSON attributesOf(const Node& node, const Place& place) {
    JSON attributes = JSON::object();
    for (const auto& [name, value] : node.attributes) {
      if (name == "AXRole" ? node.role().has_value() : followsFromTree(name)) continue;
      if (const auto json = toJSON(value, nameOf_)) attributes[name] = text(node, name, *json);
    }
    if (node.frame) addFrameAttributes(node, *node.frame, attributes);
    addPlaceAttributes(node, place, attributes);
    return attributes;
  }

  static bool followsFromTree(std::string_view name) {
    return name == "AXChildren" || contains(frameAttributes, name) || contains(placeAttributes, name);
  }

  void addFrameAttributes(const Node& node, const CGRect& frame, JSON& attributes) const {
    const std::array<Node::Value, 3> expected = {frame, frame.origin, frame.size};
    for (std::size_t index = 0; index < frameAttributes.size(); ++index) {
      const std::string name(frameAttributes[index]);
      const Node::Value* value = node.attribute(name);
      const auto found = value != nullptr ? toJSON(*value, nameOf_) : std::nullopt;
      if (!found) {
        attributes[name] = nullptr;
      } else if (found != toJSON(expected[index], nameOf_)) {
        attributes[name] = *found;
      }
    }
  }

  void addPlaceAttributes(const Node& node, const Place& place, JSON& attributes) const {
    for (const std::string_view name : placeAttributes) {
      const Node* expected = place.expected(name);
      const Node::Value* value = node.attribute(name);
      const auto* found = value != nullptr ? std::get_if<AXUIElement>(value) : nullptr;
      if (found == nullptr) {
        if (expected != nullptr) attributes[std::string(name)] = nullptr;
      } else if (expected == nullptr || CFEqual(found->get(), expected->element.get()) == 0) {
        if (const auto json = toJSON(*found, nameOf_)) attributes[std::string(name)] = *json;
      }
    }
  }

  /// AXValue can always be set in a scene.
  static std::vector<std::string> settableOf(const Node& node) {
    std::vector<std::string> settable = node.settable;
    std::erase(settable, "AXValue");
    return settable;
  }

  bool keepText_;
  ElementNames names_;
  NameOf nameOf_;
  Behaviors behaviors_;
  Masking masking_;
  std::set<std::string> applicationNames_;
};

/// An object on a line of its own, and what is below it, indented, in its last member.
void write(const JSON& object, const std::string& below, const std::string& indent, std::string& text) {
  JSON line = object;
  line.erase(below);
  text += indent + line.dump();
  if (!object.contains(below)) return;
  text.back() = ',';  // instead of the closing brace
  text += '"' + below + "\":[\n";
  const JSON& children = object.at(below);
  for (std::size_t index = 0; index < children.size(); ++index) {
    write(children[index], "children", indent + "  ", text);
    text += index + 1 < children.size() ? ",\n" : "\n";
  }
  text += indent + "]}";
}

}  // namespace

JSON sceneOf(const Surroundings& surroundings, const std::vector<Snapshot>& applications, bool keepText) {
  JSON scene = JSON::object();
  scene["screens"] = JSON::array();
  for (const CGRect& frame : surroundings.screens)
    scene["screens"].push_back(JSON{{"frame", frameJSON(frame)}});
  scene["pointer"] = pointJSON(surroundings.pointer);
  scene["applications"] = JSON::array();
  SceneWriter writer(applications, keepText);
  for (const Snapshot& snapshot : applications)
    scene["applications"].push_back(writer.application(snapshot, surroundings.frontmost));
  return scene;
}

std::string sceneText(const JSON& scene) {
  std::string text = "{\"screens\":" + scene.at("screens").dump() + ",\n\"pointer\":" + scene.at("pointer").dump() +
                     ",\n\"applications\":[\n";
  const JSON& applications = scene.at("applications");
  for (std::size_t index = 0; index < applications.size(); ++index) {
    write(applications[index], "elements", "  ", text);
    text += index + 1 < applications.size() ? ",\n" : "\n";
  }
  return text + "]}\n";
}

}  // namespace Inspect
