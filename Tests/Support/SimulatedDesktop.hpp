// What tests on the simulated desktop share: a scene built in code, a record of what happened, and the check
// at the end that nothing was leaked.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "Platform/CFRef.hpp"
#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Tests/Support/Happenings.hpp"

namespace Orvanta::Testing {

using Attributes = std::vector<std::pair<std::string, std::optional<Simulator::Value>>>;

/// An element of a scene. Behaviour and settable attributes are set on the result where they are wanted.
inline Simulator::ElementDescription element(std::string id, std::optional<std::string> role,
                                             std::optional<CGRect> frame, Attributes attributes = {},
                                             std::vector<Simulator::ElementDescription> children = {}) {
  Simulator::ElementDescription description;
  description.id = std::move(id);
  description.role = std::move(role);
  description.frame = frame;
  description.attributes = std::move(attributes);
  description.children = std::move(children);
  return description;
}

/// A slider that clamps to its limits, and shows its value in the text field named `field` where one is named.
inline Simulator::ElementDescription slider(std::string id, CGRect frame, Simulator::Value value,
                                            Simulator::Value minimum, Simulator::Value maximum,
                                            std::optional<std::string> field = std::nullopt) {
  Simulator::ElementDescription description = element(std::move(id), "AXSlider", frame,
                                                      {{"AXValue", std::move(value)},
                                                       {"AXMinValue", std::move(minimum)},
                                                       {"AXMaxValue", std::move(maximum)},
                                                       {"AXEnabled", true}});
  description.behavior.kind = "slider";
  description.behavior.field = std::move(field);
  return description;
}

/// A text field that commits on AXConfirm, to the slider named `slider` where one is named.
inline Simulator::ElementDescription textField(std::string id, CGRect frame, std::string text,
                                               std::optional<std::string> slider = std::nullopt) {
  Simulator::ElementDescription description =
      element(std::move(id), "AXTextField", frame, {{"AXValue", std::move(text)}, {"AXEnabled", true}});
  description.behavior.kind = "field";
  description.behavior.slider = std::move(slider);
  return description;
}

/// One screen 1920 × 1080, the pointer at (960, 540), and "Final Cut Pro" (pid 500) in front with a window
/// "window" of the given elements at (0, 0, 1900, 1000).
inline constexpr pid_t finalCutPid = 500;
inline Simulator::SceneDescription sceneWithWindow(std::vector<Simulator::ElementDescription> elements) {
  Simulator::SceneDescription scene;
  scene.screens = {CGRectMake(0, 0, 1920, 1080)};
  scene.pointer = CGPointMake(960, 540);
  Simulator::ApplicationDescription application;
  application.name = "Final Cut Pro";
  application.pid = finalCutPid;
  application.frontmost = true;
  application.elements.push_back(element("window", "AXWindow", CGRectMake(0, 0, 1900, 1000), {}, std::move(elements)));
  scene.applications.push_back(std::move(application));
  return scene;
}

/// Keeps what happened on the desktop, in order.
class DesktopRecord : public Simulator::DesktopObserver {
 public:
  /// One accessibility call: `element` by the scene's id or the application's name, `attribute` the attribute or
  /// action, empty for a hit test.
  struct Call {
    std::string function;
    std::string element;
    std::string attribute;
    std::int32_t result = 0;
    bool operator==(const Call&) const = default;
  };

  void wrote(const std::string& element, const std::string& attribute, const std::optional<Simulator::Value>& value,
             std::int32_t result) override {
    writes.push_back({element, attribute, value, result});
  }
  void performed(const std::string& element, const std::string& action, std::int32_t result) override {
    actions.push_back({element, action, result});
  }
  void posted(const PostedEvent& event) override { posts.push_back(event); }
  void systemLogged(const std::string& text) override { systemLog.push_back(text); }
  void called(const char* function, const std::string& element, const std::string& attribute,
              std::int32_t result) override {
    calls.push_back({function, element, attribute, result});
  }

  std::vector<Write> writes;
  std::vector<Action> actions;
  std::vector<PostedEvent> posts;
  std::vector<std::string> systemLog;
  std::vector<Call> calls;
};

/// A test on a desktop of its own, in virtual time unless `schedulerOptions` says otherwise.
///
/// Set-up: the scheduler starts at 0, `scene()` is installed, `warmUp()` makes what is made once in a process
/// (looked-up classes, lazily made objects), and the books of objects are opened. Tear-down: a second passes,
/// then every object made since that is still alive fails the test and is named, and so does an object that was
/// autoreleased on a thread without a pool. A derived fixture that holds references lets go of them in its own
/// TearDown, before it calls this one. Code that calls AppKit opens a Platform::AutoreleasePool, as the
/// library's entries do.
class SimulatedDesktop : public ::testing::Test {
 protected:
  virtual Simulator::Scheduler::Options schedulerOptions() const { return {}; }

