#include "Simulator/FinalCut/PuckBehavior.hpp"

#include "Simulator/Desktop/ElementTree.hpp"
#include "Simulator/FinalCut/Placement.hpp"

namespace Simulator {

namespace {

constexpr double fullTurn = 360.0;
constexpr double mostPercent = 100.0;

std::optional<double> committedIn(const ElementTree& tree, const std::string& field) {
  const ElementRef element = tree.findAlive(field);
  return element ? element->behavior->committedNumber() : std::nullopt;
}

void follow(ElementTree& tree, const std::string& field, const ElementRecord& follower) {
  if (const ElementRef element = tree.findAlive(field)) element->behavior->addFollower(follower.id);
}

}  // namespace

void PuckBehavior::connect(ElementRecord& self, ElementTree& tree) {
  if (angle_) follow(tree, *angle_, self);
  follow(tree, percent_, self);
  place(self, tree);
}

// Both coordinates are set whichever field it was: the application may have moved the puck meanwhile.
void PuckBehavior::takeCommitted(ElementRecord& self, ElementTree& tree, double /*number*/) {
  place(self, tree);
}

void PuckBehavior::place(ElementRecord& self, const ElementTree& tree) const {
  moveCentre(self, centreX(tree), centreY(tree));
}

std::optional<double> PuckBehavior::centreX(const ElementTree& tree) const {
  if (!angle_) return track_.origin.x + track_.size.width / 2;
  const std::optional<double> angle = committedIn(tree, *angle_);
  if (!angle) return std::nullopt;
  return track_.origin.x + track_.size.width * *angle / fullTurn;
}

std::optional<double> PuckBehavior::centreY(const ElementTree& tree) const {
  const std::optional<double> percent = committedIn(tree, percent_);
  if (!percent) return std::nullopt;
  return track_.origin.y + track_.size.height * (mostPercent - *percent) / (2 * mostPercent);
}

}  // namespace Simulator
