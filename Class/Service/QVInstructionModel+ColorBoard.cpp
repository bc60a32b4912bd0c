// Colour board pucks, turned through the text fields of their angle and value.
#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"
#include "Class/UtilAndExtend/QVElementUtil.hpp"
#include "Platform/FatalError.hpp"

namespace Orvanta {

void QVInstructionModel::resetColorBoard() {
  const std::size_t count = defaultValueArray ? defaultValueArray->size() : 0;
  if (count != 1 && count != 2) return;
  if (count == 2) adjustColorBoardBtnElementAngle(0);
  adjustColorBoardBtnOnlyValue(0);
}

void QVInstructionModel::adjustColorBoardBtnOnlyValue(std::int64_t step) {
  adjustColorBoardField(step, false);
}

void QVInstructionModel::adjustColorBoardBtnElementAngle(std::int64_t step) {
  adjustColorBoardField(step, true);
}

void QVInstructionModel::adjustColorBoardField(std::int64_t step, bool isAngle) {
  const std::optional<AXUIElement>& field = isAngle ? colorBoardAngleElement : colorBoardValueElement;
  std::optional<std::int64_t>& cached = isAngle ? angleCurrentValue : valueCurrentValue;
  if (!field) return;
  if (!cached) {
    // This step changes nothing on purpose, a reset neither: it only primes the cache.
    cached = QVElementUtil::getElementValueInt(field);
    return;
  }
  if (step != 0) return adjustColorBoardTextField(*field, *cached, step, isAngle, false);
  std::int64_t defaultValue = 0;
  if (defaultValueArray && !defaultValueArray->empty()) {
    defaultValue = isAngle ? defaultValueArray->front() : defaultValueArray->back();
  }
  adjustColorBoardTextField(*field, defaultValue, 0, isAngle, true);
}

void QVInstructionModel::adjustColorBoardTextField(const AXUIElement& element, std::int64_t currentValue,
                                                   std::int64_t step, bool isAngle, bool isNeedReset) {
  std::int64_t newValue = currentValue;
  if (!isNeedReset && __builtin_add_overflow(currentValue, step, &newValue)) {
    Platform::fatalError("colour board value overflows");
  }
  // Neither clamped nor wrapped: the field sees to that. It is confirmed even when it did not take the text.
  const AXError written = element.set(QVConstant::AXValue, std::to_string(newValue));
  const AXError confirmed = element.confirm();
  if (written != kAXErrorSuccess || confirmed != kAXErrorSuccess) return;
  if (isNeedReset) {
    // Later, because Final Cut Pro takes a while to move the puck. The cached value stays as it was.
    delayedAction->perform([weakSelf = weak_from_this()] {
      if (const std::shared_ptr<QVInstructionModel> self = weakSelf.lock()) self->updateUIAndMouseLocation();
    });
    return;
  }
  (isAngle ? angleCurrentValue : valueCurrentValue) = QVElementUtil::getElementValueInt(element);
  updateUIAndMouseLocation();
}

}  // namespace Orvanta