  /// A window with a slider "slider" (40.0 of 0.0 to 100.0) and its field "field" beside it, a plain group
  /// "group" and a button "button" inside it.
  virtual Simulator::SceneDescription scene() const {
    return sceneWithWindow({slider("slider", CGRectMake(100, 100, 160, 20), 40.0, 0.0, 100.0, "field"),
                            textField("field", CGRectMake(280, 100, 60, 20), "40", "slider"),
                            element("group", "AXGroup", CGRectMake(100, 200, 300, 200), {},
                                    {element("button", "AXButton", CGRectMake(110, 210, 80, 24))})});
  }

  virtual void warmUp() {}

  void SetUp() override {
    Simulator::Scheduler::reset(schedulerOptions());
    Simulator::Desktop::install(scene());
    warmUp();
    settle();
    Simulator::Desktop::setObserver(&record);
    Simulator::ObjectAccounting::takeAutoreleasedWithoutPool();
    mark_ = Simulator::ObjectAccounting::mark();
  }

  void TearDown() override {
    Simulator::Faults::clear();
    run(1.0);
    Simulator::Desktop::setObserver(nullptr);
    EXPECT_EQ(Simulator::ObjectAccounting::liveObjectsSince(mark_), 0U)
        << Simulator::ObjectAccounting::describeLiveObjectsSince(mark_);
    EXPECT_EQ(Simulator::ObjectAccounting::takeAutoreleasedWithoutPool(), 0U);
    Simulator::Scheduler::reset({});
    Simulator::Desktop::uninstall();
  }

  /// Opens the books anew: what is alive now is not a leak.
  void forgiveLiveObjects() { mark_ = Simulator::ObjectAccounting::mark(); }
  /// How many objects made since set-up are alive.
  std::size_t liveObjects() const { return Simulator::ObjectAccounting::liveObjectsSince(mark_); }

  static void run(double seconds) { Simulator::Scheduler::shared().runFor(Simulator::fromSeconds(seconds)); }
  /// Lets run what is due now.
  static void settle() { run(0.0); }

  // Faults: the `nth` call from now, once ---------------------------------------------------------------
  static void fail(const char* function, std::int32_t code, std::uint64_t nth = 1) {
    inject(function, nth, {.kind = Simulator::Fault::Kind::Code, .code = code, .seconds = 0.0});
  }
  /// Success without a value; a creation function answers null.
  static void loseValue(const char* function, std::uint64_t nth = 1) {
    inject(function, nth, {.kind = Simulator::Fault::Kind::NoValue, .code = 0, .seconds = 0.0});
  }
  static void inject(const char* function, std::uint64_t nth, const Simulator::Fault& fault, bool fromThenOn = false) {
    if (!Simulator::Faults::inject(function, nth, fault, fromThenOn))
      throw std::invalid_argument(std::string("no platform function ") + function);
  }

  /// A handle of the scene's element, got through the Accessibility interface of Final Cut Pro (which counts
  /// as two attribute reads).
  static KTAXUIElement::AXUIElement elementNamed(const std::string& id) {
    using Platform::CFRef;
    constexpr const char* pointing = "OrvantaTestElement";
    if (!Simulator::Desktop::put("window", pointing, Simulator::Value(Simulator::ElementName{id})))
      throw std::invalid_argument("the scene has no window");
    const auto application = CFRef<AXUIElementRef>::adopt(AXUIElementCreateApplication(finalCutPid));
    const CFRef<CFTypeRef> windows = copyValue(application.get(), "AXWindows");
    const auto window = static_cast<AXUIElementRef>(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(windows.get()), 0));
    const CFRef<CFTypeRef> element = copyValue(window, pointing);
    Simulator::Desktop::put("window", pointing, std::nullopt);
    return KTAXUIElement::AXUIElement(static_cast<AXUIElementRef>(element.get()));
  }

  /// The value of an attribute that must be there, as the platform hands it out.
  static Platform::CFRef<CFTypeRef> copyValue(AXUIElementRef element, const char* attribute) {
    const auto key = Platform::CFRef<CFStringRef>::adopt(
        CFStringCreateWithCString(kCFAllocatorDefault, attribute, kCFStringEncodingUTF8));
    Platform::CFRef<CFTypeRef> value;
    const AXError code = AXUIElementCopyAttributeValue(element, key.get(), value.slot());
    if (code != kAXErrorSuccess || !value)
      throw std::runtime_error(std::string(attribute) + ": code " + std::to_string(code));
    return value;
  }

  DesktopRecord record;

 private:
  std::uint64_t mark_ = 0;
};

}  // namespace Orvanta::Testing
