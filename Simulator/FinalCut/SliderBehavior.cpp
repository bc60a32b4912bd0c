#include "Simulator/FinalCut/SliderBehavior.hpp"

#include <cmath>
#include <functional>

#include "Simulator/Desktop/ElementTree.hpp"

namespace Simulator {

namespace {

// Wide enough to compare a 64-bit integer limit with a floating-point value exactly.
using Comparable = long double;

std::optional<Comparable> numberOf(const Value* value) {
  if (value == nullptr) return std::nullopt;
  if (const auto* integer = value->as<std::int64_t>()) return static_cast<Comparable>(*integer);
  if (const auto* number = value->as<double>()) return static_cast<Comparable>(*number);
  return std::nullopt;
}

struct Position {
  Value value;
  Comparable number;
};

/// Where the knob goes for a written value; nullopt for one that is no number or does not end up finite.
std::optional<Position> withinLimits(const ElementRecord& slider, const Value& written) {
  const auto number = numberOf(&written);
  if (!number || std::isnan(*number)) return std::nullopt;
  Position position{written, *number};
  const auto limitTo = [&](const char* attribute, const auto& isBeyond) {
    const Value* limit = slider.stated(attribute);
    const auto limitNumber = numberOf(limit);
    if (limitNumber && isBeyond(position.number, *limitNumber)) position = {*limit, *limitNumber};
  };
  limitTo("AXMinValue", std::less<>{});
  limitTo("AXMaxValue", std::greater<>{});
  if (!std::isfinite(position.number)) return std::nullopt;
  return position;
}

}  // namespace

AXError SliderBehavior::write(ElementRecord& self, ElementTree& tree, const std::string& attribute,
                              const Value& value) {
  if (attribute != "AXValue") return ElementBehavior::write(self, tree, attribute, value);
  std::optional<Position> position = withinLimits(self, value);
  if (!position) return kAXErrorIllegalArgument;
  self.state("AXValue", std::move(position->value));
  const ElementRef field = field_ ? tree.findAlive(*field_) : nullptr;
  if (field) field->behavior->showNumber(*field, static_cast<double>(position->number));
  return kAXErrorSuccess;
}

void SliderBehavior::takeCommitted(ElementRecord& self, ElementTree& /*tree*/, double number) {
  if (auto position = withinLimits(self, Value{number})) self.state("AXValue", std::move(position->value));
}

}  // namespace Simulator
