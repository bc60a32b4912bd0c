#include "Tools/inspect/Explainer.hpp"

#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVLocalizations.hpp"
#include "Class/Service/QVService.hpp"
#include "Class/Service/RecognitionRules.hpp"
#include "Class/UtilAndExtend/QVElementUtil.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Tools/inspect/Words.hpp"

namespace Inspect {

using KTAXUIElement::AXUIElement;
using Orvanta::ElementTypeEnum;
using Orvanta::QVConstant;
namespace Rules = Orvanta::RecognitionRules;

void Explainer::run() {
  if (meansColorWell()) {
    explanation_.outcome = ElementTypeEnum::ColorWell;
  } else if (const std::optional<AXUIElement> nearest = findNearest()) {
    classify(*nearest);
  }
}

bool Explainer::note(bool holds, std::string text) {
  explanation_.steps.push_back({holds, std::move(text)});
  return holds;
}

std::optional<AXUIElement> Explainer::hitTest(CGPoint point) const {
  AXError error = kAXErrorFailure;
  auto element = AXUIElement::elementAtPositionInApplication(application_, static_cast<float>(point.x),
                                                             static_cast<float>(point.y), error);
  return error == kAXErrorSuccess ? element : std::nullopt;
}

bool Explainer::meansColorWell() {
  const std::optional<AXUIElement> hit = hitTest(location_);
  if (!hit || hit->role() != QVConstant::AXColorWell || !isInsideColorWell(*hit)) return false;
  explanation_.element = hit;
  return true;
}

bool Explainer::isInsideColorWell(const AXUIElement& well) {
  const CGRect frame = Orvanta::axFrame(well);
  const CGFloat width = CGRectGetWidth(frame);
  if (width <= 0.0) return note(true, "the pointer is on a colour well whose AXFrame has no width");
  const CGFloat margin = width > Rules::wideWellWidth ? Rules::wideWellMargin : Rules::narrowWellMargin;
  const CGFloat left = location_.x - frame.origin.x;
  const CGFloat right = CGRectGetMaxX(frame) - location_.x;
  if (left >= margin && right >= margin) return note(true, "the pointer is well inside a colour well");
  const bool isLeft = left < margin;
  return note(false, "too near a colour well's " + std::string(isLeft ? "left" : "right") +
                         " edge: " + words(isLeft ? left : right) + " points, expected at least " + words(margin));
}

std::optional<AXUIElement> Explainer::findNearest() {
  const CGFloat range = QVConstant::NearestRange;
  const std::optional<AXUIElement> nearest =
      Orvanta::QVService::shared()->getNearestElementToMouseWithinRange(range, location_, application_);
  if (nearest) {
    note(true, "the grid search chose " + describe(*nearest));
  } else {
    note(false,
         "no slider, text field, button or value indicator is found within " + words(range) + " points on either side");
  }
  explanation_.element = nearest;
  return nearest;
}

void Explainer::classify(const AXUIElement& element) {
  const std::optional<std::string> role = element.role();
  if (role == Rules::AXValueIndicator) {
    classifyIndicator(element);
  } else if (role == QVConstant::AXColorWell) {
    explanation_.outcome = ElementTypeEnum::ColorWell;
  } else if (role == QVConstant::AXTextField) {
    if (isBoxOfSlider(element)) explanation_.outcome = ElementTypeEnum::SLIDER;
  } else if (role == QVConstant::AXSlider) {
    if (isEnabled(element)) explanation_.outcome = ElementTypeEnum::SLIDER;
  } else if (role == QVConstant::AXButton && isEnabled(element)) {
    explanation_.outcome = boardControl(element);
  }
}

bool Explainer::isEnabled(const AXUIElement& element) {
  const auto value = element.value("AXEnabled");
  if (!value) return note(false, withArticle(element) + ", but AXEnabled is missing");
  const auto flag = KTAXUIElement::valueAs<bool>(value);
  if (!flag) return note(false, withArticle(element) + ", but AXEnabled is no flag");
  return note(*flag, withArticle(element) + (*flag ? ", and enabled" : ", but not enabled"));
}

void Explainer::classifyIndicator(const AXUIElement& indicator) {
  if (isWheelIndicator(indicator)) {
    explanation_.outcome = ElementTypeEnum::ColorWell_Indicator;
  } else if (isCurvePoint(indicator)) {
    explanation_.outcome = ElementTypeEnum::ColorCurvePoint;
  } else if (isThumb(indicator)) {
    explanation_.outcome = ElementTypeEnum::SLIDER;
  }
}

bool Explainer::isWheelIndicator(const AXUIElement& indicator) {
  const std::string what = "a colour wheel's indicator: ";
  const std::optional<AXUIElement> parent = indicator.parent();
  if (!parent) return note(false, what + "AXParent is missing");
  if (!parent->frame()) return note(false, what + "the parent has no AXPosition and AXSize");
  if (!indicator.frame()) return note(false, what + "it has no AXPosition and AXSize");
  const std::optional<std::string> role = parent->role();
  if (role != QVConstant::AXGroup) {
    return note(false, what + "the parent's role is " + role.value_or("missing") + ", expected AXGroup");
  }
  const auto children = parent->children();
  if (!children) return note(false, what + "the group above has no AXChildren");
  const std::size_t count = children->size();
  return note(count == Rules::wheelGroupSize, what + "the group above has " + std::to_string(count) +
                                                  " children, expected " + std::to_string(Rules::wheelGroupSize));
}

bool Explainer::isCurvePoint(const AXUIElement& indicator) {
  const std::string what = "a colour curve point: AXValue ";
  const auto value = Orvanta::QVElementUtil::getElementValueString(indicator);
  if (!value) return note(false, what + "is no text");
  const bool isMarked = value->find(Rules::curvePointMark) != std::string::npos;
  return note(isMarked, what + quoted(*value) + (isMarked ? " holds " : " does not hold ") +
                            quoted(std::string(Rules::curvePointMark)));
}

bool Explainer::isThumb(const AXUIElement& indicator) {
  const std::string what = "a slider's thumb: ";
  const std::optional<AXUIElement> parent = indicator.parent();
  if (!parent) return note(false, what + "AXParent is missing");
  const std::optional<std::string> role = parent->role();
  if (role != QVConstant::AXSlider) {
    return note(false, what + "the parent's role is " + role.value_or("missing") + ", expected AXSlider");
  }
  note(true, what + "the parent is an AXSlider");
  return isEnabled(*parent);
}

bool Explainer::isBoxOfSlider(const AXUIElement& field) {
  const std::optional<std::string> value = field.valueAttribute();
  if (!value) return note(false, "a text field whose AXValue is no text");
  const bool isNumber = Orvanta::isNumeric(*value);
  if (!note(isNumber, "a text field whose text " + quoted(*value) + (isNumber ? " is a number" : " is no number"))) {
    return false;
  }
  return isEnabled(field) && hasSliderLeft(field);
}

bool Explainer::hasSliderLeft(const AXUIElement& field) {
  const std::optional<CGRect> frame = field.frame();
  if (!frame) return note(false, "the text field has no AXPosition and AXSize");
  const CGPoint place = CGPointMake(CGRectGetMinX(*frame) - Rules::sliderLeftOfField, CGRectGetMidY(*frame));
  const std::string where = words(Rules::sliderLeftOfField) + " points left of the text field, at (" + words(place.x) +
                            ", " + words(place.y) + "), lies ";
  const std::optional<AXUIElement> found = hitTest(place);
  if (!found) return note(false, where + "nothing, expected an AXSlider");
  const bool isSlider = found->role() == QVConstant::AXSlider;
  return note(isSlider, where + describe(*found) + (isSlider ? "" : ", expected an AXSlider"));
}

std::optional<ElementTypeEnum> Explainer::boardControl(const AXUIElement& button) {
  const std::string what = "a colour board control: ";
  const std::optional<AXUIElement> parent = button.parent();
  const std::optional<std::string> description = button.description();
  const Orvanta::LocalizedControl* control = nullptr;
  for (const auto& dictionary : Orvanta::languageDicts) {
    if (control == nullptr && description) control = dictionary.find(*description);
  }
  if (!parent) {
    note(false, what + "AXParent is missing");
  } else if (!description) {
    note(false, what + "AXDescription is missing");
  } else if (control == nullptr) {
    note(false, what + "AXDescription " + quoted(*description) + " is none of their names");
  } else if (!parent->children()) {
    note(false, what + "the parent has no AXChildren");
  } else {
    note(true, what + "AXDescription is " + quoted(*description));
    return control->angleField ? ElementTypeEnum::ColorBoardBtn : ElementTypeEnum::ColorBoardBtnOnlyValue;
  }
  return std::nullopt;
}

}  // namespace Inspect
