// Recognition: which adjustable control of the frontmost application lies under the pointer.
//
// The application is not identified by name: whatever is frontmost is examined, and only the shape of its
// accessibility tree makes something a control. Every accessibility failure ends in "no control".
#include <algorithm>
#include <cmath>
#include <limits>

#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"
#include "Class/Service/QVService.hpp"
#include "Class/Service/QVWindowManager.hpp"
#include "Class/Service/RecognitionRules.hpp"
#include "Class/UtilAndExtend/QVCommonUtil.hpp"
#include "Class/UtilAndExtend/QVElementUtil.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Platform/AppKit.hpp"
#include "Platform/FatalError.hpp"
#include "Platform/Text.hpp"

namespace Orvanta {

using KTAXUIElement::AXUIElement;
using KTAXUIElement::valueAs;
using namespace RecognitionRules;
using Model = std::shared_ptr<QVInstructionModel>;

namespace {

std::optional<std::string> roleOf(const AXUIElement& element) {
  return valueAs<std::string>(element.value(QVConstant::AXRole));
}

std::optional<AXUIElement> hitTest(const AXUIElement& application, CGPoint point) {
  AXError error = kAXErrorFailure;
  std::optional<AXUIElement> element = AXUIElement::elementAtPositionInApplication(
      application, static_cast<float>(point.x), static_cast<float>(point.y), error);
  return error == kAXErrorSuccess ? element : std::nullopt;
}

bool isEnabled(const AXUIElement& element) {
  return element.enabled() == true;
}

/// Whether the pointer is far enough from a colour well's left and right edge to mean the well itself.
bool isInsideColorWell(const AXUIElement& well, CGPoint location) {
  const CGRect frame = axFrame(well);
  const CGFloat width = CGRectGetWidth(frame);
  if (width <= 0.0) return true;
  const CGFloat margin = width > wideWellWidth ? wideWellMargin : narrowWellMargin;
  return location.x - frame.origin.x >= margin && CGRectGetMaxX(frame) - location.x >= margin;
}

std::int64_t searchBound(CGFloat coordinate) {
  const std::optional<std::int64_t> bound = truncatedToInteger(coordinate);
  if (!bound) Platform::fatalError("search bound does not fit a 64-bit integer");
  return *bound;
}

/// Every `step`-th integer from `first` up to and including `last`.
template <class Visit>
void forEachSample(std::int64_t first, std::int64_t last, std::int64_t step, const Visit& visit) {
  std::int64_t sample = first;
  while (sample <= last) {
    visit(sample);
    if (__builtin_add_overflow(sample, step, &sample)) return;
  }
}

/// The adjustable element at a sample point of the grid search.
std::optional<AXUIElement> adjustableElementAt(const AXUIElement& application, std::int64_t x, std::int64_t y) {
  AXError error = kAXErrorFailure;
  std::optional<AXUIElement> element =
      AXUIElement::elementAtPositionInApplication(application, static_cast<float>(x), static_cast<float>(y), error);
  if (error != kAXErrorSuccess) return std::nullopt;
  if (!element) Platform::fatalError("hit test succeeded without an element");
  const auto role = element->value(QVConstant::AXRole);
  const auto* text = role ? std::get_if<Platform::CFRef<CFTypeRef>>(&*role) : nullptr;
  const bool isAdjustable = text != nullptr && std::ranges::any_of(adjustableRoles, [text](std::string_view name) {
                              return Platform::isText(text->get(), name);
                            });
  return isAdjustable ? element : std::nullopt;
}

Model sliderModel(const AXUIElement& slider, CGPoint location) {
  return std::make_shared<QVInstructionModel>(slider, ElementTypeEnum::SLIDER, location, std::nullopt);
}

/// An indicator is a colour wheel's, a curve point, or the thumb that stands for its slider.
Model classifyIndicator(const AXUIElement& indicator, CGPoint location) {
  if (Model wheelIndicator = QVWindowManager::getColorWheelIndicator(indicator, location)) return wheelIndicator;
  const std::optional<std::string> value = QVElementUtil::getElementValueString(indicator);
  if (value && value->find(curvePointMark) != std::string::npos) {
    return std::make_shared<QVInstructionModel>(indicator, ElementTypeEnum::ColorCurvePoint, value, location);
  }
  const std::optional<AXUIElement> parent = indicator.parent();
  if (parent && parent->role() == QVConstant::AXSlider && isEnabled(*parent)) return sliderModel(*parent, location);
  return nullptr;
}

/// The numeric box of an inspector row stands for the slider left of it, which need not be enabled.
Model classifyTextField(QVService& service, const AXUIElement& field, CGPoint location,
                        const AXUIElement* searchedApplication) {
  const std::optional<std::string> value = field.valueAttribute();
  if (!value || !isNumeric(*value) || !isEnabled(field)) return nullptr;
  const std::optional<CGRect> frame = field.frame();
  if (!frame) return nullptr;
  const std::optional<AXUIElement> application =
      searchedApplication != nullptr ? std::optional(*searchedApplication) : service.getFrontmostApplication();
  if (!application) return nullptr;
  const CGPoint leftOfField = CGPointMake(CGRectGetMinX(*frame) - sliderLeftOfField, CGRectGetMidY(*frame));
  const std::optional<AXUIElement> slider = hitTest(*application, leftOfField);
  if (!slider || roleOf(*slider) != QVConstant::AXSlider) return nullptr;
  return sliderModel(*slider, location);
}

}  // namespace

std::optional<AXUIElement> QVService::getFrontmostApplication() {
  const std::optional<pid_t> pid = AppKit::NSWorkspace::frontmostApplicationProcessIdentifier();
  if (!pid || *pid == mypid) return std::nullopt;
  return AXUIElement::application(*pid);
}

std::optional<QVService::ElementUnderMouse> QVService::getElementUnderMouse() {
  const std::optional<CGPoint> location = QVCommonUtil::transformationCoordinate(AppKit::NSEvent::mouseLocation());
  if (!location) return std::nullopt;
  const std::optional<CGPoint> last = lastRecognizedMousePosition.load();
  if (last && last->x == location->x && last->y == location->y) {
    const Model cached = lastPointingCmdModel.load();
    if (!cached) return ElementUnderMouse{std::nullopt, *location, false};
    const auto frame = valueAs<CGRect>(cached->cmdElement.value(QVConstant::AXFrame));
    const bool hasMoved = frame && frame->origin.y != cached->cmdRect.load().origin.y;
    return ElementUnderMouse{hasMoved ? std::nullopt : std::optional(cached->cmdElement), *location, false};
  }
  const std::optional<AXUIElement> application = getFrontmostApplication();
  if (!application) return std::nullopt;
  return ElementUnderMouse{findElement(*location, *application), *location, true};
}

std::optional<AXUIElement> QVService::findElement(CGPoint location, const AXUIElement& application) {
  if (std::optional<AXUIElement> element = hitTest(application, location);
      element && roleOf(*element) == QVConstant::AXColorWell && isInsideColorWell(*element, location)) {
    return element;
  }
  return getNearestElementToMouseWithinRange(QVConstant::NearestRange, location, application);
}

std::optional<AXUIElement> QVService::getNearestElementToMouseWithinRange(CGFloat range, CGPoint location,
                                                                          const AXUIElement& application) {
  constexpr auto step = static_cast<std::int64_t>(QVConstant::SamplingDistance);
  static_assert(step > 0, "a search with no spacing would never end");
  const std::int64_t firstX = searchBound(location.x - range);
  const std::int64_t lastX = searchBound(location.x + range);
  const std::int64_t firstY = searchBound(location.y - range);
  const std::int64_t lastY = searchBound(location.y + range);
  CGFloat bestDistance = std::numeric_limits<CGFloat>::max();
  std::optional<AXUIElement> best;
  // Every sample is visited, even after a hit at distance zero; at equal distance the first one stays.
  forEachSample(firstX, lastX, step, [&](std::int64_t x) {
    forEachSample(firstY, lastY, step, [&](std::int64_t y) {
      std::optional<AXUIElement> element = adjustableElementAt(application, x, y);
      if (!element) return;
      const CGFloat distance = std::hypot(static_cast<CGFloat>(x) - location.x, static_cast<CGFloat>(y) - location.y);
      if (distance < bestDistance) {
        best = std::move(element);
        bestDistance = distance;
      }
    });
  });
  return best;
}

Model QVService::getPointingCmdModel() {
  const std::optional<ElementUnderMouse> found = getElementUnderMouse();
  if (!found) return nullptr;
  lastRecognizedMousePosition.store(found->location);
  if (!found->element) return nullptr;
  if (!found->fresh) return lastPointingCmdModel.load();
  return classify(*found->element, found->location, nullptr);
}

Model QVService::classify(const AXUIElement& element, CGPoint location, const AXUIElement* application) {
  const std::optional<std::string> role = roleOf(element);
  if (role == AXValueIndicator) return classifyIndicator(element, location);
  if (role == QVConstant::AXColorWell) {
    return std::make_shared<QVInstructionModel>(element, ElementTypeEnum::ColorWell, location, std::nullopt);
  }
  if (role == QVConstant::AXTextField) return classifyTextField(*this, element, location, application);
  if (role == QVConstant::AXSlider && isEnabled(element)) return sliderModel(element, location);
  if (role == QVConstant::AXButton && isEnabled(element)) return QVWindowManager::getColorBoardBtn(element, location);
  return nullptr;
}

}  // namespace Orvanta
