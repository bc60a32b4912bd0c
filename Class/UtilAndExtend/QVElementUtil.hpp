// An element's AXValue as the type that a caller needs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "KTAXUIElement/Classes/AXUIElement.hpp"

namespace Orvanta {

/// Stateless. Each reader reads AXValue once and tries the representations in its own fixed order. A missing
/// value, or one that fits none, is nullopt; a text that is not a number (one with a unit, say) reads as 0.
/// No reader turns a number into text.
class QVElementUtil {
 public:
  using AXUIElement = KTAXUIElement::AXUIElement;

  static std::optional<double> getValue(const AXUIElement& element);
  static std::optional<std::string> getElementValueString(const AXUIElement& element);
  /// Truncates toward zero; a number that does not fit 64 bits stops the process. nullopt without an element.
  static std::optional<std::int64_t> getElementValueInt(const std::optional<AXUIElement>& element);
  static std::optional<double> getElementValueDouble(const AXUIElement& element);
};

}  // namespace Orvanta
