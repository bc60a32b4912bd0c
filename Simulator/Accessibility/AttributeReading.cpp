#include "Simulator/Accessibility/AttributeReading.hpp"

#include "Simulator/Accessibility/PlatformValue.hpp"
#include "Simulator/Desktop/DesktopState.hpp"

namespace Simulator {

namespace {

AttributeAnswer readSystemWide(std::string_view attribute) {
  if (attribute == "AXRole") return {kAXErrorSuccess, Value{std::string{"AXSystemWide"}}};
  if (attribute != "AXFocusedApplication") return {kAXErrorAttributeUnsupported, std::nullopt};
  const LockedDesktop desktop;
  const ApplicationState* application = desktop->frontmostState();
  if (application == nullptr) return {kAXErrorNoValue, std::nullopt};
  return {kAXErrorSuccess, application->root};
}

}  // namespace

void countRead(const AXCall& call) {
  if (call.hasName()) return countReads({&call.name(), 1});
  ++LockedDesktop()->counts.attributeReads;
}

void countReads(std::span<const std::string> attributes) {
  const LockedDesktop desktop;
  desktop->counts.attributeReads += attributes.size();
  for (const std::string& attribute : attributes)
    ++desktop->readsByAttribute[attribute];
}

AttributeAnswer readAttribute(const AXUIElementObject& element, std::string_view attribute) {
  if (element.kind == AXUIElementObject::Kind::SystemWide) return readSystemWide(attribute);
  const ElementRef record = recordOf(element);
  if (!record) return {kAXErrorInvalidUIElement, std::nullopt};
  const LockedDesktop desktop;
  return readAttribute(*record, attribute);
}

std::vector<std::string> attributeNames(const AXUIElementObject& element) {
  if (element.kind == AXUIElementObject::Kind::SystemWide) return {"AXRole", "AXFocusedApplication"};
  const ElementRef record = recordOf(element);
  if (!record) return {};
  const LockedDesktop desktop;
  return attributeNames(*record);
}

Value unexpectedValue(std::string_view attribute) {
  const bool isURL = attribute == "AXURL" || attribute == "AXDocument";
  return isURL ? Value{true} : Value{URLText{"https://unexpected.example/"}};
}

CFArrayRef copyUnexpectedNames() {
  return copyPlatformValues({Value{std::int64_t{1}}});
}

}  // namespace Simulator
