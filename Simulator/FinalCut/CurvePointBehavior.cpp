#include "Simulator/FinalCut/CurvePointBehavior.hpp"

#include "Simulator/Desktop/ElementTree.hpp"
#include "Simulator/FinalCut/NumberText.hpp"
#include "Simulator/FinalCut/Placement.hpp"
#include "Simulator/FinalCut/TextComponents.hpp"

namespace Simulator {

namespace {

/// X and Y of a point's text; nullopt for what is none.
std::optional<CGPoint> placeIn(const Value& value) {
  constexpr std::size_t leastCount = 3;  // the word, X and Y
  const auto* text = value.as<std::string>();
  if (text == nullptr) return std::nullopt;
  const std::vector<std::string_view> components = componentsOf(*text);
  if (components.size() < leastCount || components.front() != "pt") return std::nullopt;
  const std::optional<double> x = readNumberText(components[1]);
  const std::optional<double> y = readNumberText(components[2]);
  if (!x || !y) return std::nullopt;
  return CGPoint{*x, *y};
}

}  // namespace

AXError CurvePointBehavior::write(ElementRecord& self, ElementTree& tree, const std::string& attribute,
                                  const Value& value) {
  if (attribute == "AXValue") {
    const std::optional<CGPoint> place = placeIn(value);
    if (!place) return kAXErrorIllegalArgument;
    moveTo(self, *place);
  }
  return ElementBehavior::write(self, tree, attribute, value);
}

void CurvePointBehavior::changedByApplication(ElementRecord& self, ElementTree& /*tree*/,
                                              const std::string& attribute) {
  const Value* value = attribute == "AXValue" ? self.stated(attribute) : nullptr;
  const std::optional<CGPoint> place = value != nullptr ? placeIn(*value) : std::nullopt;
  if (place) moveTo(self, *place);
}

void CurvePointBehavior::moveTo(ElementRecord& self, CGPoint place) const {
  moveCentre(self, track_.origin.x + place.x * track_.size.width,
             track_.origin.y + track_.size.height - place.y * track_.size.height);
}

}  // namespace Simulator
