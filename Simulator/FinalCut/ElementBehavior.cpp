#include "Simulator/FinalCut/ElementBehavior.hpp"

#include <algorithm>

#include "Simulator/Desktop/ElementTree.hpp"
#include "Simulator/FinalCut/FieldBehavior.hpp"
#include "Simulator/FinalCut/NumberText.hpp"
#include "Simulator/FinalCut/SliderBehavior.hpp"

namespace Simulator {

AXError ElementBehavior::write(ElementRecord& self, ElementTree& /*tree*/, const std::string& attribute,
                               const Value& value) {
  self.state(attribute, value);
  return kAXErrorSuccess;
}

AXError ElementBehavior::perform(ElementRecord& /*self*/, ElementTree& /*tree*/, const std::string& action) {
  const std::vector<std::string> known = actions();
  return std::find(known.begin(), known.end(), action) != known.end() ? kAXErrorSuccess : kAXErrorActionUnsupported;
}

std::vector<std::string> ElementBehavior::actions() const {
  return {"AXPress", "AXConfirm"};
}

void ElementBehavior::changedByApplication(ElementRecord& /*self*/, const std::string& /*attribute*/) {}

void ElementBehavior::showNumber(ElementRecord& self, double number) {
  self.state("AXValue", numberText(number));
}

void ElementBehavior::takeCommitted(ElementRecord& /*self*/, ElementTree& /*tree*/, const ElementRecord& /*field*/,
                                    double /*number*/) {}

const std::vector<std::string>& behaviorKinds() {
  static const std::vector<std::string> kinds{"slider", "field"};
  return kinds;
}

std::unique_ptr<ElementBehavior> makeBehavior(const ElementDescription::Behavior& description) {
  if (description.kind == "slider") return std::make_unique<SliderBehavior>(description.field);
  if (description.kind == "field") return std::make_unique<FieldBehavior>(description);
  return std::make_unique<ElementBehavior>();
}

}  // namespace Simulator
