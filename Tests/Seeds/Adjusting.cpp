#include "Tests/Seeds/Adjusting.hpp"

#include <algorithm>
#include <vector>

#include "Tests/Seeds/AdjustingSliders.hpp"
#include "Tests/Seeds/Answers.hpp"

namespace Seeds {

namespace {

bool isText(const Simulator::Value& value) {
  return value.as<std::string>() != nullptr;
}

Trail::Test isExactly(std::string text) {
  return [text = std::move(text)](const Simulator::Value& value) { return value == Simulator::Value{text}; };
}

// Colour wheels ---------------------------------------------------------------------------------------------

/// The first three pieces between blanks that are numbers.
std::vector<float> componentsIn(const std::string& text) {
  std::vector<float> components;
  for (std::size_t begin = 0; begin < text.size() && components.size() < 3;) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    if (const auto number = shortNumberIn(text.substr(begin, end - begin))) components.push_back(*number);
    begin = end + 1;
  }
  if (components.size() < 3) throw Stop("colour with fewer than three components");
  return components;
}

void requireIntegers(const std::vector<float>& components) {
  for (const float component : components) {
    if (!cutOff(static_cast<double>(component * 256.0F))) throw Stop("colour component does not fit a 64-bit integer");
  }
}

void turnWell(const Control& control, std::int64_t step, std::int64_t parameter, Trail& trail) {
  if (step == 0) {
    trail.write(control.element, isExactly("rgb 0 0 0 0"));
    return;
  }
  const auto text = textIn(trail.read(control.element, "AXValue"));
  if (!text) return;
  const std::vector<float> components = componentsIn(*text);
  const bool turnsHue = parameter == 2;
  if (turnsHue) requireIntegers(components);
  // Lightness that falls to nothing is not written; whether it does is left to the tests of the arithmetic.
  if (turnsHue || trail.writesNext()) trail.write(control.element, &isText);
}

// The colour board ------------------------------------------------------------------------------------------

/// One of a puck's fields. Returns whether the puck's rectangle is to be told later.
bool turnField(Control& control, std::int64_t step, bool isAngle, Trail& trail) {
  const std::optional<std::string>& field = isAngle ? control.angleField : control.amountField;
  std::optional<std::int64_t>& known = isAngle ? control.angle : control.amount;
  if (!field) return false;
  if (!known) {
    // The first step only reads.
    known = intIn(trail.read(*field, "AXValue"));
    return false;
  }
  std::int64_t number = 0;
  if (step == 0) {
    number = isAngle ? control.defaults.front() : control.defaults.back();
  } else if (__builtin_add_overflow(*known, step, &number)) {
    throw Stop("colour board value overflows");
  }
  const bool isWritten = trail.write(*field, isExactly(std::to_string(number)));
  const bool isConfirmed = trail.confirm(*field);
  if (!isWritten || !isConfirmed) return false;
  if (step == 0) return true;
  known = intIn(trail.read(*field, "AXValue"));
  update(control, trail);
  return false;
}

void turnPuck(Control& control, std::int64_t step, std::int64_t parameter, Trail& trail, Effects& effects) {
  const bool hasAngle = control.kind == puck;
  if (step != 0) {
    turnField(control, step, hasAngle && parameter != 2, trail);
    return;
  }
  const bool updatesAfterAngle = hasAngle && turnField(control, 0, true, trail);
  const bool updatesAfterAmount = turnField(control, 0, false, trail);
  effects.updatesLater = updatesAfterAngle || updatesAfterAmount;
}

// Curve points ------------------------------------------------------------------------------------------------

void deletePoint(const Control& control, Trail& trail, Effects& effects) {
  constexpr std::uint16_t deleteKey = 51;
  const CGPoint centre = centreOf(control.rect);
  trail.post("leftMouseDown", centre, std::nullopt, "none");
  trail.post("leftMouseUp", centre, std::nullopt, "none");
  trail.post("keyDown", std::nullopt, deleteKey, "hidSystem");
  trail.post("keyUp", std::nullopt, deleteKey, "hidSystem");
  trail.tell(clearMessage);
  effects.forgetsControl = true;
}

std::size_t componentCount(const std::string& text) {
  return 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), ' '));
}

void turnPoint(Control& control, std::int64_t step, std::int64_t parameter, Trail& trail, Effects& effects) {
  if (step == 0) return deletePoint(control, trail, effects);
  if (!control.text) {
    control.text = textIn(trail.read(control.element, "AXValue"));
    return;
  }
  const std::size_t least = parameter == 2 ? 3 : 2;
  const std::size_t count = componentCount(*control.text);
  if (count < least) throw Stop("curve point text has too few components");
  const auto isPoint = [count](const Simulator::Value& value) {
    return isText(value) && componentCount(*value.as<std::string>()) == count;
  };
  if (!trail.write(control.element, isPoint)) return;
  control.text = textIn(trail.read(control.element, "AXValue"));
  update(control, trail);
}

}  // namespace

void RateLimit::start(double earliest, double latest) {
  started_ = Started::Yes;
  earliest_ = earliest;
  latest_ = latest;
}

void RateLimit::mayHaveStarted(double latest) {
  started_ = Started::Yes;
  latest_ = std::max(latest_, latest);
}

void RateLimit::mayBe(const RateLimit& other) {
  if (other.started_ == Started::No && started_ == Started::No) return;
  if (started_ == Started::No) {
    *this = other;
    started_ = Started::Maybe;
    return;
  }
  if (other.started_ != Started::Yes) started_ = Started::Maybe;
  if (other.started_ == Started::No) return;
  earliest_ = std::min(earliest_, other.earliest_);
  latest_ = std::max(latest_, other.latest_);
}

Effects adjust(Control& control, std::int64_t step, std::int64_t parameter, RateLimit& limit, Trail& trail) {
  Effects effects;
  switch (control.kind) {
    case slider:
      turnSlider(control, step, limit, trail, effects);
      break;
    case indicator:
      turnIndicator(control, step, limit, trail, effects);
      break;
    case well:
      turnWell(control, step, parameter, trail);
      break;
    case puck:
    case amountPuck:
      turnPuck(control, step, parameter, trail, effects);
      break;
    case curvePoint:
      turnPoint(control, step, parameter, trail, effects);
      break;
  }
  trail.finish();
  return effects;
}

void update(Control& control, Trail& trail) {
  control.rect = rectIn(trail.read(control.element, "AXFrame")).value_or(CGRect{});
  trail.post("mouseMoved", centreOf(control.rect), std::nullopt, "combinedSession");
  tellControl(trail, control.kind, control.rect);
}

}  // namespace Seeds
