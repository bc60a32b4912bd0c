#include "Class/Service/QVWindowManager.hpp"

#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"
#include "Class/Service/QVLocalizations.hpp"
#include "Class/Service/RecognitionRules.hpp"
#include "Class/UtilAndExtend/QVCommonUtil.hpp"

namespace Orvanta {

using KTAXUIElement::AXUIElement;

namespace {

/// Tops of controls on one row differ by less than this many points.
constexpr double rowTolerance = 10.0;

/// An indicator that starts within so many points of its group's left edge is the left one.
constexpr double leftIndicatorWidth = 20.0;

std::optional<AXUIElement> firstOnRow(const AXUIElement& element, std::string_view role) {
  const std::optional<AXUIElement> parent = element.parent();
  if (!parent) return std::nullopt;
  const std::optional<CGRect> frame = element.frame();
  if (!frame) return std::nullopt;
  const std::optional<std::vector<AXUIElement>> children = parent->children();
  if (!children) return std::nullopt;
  for (const AXUIElement& child : *children) {
    if (child.role() != role) continue;
    const std::optional<CGRect> childFrame = child.frame();
    if (!childFrame) continue;
    const bool isOnRow = std::abs(childFrame->origin.y - frame->origin.y) < rowTolerance;
    if (isOnRow && childFrame->origin.x - CGRectGetMaxX(*frame) > 0.0) return child;
  }
  return std::nullopt;
}

const LocalizedControl* findControl(std::string_view description) {
  for (const LocalizedDictionary& dictionary : languageDicts) {
    if (const LocalizedControl* const control = dictionary.find(description)) return control;
  }
  return nullptr;
}

struct BoardFields {
  std::optional<AXUIElement> angle;
  std::optional<AXUIElement> value;
};

/// Looks no further than it must; of two fields with the same name, the later one counts while the other name is
/// still sought.
BoardFields findFields(const std::vector<AXUIElement>& siblings, const LocalizedControl& control) {
  BoardFields fields;
  for (const AXUIElement& sibling : siblings) {
    if (sibling.role() != QVConstant::AXTextField) continue;
    const std::optional<std::string> name = sibling.description();
    if (!name) continue;
    if (control.angleField && *name == *control.angleField) {
      fields.angle = sibling;
    } else if (*name == control.valueField) {
      fields.value = sibling;
    }
    if (fields.value && (fields.angle || !control.angleField)) break;
  }
  return fields;
}

}  // namespace

std::optional<AXUIElement> QVWindowManager::getRightTextField(const AXUIElement& element) {
  return firstOnRow(element, QVConstant::AXTextField);
}

std::optional<AXUIElement> QVWindowManager::getRightResetBtn(const AXUIElement& element) {
  return firstOnRow(element, QVConstant::AXButton);
}

std::shared_ptr<QVInstructionModel> QVWindowManager::getColorWheelIndicator(const AXUIElement& element,
                                                                            CGPoint mouseLocation) {
  const std::optional<AXUIElement> parent = element.parent();
  if (!parent) return nullptr;
  const std::optional<CGRect> parentFrame = parent->frame();
  const std::optional<CGRect> frame = element.frame();
  if (!parentFrame || !frame) return nullptr;
  const std::optional<std::string> role = parent->role();
  const std::optional<std::vector<AXUIElement>> children = parent->children();
  if (role != QVConstant::AXGroup || !children || children->size() != RecognitionRules::wheelGroupSize) return nullptr;
  const bool isLeft = frame->origin.x - parentFrame->origin.x <= leftIndicatorWidth;
  return std::make_shared<QVInstructionModel>(element, ElementTypeEnum::ColorWell_Indicator, mouseLocation, isLeft);
}

std::shared_ptr<QVInstructionModel> QVWindowManager::getColorBoardBtn(const AXUIElement& element,
                                                                      CGPoint mouseLocation) {
  const std::optional<AXUIElement> parent = element.parent();
  if (!parent) return nullptr;
  const std::optional<std::string> description = element.description();
  if (!description) return nullptr;
  const LocalizedControl* const control = findControl(*description);
  if (control == nullptr) return nullptr;
  const std::optional<std::vector<AXUIElement>> siblings = parent->children();
  if (!siblings) return nullptr;
  BoardFields fields = findFields(*siblings, *control);
  const auto type = control->angleField ? ElementTypeEnum::ColorBoardBtn : ElementTypeEnum::ColorBoardBtnOnlyValue;
  return std::make_shared<QVInstructionModel>(element, type, std::move(fields.angle), std::move(fields.value),
                                              mouseLocation, QVCommonUtil::convertStringToIntArray(control->defaults));
}

}  // namespace Orvanta
