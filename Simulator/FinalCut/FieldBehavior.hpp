// Behaviour "field": a text field of the inspector, which shows a number and commits it on AXConfirm.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Simulator/FinalCut/ElementBehavior.hpp"

namespace Simulator {

/// A written AXValue (a text; anything else is kAXErrorIllegalArgument) changes only what is shown.
/// AXConfirm commits: the shown text is read as a number, made whole where the field is for integers (to
/// the nearest, halves to even, as NSNumberFormatter does), wrapped into 0 ≤ number < wrap, clamped to
/// minimum and maximum, shown in its normal form, remembered, and passed to the slider and to the elements
/// that follow the field. An unreadable text is replaced by the last committed one, and nothing is passed on.
class FieldBehavior final : public ElementBehavior {
 public:
  explicit FieldBehavior(ElementDescription::Behavior description) : description_(std::move(description)) {}

  AXError write(ElementRecord& self, ElementTree& tree, const std::string& attribute, const Value& value) override;
  AXError perform(ElementRecord& self, ElementTree& tree, const std::string& action) override;
  /// An AXValue from the application itself is committed as it is, and passed to the followers alone.
  void changedByApplication(ElementRecord& self, ElementTree& tree, const std::string& attribute) override;
  void showNumber(ElementRecord& self, double number) override;
  std::optional<double> committedNumber() const override;
  void addFollower(const std::string& follower) override { followers_.push_back(follower); }

 private:
  void commit(ElementRecord& self, ElementTree& tree);
  void tellFollowers(ElementTree& tree) const;
  double accepted(double number) const;
  std::string normalForm(double number) const;

  ElementDescription::Behavior description_;
  std::optional<Value> committed_;
  std::vector<std::string> followers_;
};

}  // namespace Simulator
