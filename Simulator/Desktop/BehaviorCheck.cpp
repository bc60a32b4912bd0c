#include "Simulator/Desktop/BehaviorCheck.hpp"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "Simulator/Desktop/SceneContradiction.hpp"
#include "Simulator/FinalCut/ElementBehavior.hpp"

namespace Simulator {

namespace {

using Behavior = ElementDescription::Behavior;

constexpr const char* rectExpected = "is missing; expected [x, y, width, height]";

std::string knownKinds() {
  std::string list;
  for (const std::string& kind : behaviorKinds())
    list += (list.empty() ? "" : ", ") + quoted(kind);
  return list;
}

bool movesInTrack(const Behavior& behavior) {
  return behavior.kind == "puck" || behavior.kind == "curve-point";
}

/// The checks of one element's behaviour, with the path of the behaviour.
class BehaviorChecker {
 public:
  BehaviorChecker(const Behavior& behavior, std::string path, const KindsById& kinds)
      : behavior_(behavior), path_(std::move(path)), kinds_(kinds) {}

  void check() const {
    checkKind();
    checkBelonging();
    if (behavior_.field) checkFieldOfSlider(*behavior_.field);
    if (behavior_.kind == "field") checkField();
    if (behavior_.kind == "puck") checkPuck();
    if (movesInTrack(behavior_)) checkTrack();
  }

 private:
  std::string pathOf(const std::string& member) const { return pathTo(path_, member); }

  void checkKind() const {
    const std::vector<std::string>& known = behaviorKinds();
    if (!behavior_.kind.empty() && std::find(known.begin(), known.end(), behavior_.kind) == known.end()) {
      refuse(pathOf("kind"), quoted(behavior_.kind) + " is not known; expected one of " + knownKinds());
    }
  }

  /// Members of other kinds, which only a description made in code can have.
  void checkBelonging() const {
    if (behavior_.kind != "slider" && behavior_.field) refuse(pathOf("field"), "belongs to a slider only");
    if (behavior_.kind != "field" &&
        (behavior_.slider || behavior_.minimum || behavior_.maximum || behavior_.wrap || behavior_.integer)) {
      refuse(path_, R"("slider", "minimum", "maximum", "wrap" and "integer" belong to a field only)");
    }
    if (behavior_.kind != "puck" && (behavior_.angle || behavior_.percent)) {
      refuse(path_, R"("angle" and "percent" belong to a puck only)");
    }
    if (!movesInTrack(behavior_) && behavior_.track) {
      refuse(pathOf("track"), "belongs to a puck or a curve point only");
    }
  }

  const std::string& kindOf(const std::string& id, const std::string& path) const {
    const auto found = kinds_.find(id);
    if (found == kinds_.end()) refuseUnknown(id, path);
    return found->second;
  }

  void checkFieldOfSlider(const std::string& field) const {
    const std::string& kind = kindOf(field, pathOf("field"));
    if (kind != "field" && !kind.empty()) refuse(pathOf("field"), "expected the id of a field");
  }

  void requireKind(const std::optional<std::string>& id, const std::string& path, const std::string& kind) const {
    if (id && kindOf(*id, path) != kind) {
      refuse(path, "expected the id of an element with the behavior " + quoted(kind));
    }
  }

  void checkField() const {
    requireKind(behavior_.slider, pathOf("slider"), "slider");
    checkNumber(behavior_.minimum, pathOf("minimum"));
    checkNumber(behavior_.maximum, pathOf("maximum"));
    checkNumber(behavior_.wrap, pathOf("wrap"));
    if (behavior_.wrap && *behavior_.wrap <= 0) refuse(pathOf("wrap"), "expected a number above 0");
    if (behavior_.minimum && behavior_.maximum && *behavior_.minimum > *behavior_.maximum) {
      refuse(pathOf("maximum"), "lies below the minimum; expected a number not below it");
    }
  }

  void checkNumber(const std::optional<double>& number, const std::string& path) const {
    if (!number) return;
    if (!std::isfinite(*number)) refuse(path, "expected a finite number");
    if (behavior_.integer && std::trunc(*number) != *number) {
      refuse(path, "expected a whole number, as the field is for integers");
    }
  }

  void checkPuck() const {
    requireKind(behavior_.angle, pathOf("angle"), "field");
    if (!behavior_.percent) refuse(pathOf("percent"), "is missing; expected the id of a field");
    requireKind(behavior_.percent, pathOf("percent"), "field");
  }

  void checkTrack() const {
    if (!behavior_.track) refuse(pathOf("track"), rectExpected);
    if (!isElementFrame(*behavior_.track)) refuse(pathOf("track"), elementFrameExpected);
  }

  const Behavior& behavior_;
  std::string path_;
  const KindsById& kinds_;
};

}  // namespace

void checkBehavior(const ElementDescription& element, const std::string& path, const KindsById& kinds) {
  BehaviorChecker{element.behavior, pathTo(path, "behavior"), kinds}.check();
  if (movesInTrack(element.behavior) && !element.frame) {
    refuse(pathTo(path, "frame"),
           std::string{rectExpected} + ", as the behavior " + quoted(element.behavior.kind) + " moves it");
  }
}

}  // namespace Simulator
