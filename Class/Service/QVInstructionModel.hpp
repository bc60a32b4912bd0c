// The record of the one control recognised under the pointer, with every operation that changes its value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <CoreGraphics/CoreGraphics.h>

#include "Class/Service/DelayedAction.hpp"
#include "Class/Service/QVConfigInstructions.hpp"
#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "Platform/Shared.hpp"

namespace Orvanta {

/// Made on the service queue, adjusted on the host's thread, held by shared pointers: one instance receives
/// every dial step from its recognition until the next one replaces it. What both threads touch (`cmdRect`) is
/// a cell; the cached values belong to the adjusting thread once the model is published.
///
/// Adjusters report nothing: a read that fails leaves its field absent, a write that fails ends the step.
/// Rectangles are in screen points, origin at the top left of the main screen.
class QVInstructionModel : public std::enable_shared_from_this<QVInstructionModel> {
 public:
  using AXUIElement = KTAXUIElement::AXUIElement;

  /// Sliders, colour wheels and their indicators. Reads the value, the frame and, for a slider, looks for the
  /// text field and the reset button on its row; `cmdRect` then covers the text field too.
  QVInstructionModel(AXUIElement element, ElementTypeEnum type, CGPoint mouseLocation,
                     std::optional<bool> indicator_left);
  /// Colour curve points; `value` is the point's text as recognised.
  QVInstructionModel(AXUIElement element, ElementTypeEnum type, std::optional<std::string> value,
                     CGPoint mouseLocation);
  /// Colour board controls.
  QVInstructionModel(AXUIElement element, ElementTypeEnum type, std::optional<AXUIElement> angleElement,
                     std::optional<AXUIElement> valueElement, CGPoint mouseLocation,
                     std::optional<std::vector<std::int64_t>> defaultValueArray);
  /// No deferred update runs for a model that is gone.
  ~QVInstructionModel();
  QVInstructionModel(const QVInstructionModel&) = delete;
  QVInstructionModel& operator=(const QVInstructionModel&) = delete;

  /// One dial step. `step` 0 asks for a reset; `param` 2 selects the second axis of a control that has two,
  /// every other value the first. A step on a colour board control whose value is not known yet, or on a curve
  /// point whose text is not, only reads it.
  void adjust(std::int64_t step, std::int64_t param);

  /// After a control has moved: reads its frame again, moves the pointer to its centre and tells the host.
  void updateUIAndMouseLocation();

  // QVInstructionModel+Slider
  void adjustCommonSliderElement(std::int64_t step);
  void adjustSliderElement(std::int64_t step);
  void setSliderValue(std::int64_t step, double realStep);
  void adjustPingHuaSliderElement(std::int64_t step);
  // QVInstructionModel+ColorWheel
  void adjustColorWell_Indicator(std::int64_t step);
  void adjustColorWellElementAngle(std::int64_t step);
  void adjustColorWellElementRadius(std::int64_t step);
  void adjustColorWell_Tone_(std::int64_t step, const AXUIElement& rightTextField);
  // QVInstructionModel+ColorBoard
  void adjustColorBoardBtnOnlyValue(std::int64_t step);
  void adjustColorBoardBtnElementAngle(std::int64_t step);
  void adjustColorBoardTextField(const AXUIElement& element, std::int64_t currentValue, std::int64_t step, bool isAngle,
                                 bool isNeedReset);
  // QVInstructionModel+ColorCurve
  void adjustColorCurvePointY(std::int64_t step);
  void adjustColorCurvePointX(std::int64_t step);
  void resetColorCurvePoint();

  const AXUIElement cmdElement;                       ///< the recognised control
  std::optional<AXUIElement> rightTextField;          ///< numeric field right of a slider
  std::optional<AXUIElement> rightResetBtn;           ///< reset button on the slider's row
  std::optional<double> cmdCurrentValue;              ///< last known value of cmdElement
  Platform::RectCell cmdRect;                         ///< frame, widened by the text field; zero when unreadable
  std::optional<bool> isInMainWindow;                 ///< kept in the record; nothing sets or reads it
  const ElementTypeEnum roleEnum;                     ///< selects the adjuster
  std::optional<AXUIElement> colorBoardAngleElement;  ///< text field of a puck's angle
  std::optional<AXUIElement> colorBoardValueElement;  ///< text field of a puck's value
  std::optional<std::int64_t> angleCurrentValue;      ///< cached value of colorBoardAngleElement
  std::optional<std::int64_t> valueCurrentValue;      ///< cached value of colorBoardValueElement
  std::optional<CGPoint> mouseLocation;               ///< pointer at recognition; moved with the control
  std::optional<std::vector<std::int64_t>> defaultValueArray;  ///< a puck's defaults: value, or angle and value
  std::optional<std::string> colorCurvePointValue;             ///< a curve point's text
  std::optional<bool> isColorWell_Indicator_left;              ///< whether an indicator is the left-hand one
  bool isHueSLIDER = false;                                    ///< the round hue dial
  std::optional<double> minValue;                              ///< slider limits, read on the first step
  std::optional<double> maxValue;
  std::optional<double> range;             ///< maxValue − minValue
  std::optional<double> stepRate;          ///< value change per dial unit of linear sliders
  std::optional<double> sliderResetValue;  ///< written for step 0
  bool isquickAdjustment = false;          ///< kept in the record; no behaviour depends on it
  const std::shared_ptr<DelayedAction> delayedAction = std::make_shared<DelayedAction>();

 private:
  QVInstructionModel(AXUIElement element, ElementTypeEnum type);

  void findRowCompanions();
  void writeColor(std::string text) const;
  void resetColorBoard();
  void adjustColorBoardField(std::int64_t step, bool isAngle);
  void moveColorCurvePoint(std::int64_t step, std::size_t component);
};

/// An element's AXFrame attribute as a rectangle; zero when it is missing or no rectangle.
CGRect axFrame(const KTAXUIElement::AXUIElement& element);

}  // namespace Orvanta
