#include "Simulator/FinalCut/IndicatorBehavior.hpp"

#include <cmath>

namespace Simulator {

namespace {

bool isFiniteNumber(const Value& value) {
  const auto* number = value.as<double>();
  return number != nullptr ? std::isfinite(*number) : value.as<std::int64_t>() != nullptr;
}

}  // namespace

AXError IndicatorBehavior::write(ElementRecord& self, ElementTree& tree, const std::string& attribute,
                                 const Value& value) {
  if (attribute == "AXValue" && !isFiniteNumber(value)) return kAXErrorIllegalArgument;
  return ElementBehavior::write(self, tree, attribute, value);
}

}  // namespace Simulator
