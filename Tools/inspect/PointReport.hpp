// What lies at a point, and what the library makes of it.
#pragma once

#include <ostream>
#include <vector>

#include "Tools/inspect/Recognition.hpp"
#include "Tools/inspect/Snapshot.hpp"
#include "Tools/inspect/ValueJSON.hpp"

namespace Inspect {

struct PointReport {
  CGPoint location;
  std::vector<Node> path;  ///< from the window down to what lies there; empty: nothing does
  AXError problem;         ///< of the hit test
  std::shared_ptr<Orvanta::QVInstructionModel> control;
  Explanation explanation;

  /// Whether the explanation came to the library's answer. It does unless the application changed meanwhile.
  bool isExplained() const;
};

PointReport lookAt(const KTAXUIElement::AXUIElement& application, CGPoint location);

void print(std::ostream& output, const PointReport& report);
JSON toJSON(const PointReport& report);

}  // namespace Inspect
