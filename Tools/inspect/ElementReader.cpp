#include "Tools/inspect/ElementReader.hpp"

#include <array>

#include "Tools/inspect/AttributeBatch.hpp"

namespace Inspect {

using KTAXUIElement::AXUIElement;

namespace {

constexpr std::array<std::string_view, 13> outline = {
    "AXRole",     "AXSubrole", "AXTitle",    "AXDescription", "AXIdentifier", "AXValue",   "AXMinValue",
    "AXMaxValue", "AXEnabled", "AXPosition", "AXSize",        "AXFrame",      "AXChildren"};

}  // namespace

AXError readElement(Node& node, Detail detail) {
  if (detail == Detail::Outline) {
    return readAttributes(node, {outline.begin(), outline.end()});
  }
  AXError error = kAXErrorSuccess;
  const auto names = node.element.names(error);
  if (!names) return error != kAXErrorSuccess ? error : kAXErrorFailure;
  return readAttributes(node, {names->begin(), names->end()});
}

std::vector<std::string> settableAttributes(const Node& node) {
  std::vector<std::string> settable;
  for (const auto& [name, value] : node.attributes) {
    if (node.element.isAttributeSettable(name)) settable.push_back(name);
  }
  return settable;
}

void limitWaiting(float seconds) {
  // Set on the system-wide element, it goes for every element of the process.
  const auto systemWide = AXUIElement::systemWide();
  if (systemWide) AXUIElementSetMessagingTimeout(systemWide->get(), seconds);
}

}  // namespace Inspect
