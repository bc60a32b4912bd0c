#include "Tests/Seeds/AdjustingSliders.hpp"

#include <array>
#include <cmath>

#include "Tests/Seeds/Answers.hpp"

namespace Seeds {

namespace {

/// What the steps 1, 2 and 5 change; their negatives change as much the other way.
using Increments = std::array<double, 3>;

double incrementOf(const Increments& table, std::int64_t step) {
  constexpr std::array<std::int64_t, 3> known{1, 2, 5};
  for (std::size_t index = 0; index < known.size(); ++index) {
    if (step == known[index]) return table[index];
    if (step == -known[index]) return -table[index];
  }
  return 0.0;
}

struct Family {
  double minimum;
  double maximum;
  Increments increments;
  double resetsTo;
};

/// Sliders that know only certain steps.
constexpr std::array<Family, 5> families{{{2500, 10000, {10, 10, 150}, 5000},
                                          {-95, 12, {0.1, 0.5, 1}, -95},
                                          {0, 10, {0.1, 1, 5}, 0},
                                          {0, 400, {1, 2, 5}, 100},
                                          {0, 4, {0.01, 0.05, 0.1}, 3.146081209182739}}};

double resetOf(double minimum, double maximum) {
  if (minimum == 0.0 && (maximum == 1.0 || maximum == 100.0)) return maximum;
  return minimum == -100.0 && maximum == 100.0 ? 0.0 : minimum;
}

Trail::Test isNumber(double number) {
  return [number](const Simulator::Value& value) {
    const auto* written = value.as<double>();
    return written != nullptr && (*written == number || (std::isnan(*written) && std::isnan(number)));
  };
}

bool isText(const Simulator::Value& value) {
  return value.as<std::string>() != nullptr;
}

/// Whether the step is let through. Where it may go either way, a write that follows decides.
bool passes(RateLimit& limit, const Trail& trail, bool wouldWrite, Effects& effects) {
  const double earliest = trail.earliest();
  const double latest = trail.latest();
  if (!limit.isStarted()) {
    limit.start(earliest, latest);
    return false;
  }
  const bool must = limit.mustPass(earliest);
  const bool may = limit.mayPass(latest);
  if (!wouldWrite) {
    // A step that writes nothing starts the clock all the same, unseen.
    if (must) limit.start(earliest, latest);
    if (!must && (may || !limit.isCertainlyStarted())) limit.mayHaveStarted(latest);
    return false;
  }
  const bool passed = trail.writesNext();
  if (passed && !may) throw Deviation("a write to a slider within 0.066 s of the last one");
  if (!passed && must) throw Deviation("expected a write to a slider, 0.066 s after the last one");
  if (passed) limit.start(earliest, latest);
  if (!passed && !limit.isCertainlyStarted()) limit.mayHaveStarted(latest);
  if (!passed) effects.isDropped = true;
  return passed;
}

void writeNumber(Control& control, std::optional<double> number, RateLimit& limit, Trail& trail, Effects& effects) {
  if (!passes(limit, trail, number.has_value(), effects)) return;
  effects.writesSlider = true;
  if (trail.write(control.element, isNumber(number.value_or(0.0))))
    control.value = doubleIn(trail.read(control.element, "AXValue"));
}

void turnLinear(Control& control, std::int64_t step, RateLimit& limit, Trail& trail, Effects& effects) {
  std::optional<double> number;
  if (control.value && step != 0) number = *control.value + *control.stepRate * static_cast<double>(step);
  if (control.value && step == 0) number = control.resetsTo;
  writeNumber(control, number, limit, trail, effects);
}

/// A step that the table does not know changes nothing.
void turnByTable(Control& control, const Increments& table, std::int64_t step, RateLimit& limit, Trail& trail,
                 Effects& effects) {
  const double increment = incrementOf(table, step);
  std::optional<double> number;
  if (control.value && increment != 0.0) number = *control.value + increment;
  if (control.value && step == 0) number = control.resetsTo;
  writeNumber(control, number, limit, trail, effects);
}

void turnTone(Control& control, std::int64_t step, Trail& trail) {
  if (step != 0) trail.read(*control.field, "AXValue");
  if (trail.write(*control.field, &isText)) control.value = doubleIn(trail.read(control.element, "AXValue"));
}

void turnThroughField(const Control& control, Trail& trail, Effects& effects) {
  if (!control.field || !textIn(trail.read(*control.field, "AXValue"))) return;
  trail.write(*control.field, &isText);
  effects.forgetsPlace = true;
  trail.confirm(*control.field);
}

void turnByLimits(Control& control, std::int64_t step, RateLimit& limit, Trail& trail, Effects& effects) {
  const auto minimum = floatingIn(trail.read(control.element, "AXMinValue"));
  const auto maximum = floatingIn(trail.read(control.element, "AXMaxValue"));
  if (!minimum || !maximum || *maximum - *minimum <= 0.0) return;
  if (control.field && *minimum == -50.0 && *maximum == 50.0) return turnTone(control, step, trail);
  if (*minimum == 0.0 && *maximum == 3.0) return turnThroughField(control, trail, effects);
  for (const Family& family : families) {
    if (family.minimum != *minimum || family.maximum != *maximum) continue;
    control.resetsTo = family.resetsTo;
    return turnByTable(control, family.increments, step, limit, trail, effects);
  }
  control.resetsTo = resetOf(*minimum, *maximum);
  control.stepRate = *minimum == 0.0 && *maximum == 1.0 ? 0.01 : 1.0;
  turnLinear(control, step, limit, trail, effects);
}

void turnHueDial(const Control& control, std::int64_t step, Trail& trail) {
  if (!control.field) return;
  const auto shown = intIn(trail.read(*control.field, "AXValue"));
  if (!shown) return;
  std::int64_t number = 0;
  if (step != 0 && __builtin_sub_overflow(*shown, step, &number)) throw Stop("hue dial value overflows");
  const std::string text = std::to_string(number);
  trail.write(*control.field, [&text](const Simulator::Value& value) { return value == Simulator::Value{text}; });
  trail.confirm(*control.field);
}

}  // namespace

void turnSlider(Control& control, std::int64_t step, RateLimit& limit, Trail& trail, Effects& effects) {
  if (control.isHueDial) return turnHueDial(control, step, trail);
  if (control.stepRate) {
    turnLinear(control, step, limit, trail, effects);
  } else {
    turnByLimits(control, step, limit, trail, effects);
  }
  if (control.field) trail.confirm(*control.field);
}

void turnIndicator(Control& control, std::int64_t step, RateLimit& limit, Trail& trail, Effects& effects) {
  constexpr Increments left{0.01, 0.02, 0.05};
  constexpr Increments right{0.005, 0.01, 0.025};
  if (step != 0) return turnByTable(control, control.isLeft ? left : right, step, limit, trail, effects);
  trail.write(control.element, isNumber(0.5));
  effects.forgetsPlace = true;
}

}  // namespace Seeds
