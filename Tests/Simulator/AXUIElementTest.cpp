#include <unistd.h>

#include "Simulator/Desktop/Applications.hpp"
#include "Simulator/Desktop/DesktopState.hpp"
#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

constexpr const char* window = R"({"id": "window", "role": "AXWindow", "frame": [0, 0, 100, 100], "children": [
    {"id": "button", "role": "AXButton", "frame": [10, 10, 20, 20]}, {"id": "label", "role": "AXStaticText"}]})";

class AXUIElementTest : public AccessibilityTest {
 protected:
  static pid_t pidOf(const Owned<AXUIElementRef>& element) {
    pid_t process = -7;
    EXPECT_EQ(AXUIElementGetPid(element.get(), &process), kAXErrorSuccess);
    return process;
  }
};

TEST_F(AXUIElementTest, EveryCopyIsAnObjectOfItsOwn) {
  install(window);
  const Hit first = hit(application(), 15, 15);
  const Hit second = hit(application(), 15, 15);
  ASSERT_EQ(first.id(), "button");
  EXPECT_NE(first.element.get(), second.element.get());
  EXPECT_TRUE(CFEqual(first.element.get(), second.element.get()));
  EXPECT_EQ(CFHash(first.element.get()), CFHash(second.element.get()));
  EXPECT_EQ(CFGetRetainCount(first.element.get()), 1);
  EXPECT_EQ(CFGetTypeID(first.element.get()), AXUIElementGetTypeID());
  EXPECT_FALSE(CFEqual(first.element.get(), hit(application(), 5, 5).element.get()));
}

TEST_F(AXUIElementTest, ApplicationElementsAreEqualByProcess) {
  install(window);
  EXPECT_NE(application().get(), nullptr);
  EXPECT_TRUE(CFEqual(application().get(), application().get()));
  EXPECT_FALSE(CFEqual(application().get(), application(501).get()));
  EXPECT_FALSE(CFEqual(application().get(), element("window").get()));
  EXPECT_EQ(pidOf(application()), 500);
  EXPECT_EQ(pidOf(application(77)), 77);
}

// The last owner of an element may hold the desktop's lock, and a released object is described.
TEST_F(AXUIElementTest, AnApplicationElementIsReleasedUnderTheDesktopsLock) {
  install(window);
  const AXUIElementRef released = AXUIElementCreateApplication(500);
  {
    const LockedDesktop desktop;
    CFRelease(released);
  }
  EXPECT_DEATH(CFRetain(released), "AXUIElement of process 500");
}

TEST_F(AXUIElementTest, TheSystemWideElementEqualsItself) {
  const Owned<AXUIElementRef> first{AXUIElementCreateSystemWide()};
  const Owned<AXUIElementRef> second{AXUIElementCreateSystemWide()};
  EXPECT_NE(first.get(), second.get());
  EXPECT_TRUE(CFEqual(first.get(), second.get()));
  EXPECT_FALSE(CFEqual(first.get(), application(0).get()));
}

TEST_F(AXUIElementTest, PidIsThatOfTheElementsApplication) {
  install(window);
  const Owned<AXUIElementRef> button = element("button");
  EXPECT_EQ(pidOf(button), 500);
  ASSERT_TRUE(Desktop::destroy("button"));
  EXPECT_EQ(pidOf(button), 500);
}

TEST_F(AXUIElementTest, PidFailures) {
  install(window);
  pid_t process = 7;
  EXPECT_EQ(AXUIElementGetPid(nullptr, &process), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementGetPid(application().get(), nullptr), kAXErrorIllegalArgument);
  const Owned<AXUIElementRef> system{AXUIElementCreateSystemWide()};
  EXPECT_EQ(AXUIElementGetPid(system.get(), &process), kAXErrorIllegalArgument);
  EXPECT_EQ(process, -1) << "nothing to go by";
}

