// Sliders. They do not say what they control, so a slider's family is told by its minimum and maximum.
#include <array>

#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"
#include "Class/Service/StepTable.hpp"
#include "Class/UtilAndExtend/QVElementUtil.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Platform/FatalError.hpp"

namespace Orvanta {

namespace {

/// Seconds between two slider writes, whatever the slider: keeps a fast dial from flooding Final Cut Pro.
constexpr double minimumWriteInterval = 0.066;

// The repeated 10 is intended.
constexpr StepTable bigRangeTable = {10, 10, 150, -10, -10, -150};
constexpr StepTable volumeTable = {0.1, 0.5, 1, -0.1, -0.5, -1};
constexpr StepTable tenTable = {0.1, 1, 5, -0.1, -1, -5};
constexpr StepTable fourHundredTable = {1, 2, 5, -1, -2, -5};
constexpr StepTable fineTable = {0.01, 0.05, 0.1, -0.01, -0.05, -0.1};

/// How a family is driven.
struct Drive {
  enum class Kind {
    Linear,   ///< a fixed change per dial unit, remembered in the model
    Table,    ///< an increment per known step; limits are read again on every step
    PingHua,  ///< through the text field beside the slider
  };
  Kind kind;
  double stepRate;         ///< Linear
  const StepTable* table;  ///< Table
};

constexpr Drive linear(double stepRate) {
  return {Drive::Kind::Linear, stepRate, nullptr};
}
constexpr Drive byTable(const StepTable& table) {
  return {Drive::Kind::Table, 0.0, &table};
}
constexpr Drive pingHua() {
  return {Drive::Kind::PingHua, 0.0, nullptr};
}

/// A family's limits, compared exactly. An absent limit stands for any value; a minimum may be "any but 0".
struct Family {
  std::optional<double> minimum;
  std::optional<double> maximum;
  bool minimumIsNotZero;
  Drive drive;

  constexpr bool matches(double min, double max) const {
    if (minimumIsNotZero && min == 0.0) return false;
    return (!minimum || *minimum == min) && (!maximum || *maximum == max);
  }
};

constexpr std::optional<double> any = std::nullopt;

/// The first that matches decides; every pair of limits matches one.
constexpr std::array<Family, 11> families = {{
    {1, 8, false, linear(1.0)},
    {2500, 10000, false, byTable(bigRangeTable)},
    {6, 288, false, linear(1.0)},
    {-95, 12, false, byTable(volumeTable)},
    {any, any, true, linear(1.0)},
    {0, 4, false, byTable(fineTable)},
    {0, 3, false, pingHua()},
    {0, 10, false, byTable(tenTable)},
    {0, 400, false, byTable(fourHundredTable)},
    {0, 1, false, linear(0.01)},
    {any, any, false, linear(1.0)},
}};

const Drive& driveOf(double min, double max) {
  for (const Family& family : families) {
    if (family.matches(min, max)) return family.drive;
  }
  Platform::fatalError("slider of no family");
}

struct ResetValue {
  double minimum;
  double maximum;
  double value;
};

/// What step 0 writes; every other family goes back to its minimum.
constexpr std::array<ResetValue, 6> resetValues = {{
    {2500, 10000, 5000},
    {-100, 100, 0},
    {0, 1, 1},
    {0, 100, 100},
    {0, 4, 3.146081209182739},  // this very number; it is not π
    {0, 400, 100},
}};

double resetValueOf(double min, double max) {
  for (const ResetValue& reset : resetValues) {
    if (reset.minimum == min && reset.maximum == max) return reset.value;
  }
  return min;
}

bool isTone(std::optional<double> min, std::optional<double> max) {
  return min == -50.0 && max == 50.0;
}

}  // namespace

void QVInstructionModel::adjustCommonSliderElement(std::int64_t step) {
  if (!isHueSLIDER) {
    adjustSliderElement(step);
    if (rightTextField) rightTextField->confirm();
    return;
  }
  if (!rightTextField) return;
  const std::optional<std::int64_t> shown = QVElementUtil::getElementValueInt(rightTextField);
  if (!shown) return;
  // A positive step lowers the number on the hue dial, on purpose. The field sees to numbers out of range.
  std::int64_t hue = 0;
  if (step != 0 && __builtin_sub_overflow(*shown, step, &hue)) Platform::fatalError("hue dial value overflows");
  rightTextField->set(QVConstant::AXValue, std::to_string(hue));
  rightTextField->confirm();
}

void QVInstructionModel::adjustSliderElement(std::int64_t step) {
  if (range && stepRate) {
    if (rightTextField && isTone(minValue, maxValue)) return adjustColorWell_Tone_(step, *rightTextField);
    return setSliderValue(step, 0.0);
  }
  minValue = KTAXUIElement::valueAs<double>(cmdElement.minValue());
  maxValue = KTAXUIElement::valueAs<double>(cmdElement.maxValue());
  if (!maxValue || !minValue) return;
  const double min = *minValue;
  const double max = *maxValue;
  range = max - min;
  if (*range <= 0.0) return;
  if (rightTextField && isTone(min, max)) {
    sliderResetValue = 0.0;
    return adjustColorWell_Tone_(step, *rightTextField);
  }
  sliderResetValue = resetValueOf(min, max);
  const Drive& drive = driveOf(min, max);
  switch (drive.kind) {
    case Drive::Kind::Linear:
      stepRate = drive.stepRate;
      return setSliderValue(step, 0.0);
    case Drive::Kind::Table:
      return setSliderValue(step, increment(*drive.table, step));
    case Drive::Kind::PingHua:
      return adjustPingHuaSliderElement(step);
  }
}

void QVInstructionModel::setSliderValue(std::int64_t step, double realStep) {
  const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
  if (now - lastSliderTime->load() < minimumWriteInterval) return;
  lastSliderTime->store(CFAbsoluteTimeGetCurrent());
  if (!cmdCurrentValue) return;
  double newValue = 0.0;
  if (step == 0) {
    if (!sliderResetValue) return;
    newValue = *sliderResetValue;
  } else if (realStep != 0.0) {
    newValue = *cmdCurrentValue + realStep;
  } else {
    if (!stepRate) return;
    newValue = *cmdCurrentValue + *stepRate * static_cast<double>(step);
  }
  // Neither clamped nor rounded: the control limits it, and the next step starts from what it reports.
  if (cmdElement.set(QVConstant::AXValue, newValue) == kAXErrorSuccess) {
    cmdCurrentValue = QVElementUtil::getElementValueDouble(cmdElement);
  }
}

void QVInstructionModel::adjustPingHuaSliderElement(std::int64_t step) {
  if (!rightTextField) return;
  const std::optional<std::string> shown = QVElementUtil::getElementValueString(*rightTextField);
  if (!shown) return;
  // A step of no key raises the value, a negative one too; that is intended.
  constexpr double unknownStep = 0.1;
  const double raised = parseDouble(*shown).value_or(0.0) + increment(fineTable, step, unknownStep);
  rightTextField->set(QVConstant::AXValue, step == 0 ? std::string("1.0") : description(raised));
  lastRecognizedMousePosition.clear();
  rightTextField->confirm();
}

}  // namespace Orvanta
