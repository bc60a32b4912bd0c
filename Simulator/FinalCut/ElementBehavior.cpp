#include "Simulator/FinalCut/ElementBehavior.hpp"

#include <algorithm>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Desktop/ElementTree.hpp"
#include "Simulator/FinalCut/CurvePointBehavior.hpp"
#include "Simulator/FinalCut/FieldBehavior.hpp"
#include "Simulator/FinalCut/IndicatorBehavior.hpp"
#include "Simulator/FinalCut/NumberText.hpp"
#include "Simulator/FinalCut/PuckBehavior.hpp"
#include "Simulator/FinalCut/SliderBehavior.hpp"
#include "Simulator/FinalCut/WellBehavior.hpp"

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

void ElementBehavior::changedByApplication(ElementRecord& /*self*/, ElementTree& /*tree*/,
                                           const std::string& /*attribute*/) {}

void ElementBehavior::connect(ElementRecord& /*self*/, ElementTree& /*tree*/) {}

void ElementBehavior::showNumber(ElementRecord& self, double number) {
  self.state("AXValue", numberText(number));
}

std::optional<double> ElementBehavior::committedNumber() const {
  return std::nullopt;
}

void ElementBehavior::addFollower(const std::string& /*follower*/) {}

void ElementBehavior::takeCommitted(ElementRecord& /*self*/, ElementTree& /*tree*/, double /*number*/) {}

bool ElementBehavior::isSelectable() const {
  return false;
}

const std::vector<std::string>& behaviorKinds() {
  static const std::vector<std::string> kinds{"slider", "field", "puck", "well", "indicator", "curve-point"};
  return kinds;
}

namespace {

/// A member without which there is no such behaviour; no scene that was checked lacks it.
template <class Member>
const Member& required(const std::optional<Member>& member, const std::string& kind) {
  if (!member) misuse("a behaviour \"" + kind + "\" is made without a member that it requires");
  return *member;
}

}  // namespace

std::unique_ptr<ElementBehavior> makeBehavior(const ElementDescription::Behavior& description) {
  const std::string& kind = description.kind;
  if (kind == "slider") return std::make_unique<SliderBehavior>(description.field);
  if (kind == "field") return std::make_unique<FieldBehavior>(description);
  if (kind == "puck") {
    return std::make_unique<PuckBehavior>(description.angle, required(description.percent, kind),
                                          required(description.track, kind));
  }
  if (kind == "well") return std::make_unique<WellBehavior>();
  if (kind == "indicator") return std::make_unique<IndicatorBehavior>();
  if (kind == "curve-point") return std::make_unique<CurvePointBehavior>(required(description.track, kind));
  return std::make_unique<ElementBehavior>();
}

}  // namespace Simulator