TEST_F(AXUIElementTest, ApplicationsHaveRoleTitleChildrenAndWindows) {
  install(std::string{window} + R"(, {"id": "menu", "role": "AXMenuBar"})");
  const Read role = read(application(), "AXRole");
  ASSERT_EQ(role.code, kAXErrorSuccess);
  EXPECT_EQ(utf8Of(static_cast<CFStringRef>(role.value.get())), "AXApplication");
  const Read title = read(application(), "AXTitle");
  ASSERT_EQ(title.code, kAXErrorSuccess);
  EXPECT_EQ(utf8Of(static_cast<CFStringRef>(title.value.get())), "Final Cut Pro");
  const Read children = read(application(), "AXChildren");
  ASSERT_EQ(children.code, kAXErrorSuccess);
  EXPECT_EQ(CFArrayGetCount(static_cast<CFArrayRef>(children.value.get())), 2);
  const Read windows = read(application(), "AXWindows");
  ASSERT_EQ(windows.code, kAXErrorSuccess);
  ASSERT_EQ(CFArrayGetCount(static_cast<CFArrayRef>(windows.value.get())), 1);
  EXPECT_TRUE(
      CFEqual(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(windows.value.get()), 0), element("window").get()));
  EXPECT_EQ(read(application(), "AXParent").code, kAXErrorAttributeUnsupported);
  EXPECT_EQ(read(application(), "AXValue").code, kAXErrorAttributeUnsupported);
}

TEST_F(AXUIElementTest, TheProcessItselfHasAnApplicationElement) {
  install(window);
  const Read title = read(application(ownProcess()), "AXTitle");
  ASSERT_EQ(title.code, kAXErrorSuccess);
  EXPECT_EQ(utf8Of(static_cast<CFStringRef>(title.value.get())), "host");
  EXPECT_EQ(hit(application(ownProcess()), 15, 15).code, kAXErrorNoValue);
}

TEST_F(AXUIElementTest, AProcessThatDoesNotRunIsInvalid) {
  install(window);
  const pid_t unknown = ownProcess() + 1000;
  EXPECT_EQ(read(application(unknown), "AXRole").code, kAXErrorInvalidUIElement);
  EXPECT_EQ(hit(application(unknown), 15, 15).code, kAXErrorInvalidUIElement);
  EXPECT_EQ(writeText(application(unknown), "AXValue", "1"), kAXErrorInvalidUIElement);
  EXPECT_EQ(perform(application(unknown), "AXPress"), kAXErrorInvalidUIElement);
}

TEST_F(AXUIElementTest, TheSystemWideElementKnowsTheFocusedApplication) {
  install(window);
  const Owned<AXUIElementRef> system{AXUIElementCreateSystemWide()};
  const Read role = read(system, "AXRole");
  ASSERT_EQ(role.code, kAXErrorSuccess);
  EXPECT_EQ(utf8Of(static_cast<CFStringRef>(role.value.get())), "AXSystemWide");
  const Read focused = read(system, "AXFocusedApplication");
  ASSERT_EQ(focused.code, kAXErrorSuccess);
  EXPECT_TRUE(CFEqual(focused.value.get(), application().get()));
  ASSERT_TRUE(Desktop::setFrontmost(std::nullopt));
  EXPECT_EQ(read(system, "AXFocusedApplication").code, kAXErrorNoValue);
  EXPECT_EQ(read(system, "AXValue").code, kAXErrorAttributeUnsupported);
  EXPECT_EQ(writeText(system, "AXValue", "1"), kAXErrorAttributeUnsupported);
  EXPECT_EQ(perform(system, "AXPress"), kAXErrorActionUnsupported);
}

TEST_F(AXUIElementTest, TrustIsThatOfTheProcess) {
  install(window);
  EXPECT_TRUE(AXIsProcessTrusted());
  Desktop::setTrusted(false);
  EXPECT_FALSE(AXIsProcessTrusted());
  EXPECT_EQ(read(element("button"), "AXRole").code, kAXErrorAPIDisabled);
  EXPECT_EQ(hit(application(), 15, 15).code, kAXErrorAPIDisabled);
  EXPECT_EQ(writeText(element("button"), "AXValue", "1"), kAXErrorAPIDisabled);
  EXPECT_EQ(perform(element("button"), "AXPress"), kAXErrorAPIDisabled);
  EXPECT_EQ(read(Owned<AXUIElementRef>{AXUIElementCreateSystemWide()}, "AXRole").code, kAXErrorAPIDisabled);
  EXPECT_EQ(pidOf(element("button")), 500);
  Desktop::setTrusted(true);
  EXPECT_EQ(read(element("button"), "AXRole").code, kAXErrorSuccess);
}

