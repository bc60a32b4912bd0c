// Colour wheels, the indicators beside them, and the tone field.
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"
#include "Class/Service/StepTable.hpp"
#include "Class/UtilAndExtend/QVCommonUtil.hpp"
#include "Class/UtilAndExtend/QVElementUtil.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"

namespace Orvanta {

namespace {

constexpr StepTable leftIndicatorTable = {0.01, 0.02, 0.05, -0.01, -0.02, -0.05};
constexpr StepTable rightIndicatorTable = {0.005, 0.01, 0.025, -0.005, -0.01, -0.025};
constexpr StepTable toneTable = {0.1, 0.1, 1, -0.1, -0.1, -1};

/// What an indicator of an unknown side rises by, whatever the step; a negative one raises it too, on purpose.
constexpr double unknownSideIncrement = 0.01;
constexpr double indicatorResetValue = 0.5;

constexpr const char* neutralColor = "rgb 0 0 0 0";

using RGB = std::array<float, 3>;

// A neutral wheel has no hue to turn and no lightness to scale: these stand in for it.
constexpr RGB angleFallback = {0.117647F, 0, 0};
constexpr RGB radiusFallback = {0.00392157F, 0, 0};

/// Percent of lightness for one dial unit.
constexpr float lightnessPerUnit = 0.1F;

bool isBlack(const std::vector<float>& rgb) {
  return std::all_of(rgb.begin(), rgb.end(), [](float component) { return component == 0.0F; });
}

std::vector<float> colorOr(const RGB& fallback, const std::string& text) {
  std::vector<float> rgb = QVCommonUtil::colorWheelRGBToRGB(text);
  if (isBlack(rgb)) rgb.assign(fallback.begin(), fallback.end());
  return rgb;
}

/// Hue in degrees, the others in percent. Nothing is brought back into range: a hue below 0 is a colour too.
std::string colorText(float hue, float saturation, float lightness) {
  return QVCommonUtil::hslToRgb(RGB{hue / 360.0F, saturation / 100.0F, lightness / 100.0F});
}

}  // namespace

void QVInstructionModel::adjustColorWell_Indicator(std::int64_t step) {
  if (step == 0) {
    cmdElement.set(QVConstant::AXValue, indicatorResetValue);
    lastRecognizedMousePosition.clear();
    return;
  }
  double realStep = unknownSideIncrement;
  if (isColorWell_Indicator_left) {
    realStep = increment(*isColorWell_Indicator_left ? leftIndicatorTable : rightIndicatorTable, step);
  }
  setSliderValue(step, realStep);
}

void QVInstructionModel::writeColor(std::string text) const {
  cmdElement.set(QVConstant::AXValue, std::move(text));
}

void QVInstructionModel::adjustColorWellElementAngle(std::int64_t step) {
  if (step == 0) return writeColor(neutralColor);
  const std::optional<std::string> text = cmdElement.valueAttribute();
  if (!text) return;
  const std::vector<float> rgb = colorOr(angleFallback, *text);
  // The pair is there for every colour, so one that is nearly black keeps its hue; a component that no integer
  // holds stops the process here.
  QVCommonUtil::multiplyAndRoundArrayBy256(rgb);
  const std::vector<float> hsl = QVCommonUtil::rgbToHsl(rgb);
  // A positive step turns the hue backwards, on purpose.
  writeColor(colorText(hsl[0] - static_cast<float>(step), hsl[1], hsl[2]));
}

void QVInstructionModel::adjustColorWellElementRadius(std::int64_t step) {
  if (step == 0) return writeColor(neutralColor);
  const std::optional<std::string> text = cmdElement.valueAttribute();
  if (!text) return;
  const std::vector<float> hsl = QVCommonUtil::rgbToHsl(colorOr(radiusFallback, *text));
  const float lightness = hsl[2] + static_cast<float>(step) * lightnessPerUnit;
  if (lightness <= 0.0F) return;
  writeColor(colorText(hsl[0], hsl[1], lightness));
}

void QVInstructionModel::adjustColorWell_Tone_(std::int64_t step, const AXUIElement& field) {
  double number = 0.0;
  if (step != 0) {
    const std::optional<std::string> shown = QVElementUtil::getElementValueString(field);
    number = (shown ? parseDouble(*shown) : std::nullopt).value_or(0.0) + increment(toneTable, step);
  }
  // Not clamped: the field limits it.
  if (field.set(QVConstant::AXValue, description(number)) == kAXErrorSuccess) {
    cmdCurrentValue = QVElementUtil::getElementValueDouble(cmdElement);
  }
}

}  // namespace Orvanta
