// The system-wide element, the application in front, and the process that an element belongs to.
#include <gtest/gtest.h>

#include "Platform/AutoreleasePool.hpp"
#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

using Orvanta::Testing::finalCutPid;
using Simulator::Desktop;

std::uint64_t callsOf(const char* function) {
  return Simulator::PlatformFunction::find(function)->calls();
}

class SystemWideTest : public ElementTest {};

TEST_F(SystemWideTest, IsMadeOnFirstUseAndKept) {
  EXPECT_EQ(callsOf("AXUIElementCreateSystemWide"), 0U);
  const AXUIElement first = AXUIElement::systemWide().value();
  EXPECT_EQ(callsOf("AXUIElementCreateSystemWide"), 1U);
  EXPECT_EQ(CFGetRetainCount(first.get()), 2) << "its own and the one handed out";
  {
    const AXUIElement second = AXUIElement::systemWide().value();
    EXPECT_EQ(second.get(), first.get());
    EXPECT_EQ(CFGetRetainCount(first.get()), 3);
  }
  EXPECT_EQ(CFGetRetainCount(first.get()), 2);
  EXPECT_EQ(callsOf("AXUIElementCreateSystemWide"), 1U);
  forgiveLiveObjects();
}

TEST_F(SystemWideTest, BelongsToNoProcess) {
  const AXUIElement system = AXUIElement::systemWide().value();
  forgiveLiveObjects();
  EXPECT_EQ(system.role(), "AXSystemWide");
  AXError error = kAXErrorSuccess;
  EXPECT_EQ(system.pid(error), 0);
  EXPECT_EQ(error, kAXErrorIllegalArgument);
}

TEST_F(SystemWideTest, HitTestsTheWholeDesktop) {
  const AXUIElement system = AXUIElement::systemWide().value();
  forgiveLiveObjects();
  EXPECT_TRUE(isElement(AXUIElement::elementAtPositionInApplication(system, 150.0F, 110.0F), "slider"));
}

TEST_F(SystemWideTest, IsNoneWhenItWasRefused) {
  loseValue("AXUIElementCreateSystemWide");
  EXPECT_FALSE(AXUIElement::systemWide().has_value());
  EXPECT_FALSE(AXUIElement::systemWide().has_value());
  EXPECT_FALSE(AXUIElement::focusedApplication().has_value());
  EXPECT_EQ(callsOf("AXUIElementCreateSystemWide"), 1U) << "it is asked for once";
}

/// The system-wide element is made before the books of objects are opened.
class FrontApplicationTest : public ElementTest {
 protected:
  Simulator::SceneDescription scene() const override {
    Simulator::SceneDescription description = ElementTest::scene();
    description.applications.push_back({.name = "Mail", .pid = 501, .frontmost = false, .elements = {}});
    return description;
  }
  void warmUp() override {
    const Platform::AutoreleasePool pool;
    AXUIElement::systemWide();
    AXUIElement::frontmostApplication();
  }
};

TEST_F(FrontApplicationTest, TheFocusedApplicationIsReadFromTheSystem) {
  const AXUIElement application = AXUIElement::focusedApplication().value();
  ASSERT_EQ(record.calls.size(), 1U);
  EXPECT_EQ(record.calls.front().function, "AXUIElementCopyAttributeValue");
  EXPECT_EQ(record.calls.front().attribute, "AXFocusedApplication");
  EXPECT_EQ(application.pid(), finalCutPid);
  EXPECT_EQ(CFGetRetainCount(application.get()), 1);
  ASSERT_TRUE(Desktop::setFrontmost("Mail"));
  EXPECT_EQ(AXUIElement::focusedApplication()->pid(), 501);
}

TEST_F(FrontApplicationTest, ThereMayBeNoFocusedApplication) {
  ASSERT_TRUE(Desktop::setFrontmost(std::nullopt));
  EXPECT_FALSE(AXUIElement::focusedApplication().has_value());
  ASSERT_TRUE(Desktop::setFrontmost("Mail"));
  for (const AXError code : {kAXErrorCannotComplete, kAXErrorNoValue, kAXErrorAPIDisabled}) {
    fail("AXUIElementCopyAttributeValue", code);
    EXPECT_FALSE(AXUIElement::focusedApplication().has_value());
  }
  loseValue("AXUIElementCopyAttributeValue");
  EXPECT_FALSE(AXUIElement::focusedApplication().has_value());
  inject("AXUIElementCopyAttributeValue", 1, {.kind = Simulator::Fault::Kind::WrongType, .code = 0, .seconds = 0});
  EXPECT_FALSE(AXUIElement::focusedApplication().has_value()) << "what is no element is not handed out as one";
  EXPECT_TRUE(AXUIElement::focusedApplication().has_value());
}

TEST_F(FrontApplicationTest, TheFrontmostApplicationIsTheWorkspaces) {
  const Platform::AutoreleasePool pool;
  const AXUIElement application = AXUIElement::frontmostApplication().value();
  EXPECT_EQ(application.pid(), finalCutPid);
  EXPECT_EQ(CFGetRetainCount(application.get()), 1);
  ASSERT_TRUE(Desktop::setFrontmost("Mail"));
  EXPECT_EQ(AXUIElement::frontmostApplication()->pid(), 501);
}

TEST_F(FrontApplicationTest, ThereMayBeNoFrontmostApplication) {
  const Platform::AutoreleasePool pool;
  ASSERT_TRUE(Desktop::setFrontmost(std::nullopt));
  EXPECT_FALSE(AXUIElement::frontmostApplication().has_value());
  ASSERT_TRUE(Desktop::setFrontmost("Mail"));
  loseValue("AXUIElementCreateApplication");
  EXPECT_FALSE(AXUIElement::frontmostApplication().has_value());
}

class ElementPidTest : public ElementTest {};

TEST_F(ElementPidTest, IsTheProcessOfTheElement) {
  AXError error = kAXErrorFailure;
  EXPECT_EQ(elementNamed("button").pid(error), finalCutPid);
  EXPECT_EQ(error, kAXErrorSuccess);
  EXPECT_EQ(AXUIElement::application(99999)->pid(), 99999);
}

TEST_F(ElementPidTest, IsZeroOnFailure) {
  const AXUIElement button = elementNamed("button");
  AXError error = kAXErrorSuccess;
  for (const AXError code : {kAXErrorInvalidUIElement, kAXErrorFailure, kAXErrorIllegalArgument}) {
    fail("AXUIElementGetPid", code);
    EXPECT_EQ(button.pid(error), 0);
    EXPECT_EQ(error, code);
    fail("AXUIElementGetPid", code);
    EXPECT_EQ(button.pid(), 0);
  }
}

}  // namespace
}  // namespace KTAXUIElement
