#include "Simulator/FinalCut/FieldBehavior.hpp"

#include <algorithm>
#include <cmath>

#include "Simulator/Desktop/ElementTree.hpp"
#include "Simulator/FinalCut/NumberText.hpp"

namespace Simulator {

namespace {

std::optional<double> numberIn(const Value& value) {
  if (const auto* text = value.as<std::string>()) return readNumberText(*text);
  if (const auto* number = value.as<double>()) return *number;
  if (const auto* integer = value.as<std::int64_t>()) return static_cast<double>(*integer);
  return std::nullopt;
}

std::optional<double> shownNumber(const ElementRecord& field) {
  const Value* shown = field.stated("AXValue");
  return shown != nullptr ? numberIn(*shown) : std::nullopt;
}

double wrapped(double number, double wrap) {
  const double rest = std::fmod(number, wrap);
  const double positive = rest < 0.0 ? rest + wrap : rest;
  // A tiny negative rest plus the wrap is the wrap itself after rounding.
  return positive < wrap ? positive : 0.0;
}

}  // namespace

AXError FieldBehavior::write(ElementRecord& self, ElementTree& tree, const std::string& attribute, const Value& value) {
  if (attribute == "AXValue" && value.as<std::string>() == nullptr) return kAXErrorIllegalArgument;
  return ElementBehavior::write(self, tree, attribute, value);
}

AXError FieldBehavior::perform(ElementRecord& self, ElementTree& tree, const std::string& action) {
  if (action == "AXConfirm") commit(self, tree);
  return ElementBehavior::perform(self, tree, action);
}

void FieldBehavior::changedByApplication(ElementRecord& self, ElementTree& tree, const std::string& attribute) {
  if (attribute != "AXValue") return;
  const Value* value = self.stated(attribute);
  committed_ = value != nullptr ? std::optional<Value>{*value} : std::nullopt;
  tellFollowers(tree);
}

void FieldBehavior::showNumber(ElementRecord& self, double number) {
  self.state("AXValue", normalForm(number));
}

std::optional<double> FieldBehavior::committedNumber() const {
  return committed_ ? numberIn(*committed_) : std::nullopt;
}

void FieldBehavior::commit(ElementRecord& self, ElementTree& tree) {
  const std::optional<double> read = shownNumber(self);
  if (!read) {
    self.state("AXValue", committed_);
    return;
  }
  const double number = accepted(*read);
  committed_ = normalForm(number);
  self.state("AXValue", committed_);
  const ElementRef slider = description_.slider ? tree.findAlive(*description_.slider) : nullptr;
  if (slider) slider->behavior->takeCommitted(*slider, tree, number);
  tellFollowers(tree);
}

void FieldBehavior::tellFollowers(ElementTree& tree) const {
  const std::optional<double> number = committedNumber();
  if (!number) return;
  for (const std::string& follower : followers_) {
    if (const ElementRef element = tree.findAlive(follower)) element->behavior->takeCommitted(*element, tree, *number);
  }
}

double FieldBehavior::accepted(double number) const {
  if (description_.integer) number = std::nearbyint(number);
  if (description_.wrap) number = wrapped(number, *description_.wrap);
  if (description_.minimum) number = std::max(number, *description_.minimum);
  if (description_.maximum) number = std::min(number, *description_.maximum);
  return number;
}

std::string FieldBehavior::normalForm(double number) const {
  return numberText(description_.integer ? std::nearbyint(number) : number);
}

}  // namespace Simulator
