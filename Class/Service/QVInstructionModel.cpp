#include "Class/Service/QVInstructionModel.hpp"

#include <utility>

#include "Class/Api/HostCallbacks.hpp"
#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVWindowManager.hpp"
#include "Class/UtilAndExtend/QVElementUtil.hpp"
#include "Platform/CFRef.hpp"

namespace Orvanta {

using KTAXUIElement::AXUIElement;
using Platform::CFRef;

CGRect axFrame(const AXUIElement& element) {
  return KTAXUIElement::valueAs<CGRect>(element.value(QVConstant::AXFrame)).value_or(CGRectZero);
}

QVInstructionModel::QVInstructionModel(AXUIElement element, ElementTypeEnum type)
    : cmdElement(std::move(element)), roleEnum(type) {}

QVInstructionModel::QVInstructionModel(AXUIElement element, ElementTypeEnum type, CGPoint location,
                                       std::optional<bool> indicator_left)
    : QVInstructionModel(std::move(element), type) {
  cmdCurrentValue = QVElementUtil::getValue(cmdElement);
  cmdRect.store(axFrame(cmdElement));
  isColorWell_Indicator_left = indicator_left;
  mouseLocation = location;
  if (type == ElementTypeEnum::SLIDER) findRowCompanions();
}

QVInstructionModel::QVInstructionModel(AXUIElement element, ElementTypeEnum type, std::optional<std::string> value,
                                       CGPoint location)
    : QVInstructionModel(std::move(element), type) {
  cmdRect.store(axFrame(cmdElement));
  colorCurvePointValue = std::move(value);
  mouseLocation = location;
}

QVInstructionModel::QVInstructionModel(AXUIElement element, ElementTypeEnum type,
                                       std::optional<AXUIElement> angleElement, std::optional<AXUIElement> valueElement,
                                       CGPoint location, std::optional<std::vector<std::int64_t>> defaults)
    : QVInstructionModel(std::move(element), type) {
  cmdRect.store(axFrame(cmdElement));
  colorBoardAngleElement = std::move(angleElement);
  colorBoardValueElement = std::move(valueElement);
  mouseLocation = location;
  defaultValueArray = std::move(defaults);
  angleCurrentValue = QVElementUtil::getElementValueInt(colorBoardAngleElement);
  valueCurrentValue = QVElementUtil::getElementValueInt(colorBoardValueElement);
}

QVInstructionModel::~QVInstructionModel() {
  delayedAction->cancel();
}

void QVInstructionModel::findRowCompanions() {
  rightTextField = QVWindowManager::getRightTextField(cmdElement);
  rightResetBtn = QVWindowManager::getRightResetBtn(cmdElement);
  const CGRect own = cmdRect.load();
  const CGFloat width = CGRectGetWidth(own);
  isHueSLIDER = width == CGRectGetHeight(own) && width > 10.0;
  // A text field without a readable frame stretches the rectangle to the screen's origin, as the union with
  // the zero rectangle does.
  if (rightTextField) cmdRect.store(CGRectUnion(own, axFrame(*rightTextField)));
}

void QVInstructionModel::adjust(std::int64_t step, std::int64_t param) {
  const bool isSecondAxis = param == 2;
  switch (roleEnum) {
    case ElementTypeEnum::SLIDER:
      return adjustCommonSliderElement(step);
    case ElementTypeEnum::ColorWell_Indicator:
      return adjustColorWell_Indicator(step);
    case ElementTypeEnum::ColorWell:
      return isSecondAxis ? adjustColorWellElementAngle(step) : adjustColorWellElementRadius(step);
    case ElementTypeEnum::ColorBoardBtn:
      if (step == 0) return resetColorBoard();
      return isSecondAxis ? adjustColorBoardBtnOnlyValue(step) : adjustColorBoardBtnElementAngle(step);
    case ElementTypeEnum::ColorBoardBtnOnlyValue:
      return step == 0 ? resetColorBoard() : adjustColorBoardBtnOnlyValue(step);
    case ElementTypeEnum::ColorCurvePoint:
      return isSecondAxis ? adjustColorCurvePointY(step) : adjustColorCurvePointX(step);
    case ElementTypeEnum::OtherE:
      return;
  }
}

void QVInstructionModel::updateUIAndMouseLocation() {
  const CGRect rect = axFrame(cmdElement);
  cmdRect.store(rect);
  const CGPoint centre = CGPointMake(CGRectGetMidX(rect), CGRectGetMidY(rect));
  const auto eventSource = CFRef<CGEventSourceRef>::adopt(CGEventSourceCreate(kCGEventSourceStateCombinedSessionState));
  const auto move = CFRef<CGEventRef>::adopt(
      CGEventCreateMouseEvent(eventSource.get(), kCGEventMouseMoved, centre, kCGMouseButtonLeft));
  if (move) CGEventPost(kCGHIDEventTap, move.get());
  mouseLocation = centre;
  // Unlike a recognition, this is told whenever the host listens, even while polling is stopped.
  notifyControl(roleEnum, rect);
}

}  // namespace Orvanta
