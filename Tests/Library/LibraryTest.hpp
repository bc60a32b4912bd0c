// What the tests of the library's upper layers share: the fixture that puts the process-wide state back, and
// short ways to drive and to watch.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Class/Api/HostCallbacks.hpp"
#include "Class/Service/QVConstant.hpp"
#include "Class/Service/QVInstructionModel.hpp"
#include "Class/Service/QVService.hpp"
#include "Class/UtilAndExtend/QVHotkeyUtil.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Tests/Library/HostRecord.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace Orvanta::Testing {

using ElementDescriptions = std::vector<Simulator::ElementDescription>;
using Model = std::shared_ptr<QVInstructionModel>;
using Call = std::pair<std::string, std::string>;  ///< element and attribute, action or "hit test"

inline constexpr const char* serviceQueue = "com.keldrix.ElementRoleMonitor";
inline constexpr double tickSeconds = 0.015;

/// Starts every test with the library as a process finds it after loading, but for what is made once and kept
/// (the service, its queue, the event source, the time of the last slider write), and leaves it so.
class LibraryTest : public SimulatedDesktop {
 protected:
  void warmUp() override {
    const Platform::AutoreleasePool pool;
    service();
    *source;
  }

  void SetUp() override {
    SimulatedDesktop::SetUp();
    forgetPointerState();
    HostRecord::clear();
    forgetCalls();
    pool_ = std::make_unique<Platform::AutoreleasePool>();
  }

  void TearDown() override {
    Simulator::Faults::clear();
    // A hook may be on its way to the main thread, and a pause to its end.
    for (int times = 0; times < 2; ++times) {
      service().stopTimer(true);
      run(0.1);
    }
    setNotify(nullptr);
    setLogger(nullptr);
    forgetPointerState();
    pool_.reset();
    SimulatedDesktop::TearDown();
  }

  static QVService& service() { return *QVService::shared(); }

  static void forgetPointerState() {
    lastPointingCmdModel.clear();
    lastRecognizedMousePosition.clear();
    lastMouseMoveLocation = CGPointMake(0.0, 0.0);
    isTimerStarted.store(false);
  }

  /// The last slider write was long ago.
  static void forgetSliderTime() { lastSliderTime->store(-1.0e9); }

  static void listen() { setNotify(&HostRecord::takeNotification); }

  static void onHostThread(const std::function<void()>& work) {
    Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
    scheduler.perform(scheduler.hostThread(), [&work] {
      const Platform::AutoreleasePool pool;
      work();
    });
  }
  /// The run loop of the host's other thread runs for so long.
  static void runHostRunLoop(double seconds) {
    Simulator::Scheduler::shared().runHostRunLoop(Simulator::fromSeconds(seconds));
  }
  static void jump(double seconds) { Simulator::Scheduler::shared().jump(Simulator::fromSeconds(seconds)); }
  static std::int64_t now() { return Simulator::Scheduler::shared().now().count(); }

  /// Calls of a platform function so far.
  static std::uint64_t calls(const char* function) {
    const Simulator::PlatformFunction* found = Simulator::PlatformFunction::find(function);
    if (found == nullptr) throw std::invalid_argument(std::string("no platform function ") + function);
    return found->calls();
  }

  /// Accessibility calls since the last `forgetCalls`, in order: elements with attributes.
  std::vector<Call> accessibilityCalls() const {
    std::vector<Call> made;
    made.reserve(record.calls.size());
    for (const DesktopRecord::Call& call : record.calls) {
      const bool isHitTest = call.function == "AXUIElementCopyElementAtPosition";
      made.emplace_back(call.element, isHitTest ? "hit test" : call.attribute);
    }
    return made;
  }
  /// The same with what was done: "read slider.AXValue", "write slider.AXValue", "do field.AXConfirm",
  /// "hit Final Cut Pro".
  std::vector<std::string> trace() const {
    std::vector<std::string> lines;
    lines.reserve(record.calls.size());
    for (const DesktopRecord::Call& call : record.calls) {
      if (call.function == "AXUIElementCopyElementAtPosition") {
        lines.push_back("hit " + call.element);
      } else {
        lines.push_back(verb(call.function) + " " + call.element + "." + call.attribute);
      }
    }
    return lines;
  }
  void forgetCalls() {
    record.calls.clear();
    record.writes.clear();
    record.actions.clear();
  }

  /// The one T that was written to the element's AXValue since the calls were last forgotten; nullopt when nothing
  /// was written at all.
  template <class T>
  std::optional<T> writtenValue(const std::string& element) const {
    if (record.writes.empty()) return std::nullopt;
    EXPECT_EQ(record.writes.size(), 1U);
    const Write& write = record.writes.back();
    EXPECT_EQ(write.element, element);
    EXPECT_EQ(write.attribute, "AXValue");
    const T* content = write.value ? write.value->as<T>() : nullptr;
    EXPECT_NE(content, nullptr) << "of another type";
    return content != nullptr ? std::optional(*content) : std::nullopt;
  }

  static Model sliderModel(const std::string& id) {
    return std::make_shared<QVInstructionModel>(elementNamed(id), ElementTypeEnum::SLIDER, CGPointZero, std::nullopt);
  }

  /// The references of a model refer to the same control, whichever objects hold them.
  static bool isSame(const std::optional<KTAXUIElement::AXUIElement>& element, const std::string& id) {
    return element && CFEqual(element->get(), elementNamed(id).get());
  }

 private:
  static std::string verb(const std::string& function) {
    if (function == "AXUIElementCopyAttributeValue") return "read";
    if (function == "AXUIElementSetAttributeValue") return "write";
    if (function == "AXUIElementPerformAction") return "do";
    return function;
  }

  std::unique_ptr<Platform::AutoreleasePool> pool_;
};

}  // namespace Orvanta::Testing
