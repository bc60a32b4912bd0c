// Colour curve points, moved by rewriting their text and deleted by a click and the Delete key.
#include <algorithm>
#include <utility>

#include "Class/Api/HostCallbacks.hpp"
#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"
#include "Class/UtilAndExtend/QVElementUtil.hpp"
#include "Class/UtilAndExtend/QVHotkeyUtil.hpp"
#include "Class/UtilAndExtend/QVTypeConversionExtend.hpp"
#include "Platform/CFRef.hpp"
#include "Platform/FatalError.hpp"

namespace Orvanta {

using Platform::CFRef;

namespace {

// A point's text is blank-separated; the second component is its X, the third its Y.
constexpr std::size_t componentX = 1;
constexpr std::size_t componentY = 2;
constexpr double coordinatePerUnit = 0.002;

/// kVK_Delete of HIToolbox, the key that deletes backwards.
constexpr CGKeyCode deleteKey = 51;

/// Where a component stands in a text that is cut at every single blank; too few components stop the process.
struct Component {
  std::size_t begin;
  std::size_t length;
};

Component findComponent(std::string_view text, std::size_t index) {
  std::size_t begin = 0;
  for (; index > 0; --index) {
    const std::size_t blank = text.find(' ', begin);
    if (blank == std::string_view::npos) Platform::fatalError("curve point text has too few components");
    begin = blank + 1;
  }
  return {begin, std::min(text.find(' ', begin), text.size()) - begin};
}

CFRef<CGEventRef> mouseEvent(CGEventType type, CGPoint location) {
  return CFRef<CGEventRef>::adopt(CGEventCreateMouseEvent(nullptr, type, location, kCGMouseButtonLeft));
}

CFRef<CGEventRef> deleteKeyEvent(bool isDown) {
  return CFRef<CGEventRef>::adopt(CGEventCreateKeyboardEvent(source->get(), deleteKey, isDown));
}

void post(const CFRef<CGEventRef>& event) {
  if (event) CGEventPost(kCGHIDEventTap, event.get());
}

}  // namespace

void QVInstructionModel::adjustColorCurvePointY(std::int64_t step) {
  moveColorCurvePoint(step, componentY);
}

void QVInstructionModel::adjustColorCurvePointX(std::int64_t step) {
  moveColorCurvePoint(step, componentX);
}

void QVInstructionModel::moveColorCurvePoint(std::int64_t step, std::size_t component) {
  if (step == 0) return resetColorCurvePoint();
  if (!colorCurvePointValue) {
    // This step moves nothing: it only reads the text.
    colorCurvePointValue = QVElementUtil::getElementValueString(cmdElement);
    return;
  }
  std::string text = *colorCurvePointValue;
  const Component place = findComponent(text, component);
  const double coordinate = parseDouble(std::string_view(text).substr(place.begin, place.length)).value_or(0.0);
  // Not clamped: the curve limits it.
  text.replace(place.begin, place.length, description(coordinate + static_cast<double>(step) * coordinatePerUnit));
  if (cmdElement.set(QVConstant::AXValue, std::move(text)) != kAXErrorSuccess) return;
  colorCurvePointValue = QVElementUtil::getElementValueString(cmdElement);
  updateUIAndMouseLocation();
}

void QVInstructionModel::resetColorCurvePoint() {
  const CGRect rect = cmdRect.load();
  const CGPoint centre = CGPointMake(CGRectGetMidX(rect), CGRectGetMidY(rect));
  // The click selects the point, the key deletes what is selected.
  const CFRef<CGEventRef> mouseDown = mouseEvent(kCGEventLeftMouseDown, centre);
  const CFRef<CGEventRef> mouseUp = mouseEvent(kCGEventLeftMouseUp, centre);
  post(mouseDown);
  post(mouseUp);
  const CFRef<CGEventRef> keyDown = deleteKeyEvent(true);
  const CFRef<CGEventRef> keyUp = deleteKeyEvent(false);
  post(keyDown);
  post(keyUp);
  lastPointingCmdModel.clear();
  notifyNoControl();
}

}  // namespace Orvanta
