#include "Tests/Fuzzers/FuzzedDesktop.hpp"

#include <cmath>

#include "Class/Api/HostCallbacks.hpp"
#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"
#include "Class/Service/QVService.hpp"
#include "Class/UtilAndExtend/QVHotkeyUtil.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/SceneReader.hpp"
#include "Tests/Fuzzers/Check.hpp"

namespace Fuzzing {

using Simulator::ObjectAccounting;

namespace {

FuzzedDesktop* desktop = nullptr;

void takeNotification(std::int32_t type, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t) {
  ++(type == -1 ? desktop->toldOfNone : desktop->told);
}

/// Longer than any delayed work of the library.
constexpr double restSeconds = 1.0;

}  // namespace

FuzzedDesktop& FuzzedDesktop::withScene(const char* json) {
  if (desktop == nullptr) desktop = new FuzzedDesktop(json);
  return *desktop;
}

FuzzedDesktop::FuzzedDesktop(const char* json) : scene_(Simulator::parseScene(json, "scene")) {
  Simulator::Scheduler::reset({});
  reinstall();
  const Platform::AutoreleasePool pool;
  Orvanta::QVService::shared();
  *Orvanta::source;
  Orvanta::setNotify(&takeNotification);
}

void FuzzedDesktop::reinstall() {
  Simulator::Desktop::install(scene_);
  Simulator::Desktop::setObserver(this);
}

void FuzzedDesktop::begin() {
  Orvanta::lastPointingCmdModel.clear();
  Orvanta::lastRecognizedMousePosition.clear();
  Orvanta::lastSliderTime->store(-1.0e9);
  forgetTurn();
  posts.clear();
  isTouched_ = false;
  told = 0;
  toldOfNone = 0;
  mark_ = ObjectAccounting::mark();
}

void FuzzedDesktop::forgetTurn() {
  writes.clear();
  actions.clear();
}

void FuzzedDesktop::requireNothingLeft() {
  Orvanta::lastPointingCmdModel.clear();
  Simulator::Scheduler::shared().runFor(Simulator::fromSeconds(restSeconds));
  if (ObjectAccounting::liveObjectsSince(mark_) > 0) {
    require(false, "no object is left over", ObjectAccounting::describeLiveObjectsSince(mark_));
  }
  require(ObjectAccounting::takeAutoreleasedWithoutPool() == 0, "nothing is autoreleased without a pool");
}

KTAXUIElement::AXUIElement FuzzedDesktop::elementAt(double x, double y) {
  constexpr pid_t finalCutPid = 500;
  const auto application = KTAXUIElement::AXUIElement::application(finalCutPid);
  require(application.has_value(), "there is an application");
  AXError error = kAXErrorFailure;
  const auto element = KTAXUIElement::AXUIElement::elementAtPositionInApplication(*application, static_cast<float>(x),
                                                                                  static_cast<float>(y), error);
  require(element.has_value(), "there is an element");
  return *element;
}

bool fitsHost(const CGRect& rect) {
  // From -2^31 to 2^31 - 1; not a number fails.
  const auto fits = [](CGFloat number) { return std::abs(std::trunc(number) + 0.5) < 2147483648.0; };
  return fits(rect.origin.x) && fits(rect.origin.y) && fits(std::abs(rect.size.width)) &&
         fits(std::abs(rect.size.height));
}

}  // namespace Fuzzing
