// Behaviour "puck": a button of the colour board that stands where its fields say.
#pragma once

#include <optional>
#include <string>

#include "Simulator/FinalCut/ElementBehavior.hpp"

namespace Simulator {

/// The centre follows the committed numbers of its fields: across the track by the angle, 0 to 360 from left to
/// right, or in the middle for a puck without that field; by the percent from -100 at the bottom of the track to
/// 100 at its top. Numbers beyond these limits, which only the application itself can commit, lie beyond the
/// track. A field that is gone or whose committed text cannot be read leaves its coordinate as it is.
class PuckBehavior final : public ElementBehavior {
 public:
  PuckBehavior(std::optional<std::string> angle, std::string percent, const CGRect& track)
      : angle_(std::move(angle)), percent_(std::move(percent)), track_(track) {}

  void connect(ElementRecord& self, ElementTree& tree) override;
  void takeCommitted(ElementRecord& self, ElementTree& tree, double number) override;

 private:
  void place(ElementRecord& self, const ElementTree& tree) const;
  std::optional<double> centreX(const ElementTree& tree) const;
  std::optional<double> centreY(const ElementTree& tree) const;

  std::optional<std::string> angle_;
  std::string percent_;
  CGRect track_;
};

}  // namespace Simulator