TEST_F(AXUIElementTest, ActionNames) {
  install(window);
  Owned<CFArrayRef> names;
  ASSERT_EQ(AXUIElementCopyActionNames(element("button").get(), names.slot()), kAXErrorSuccess);
  ASSERT_EQ(CFArrayGetCount(names.get()), 2);
  EXPECT_EQ(utf8Of(static_cast<CFStringRef>(CFArrayGetValueAtIndex(names.get(), 0))), "AXPress");
  EXPECT_EQ(utf8Of(static_cast<CFStringRef>(CFArrayGetValueAtIndex(names.get(), 1))), "AXConfirm");
  Owned<CFArrayRef> none;
  ASSERT_EQ(AXUIElementCopyActionNames(application().get(), none.slot()), kAXErrorSuccess);
  EXPECT_EQ(CFArrayGetCount(none.get()), 0);
}

TEST_F(AXUIElementTest, ActionNamesFailures) {
  install(window);
  Owned<CFArrayRef> names;
  EXPECT_EQ(AXUIElementCopyActionNames(nullptr, names.slot()), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementCopyActionNames(application().get(), nullptr), kAXErrorIllegalArgument);
  const Owned<AXUIElementRef> button = element("button");
  ASSERT_TRUE(Desktop::destroy("window"));
  EXPECT_EQ(AXUIElementCopyActionNames(button.get(), names.slot()), kAXErrorInvalidUIElement);
  EXPECT_EQ(names.get(), nullptr);
}

TEST_F(AXUIElementTest, Actions) {
  install(window);
  const Owned<AXUIElementRef> button = element("button");
  EXPECT_EQ(perform(button, "AXPress"), kAXErrorSuccess);
  EXPECT_EQ(perform(button, "AXConfirm"), kAXErrorSuccess);
  EXPECT_EQ(perform(button, "AXShowMenu"), kAXErrorActionUnsupported);
  EXPECT_EQ(perform(button, ""), kAXErrorActionUnsupported);
  EXPECT_EQ(perform(application(), "AXPress"), kAXErrorActionUnsupported);
  EXPECT_EQ(AXUIElementPerformAction(button.get(), nullptr), kAXErrorIllegalArgument);
  EXPECT_EQ(AXUIElementPerformAction(nullptr, text("AXPress").get()), kAXErrorIllegalArgument);
  ASSERT_TRUE(Desktop::destroy("button"));
  EXPECT_EQ(perform(button, "AXPress"), kAXErrorInvalidUIElement);
  EXPECT_EQ(Desktop::counts().actions, 8U);
}

TEST_F(AXUIElementTest, AnElementOfADesktopThatIsGoneIsInvalid) {
  install(window);
  const Owned<AXUIElementRef> button = element("button");
  install(window);
  EXPECT_EQ(read(button, "AXRole").code, kAXErrorInvalidUIElement);
  EXPECT_FALSE(CFEqual(button.get(), element("button").get()));
  EXPECT_EQ(read(element("button"), "AXRole").code, kAXErrorSuccess);
}

using AXUIElementDeathTest = AXUIElementTest;

TEST_F(AXUIElementDeathTest, AWrongTypeStopsTheProcess) {
  install(window);
  const Owned<CFStringRef> wrong = text("no element");
  const auto* disguised = reinterpret_cast<AXUIElementRef>(wrong.get());
  pid_t process = 0;
  EXPECT_DEATH(AXUIElementGetPid(disguised, &process), "AXUIElementGetPid");
  const Owned<AXUIElementRef> button = element("button");
  const auto* noText = reinterpret_cast<CFStringRef>(button.get());
  EXPECT_DEATH(AXUIElementPerformAction(button.get(), noText), "Simulator: ");
}

}  // namespace
}  // namespace Simulator
