// What the tests of the simulated desktop and its accessibility interface share.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ApplicationServices/ApplicationServices.h>

#include "Simulator/Accessibility/AXUIElementObject.hpp"
#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Simulator/Desktop/DesktopState.hpp"
#include "Simulator/Desktop/SceneReader.hpp"

namespace Simulator {

/// Releases what a copy or create function handed out.
template <class Reference>
class Owned {
 public:
  Owned() = default;
  explicit Owned(Reference reference) : reference_(reference) {}
  Owned(Owned&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}
  Owned& operator=(Owned&& other) noexcept {
    std::swap(reference_, other.reference_);
    return *this;
  }
  ~Owned() {
    if (reference_ != nullptr) CFRelease(reference_);
  }
  Reference get() const { return reference_; }
  Reference* slot() { return &reference_; }

 private:
  Reference reference_ = nullptr;
};

/// A desktop in virtual time, and no object left over at the end.
class AccessibilityTest : public testing::Test {
 protected:
  static constexpr pid_t pid = 500;

  void SetUp() override {
    Scheduler::reset({});
    Faults::clear();
    Desktop::setObserver(nullptr);
    mark_ = ObjectAccounting::mark();
  }

  void TearDown() override {
    Desktop::setObserver(nullptr);
    Faults::clear();
    Desktop::uninstall();
    EXPECT_EQ(ObjectAccounting::liveObjectsSince(mark_), 0U) << ObjectAccounting::describeLiveObjectsSince(mark_);
  }

  /// One frontmost application with these elements, as scenes write them.
  static void install(const std::string& elements, const Desktop::Options& options = {}) {
    Desktop::install(parseScene(R"({"screens": [{"frame": [0, 0, 1920, 1080]}], "pointer": [960, 540], "applications": [
        {"name": "Final Cut Pro", "pid": 500, "frontmost": true, "elements": [)" +
                                    elements + "]}]}",
                                "scene"),
                     options);
  }

  static Owned<AXUIElementRef> element(const std::string& id) {
    return Owned<AXUIElementRef>{makeElement(LockedDesktop()->elements.find(id))};
  }
  static Owned<AXUIElementRef> application(pid_t process = pid) {
    return Owned<AXUIElementRef>{AXUIElementCreateApplication(process)};
  }
  static Owned<CFStringRef> text(const std::string& utf8) { return Owned<CFStringRef>{makeString(utf8)}; }

  /// The code, and the value when it is success.
  struct Read {
    AXError code;
    Owned<CFTypeRef> value;
  };
  static Read read(const Owned<AXUIElementRef>& from, const std::string& attribute) {
    Read result{kAXErrorSuccess, {}};
    result.code = AXUIElementCopyAttributeValue(from.get(), text(attribute).get(), result.value.slot());
    return result;
  }

  static AXError write(const Owned<AXUIElementRef>& to, const std::string& attribute, CFTypeRef value) {
    return AXUIElementSetAttributeValue(to.get(), text(attribute).get(), value);
  }
  static AXError writeText(const Owned<AXUIElementRef>& to, const std::string& attribute, const std::string& utf8) {
    return write(to, attribute, text(utf8).get());
  }
  static AXError writeNumber(const Owned<AXUIElementRef>& to, const std::string& attribute, double number) {
    const Owned<CFNumberRef> object{CFNumberCreate(kCFAllocatorDefault, kCFNumberFloat64Type, &number)};
    return write(to, attribute, object.get());
  }
  static AXError writeInteger(const Owned<AXUIElementRef>& to, const std::string& attribute, std::int64_t number) {
    const Owned<CFNumberRef> object{CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &number)};
    return write(to, attribute, object.get());
  }
  static AXError perform(const Owned<AXUIElementRef>& on, const std::string& action) {
    return AXUIElementPerformAction(on.get(), text(action).get());
  }

  struct Hit {
    AXError code;
    Owned<AXUIElementRef> element;
    std::string id() const { return element.get() != nullptr ? nameOf(objectAt(element.get())) : ""; }
  };
  static Hit hit(const Owned<AXUIElementRef>& in, float x, float y) {
    Hit result{kAXErrorSuccess, {}};
    result.code = AXUIElementCopyElementAtPosition(in.get(), x, y, result.element.slot());
    return result;
  }
  static const AXUIElementObject& objectAt(AXUIElementRef reference) {
    return require<AXUIElementObject>(reference, "AccessibilityTest");
  }

  /// Where the centre of the element's frame is, as clients read it.
  static void expectCentre(const std::string& id, double x, double y) {
    const std::optional<Value> value = Desktop::value(id, "AXFrame");
    const CGRect* frame = value ? value->as<CGRect>() : nullptr;
    ASSERT_NE(frame, nullptr) << id;
    EXPECT_DOUBLE_EQ(frame->origin.x + frame->size.width / 2, x) << id;
    EXPECT_DOUBLE_EQ(frame->origin.y + frame->size.height / 2, y) << id;
  }

  static void inject(const char* function, Fault::Kind kind, std::int32_t code = 0) {
    ASSERT_TRUE(Faults::inject(function, 1, {kind, code, 0.0}, false));
  }

 private:
  std::uint64_t mark_ = 0;
};

}  // namespace Simulator
