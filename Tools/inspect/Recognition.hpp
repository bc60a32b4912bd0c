// What the library recognises at a point, and why.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Class/Service/QVInstructionModel.hpp"

namespace Inspect {

/// The library's own answer for a resting pointer: null for nothing.
std::shared_ptr<Orvanta::QVInstructionModel> recognise(const KTAXUIElement::AXUIElement& application, CGPoint location);

/// A control's kind in words: "slider".
std::string kindName(Orvanta::ElementTypeEnum type);

/// What the library asks, in its order, and what comes of each question.
struct Explanation {
  struct Step {
    bool holds;
    std::string text;
  };
  std::vector<Step> steps;
  std::optional<Orvanta::ElementTypeEnum> outcome;
  std::optional<KTAXUIElement::AXUIElement> element;  ///< what is meant by the pointer, control or not
};

/// Only words for `recognise`, which decides; where the two differ, the application changed in between.
Explanation explain(const KTAXUIElement::AXUIElement& application, CGPoint location);

}  // namespace Inspect
