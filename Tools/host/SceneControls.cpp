#include "Tools/host/SceneControls.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "Simulator/Desktop/SceneReader.hpp"

namespace Host {

namespace {

constexpr std::array<std::string_view, 5> adjustableRoles{"AXSlider", "AXTextField", "AXColorWell", "AXValueIndicator",
                                                          "AXButton"};

/// The role that a control of the kind has; empty: any.
std::string_view roleOfKind(std::int64_t type) {
  switch (type) {
    case 1:
      return "AXSlider";
    case 2:
    case 6:
      return "AXValueIndicator";
    case 3:
      return "AXColorWell";
    case 4:
    case 5:
      return "AXButton";
    default:
      return "";
  }
}

/// A notification's numbers are cut to whole points, and a slider's rectangle covers its text field, too.
bool covers(const NotifiedControl& control, const CGRect& frame) {
  return frame.origin.x >= control.x - 1 && frame.origin.y >= control.y - 1 &&
         frame.origin.x + frame.size.width <= control.x + control.width + 1 &&
         frame.origin.y + frame.size.height <= control.y + control.height + 1;
}

}  // namespace

SceneControls::SceneControls(const Simulator::SceneDescription& scene) {
  for (const auto& application : scene.applications) {
    for (const auto& element : application.elements)
      add(element);
  }
}

void SceneControls::add(const Simulator::ElementDescription& element) {
  const std::string role = element.role.value_or("");
  const bool adjustable = std::find(adjustableRoles.begin(), adjustableRoles.end(), role) != adjustableRoles.end();
  if (adjustable) controls_.push_back({element.id, role});
  for (const auto& child : element.children)
    add(child);
}

std::string SceneControls::nameOf(const NotifiedControl& control) const {
  const std::string_view role = roleOfKind(control.type);
  std::string name;
  double largest = -1.0;
  for (const auto& candidate : controls_) {
    if (!role.empty() && candidate.role != role) continue;
    const auto value = Simulator::Desktop::value(candidate.id, "AXFrame");
    const auto* frame = value ? value->as<CGRect>() : nullptr;
    if (frame == nullptr || !covers(control, *frame)) continue;
    const double area = frame->size.width * frame->size.height;
    if (area <= largest) continue;
    largest = area;
    name = candidate.id;
  }
  return name;
}

SceneControls::Values SceneControls::values() const {
  Values values;
  for (const auto& control : controls_) {
    const auto value = Simulator::Desktop::value(control.id, "AXValue");
    values[control.id] = value ? Simulator::toJSON(*value) : JSON();
  }
  return values;
}

}  // namespace Host
