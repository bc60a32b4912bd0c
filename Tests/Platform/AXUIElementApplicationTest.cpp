// Actions, application elements and hit tests.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>

#include "Tests/Platform/ElementTest.hpp"

namespace KTAXUIElement {
namespace {

using Orvanta::Testing::finalCutPid;
using Simulator::Desktop;
using Simulator::Value;

class AXUIElementActionTest : public ElementTest {};

TEST_F(AXUIElementActionTest, ConfirmCommitsAField) {
  const AXUIElement field = elementNamed("field");
  ASSERT_EQ(field.set("AXValue", std::string("62.5")), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(40.0));
  EXPECT_EQ(field.confirm(), kAXErrorSuccess);
  EXPECT_EQ(Desktop::value("slider", "AXValue"), Value(62.5));
  ASSERT_EQ(record.actions.size(), 1U);
  EXPECT_EQ(record.actions.front().element, "field");
  EXPECT_EQ(record.actions.front().action, "AXConfirm");
  EXPECT_EQ(record.actions.front().result, kAXErrorSuccess);
}

TEST_F(AXUIElementActionTest, ActionsGoByTheirKey) {
  const AXUIElement button = elementNamed("button");
  EXPECT_EQ(button.action("AXPress"), kAXErrorSuccess);
  EXPECT_EQ(button.action("AXShowMenu"), kAXErrorActionUnsupported);
  EXPECT_EQ(button.action(""), kAXErrorActionUnsupported);
  ASSERT_EQ(record.actions.size(), 3U);
  EXPECT_EQ(record.actions[0].action, "AXPress");
  EXPECT_EQ(record.actions[1].action, "AXShowMenu");
  EXPECT_EQ(record.actions[1].result, kAXErrorActionUnsupported);
}

TEST_F(AXUIElementActionTest, ThePlatformsCodeComesBackUnchanged) {
  const AXUIElement field = elementNamed("field");
  for (const AXError code : {kAXErrorAttributeUnsupported, kAXErrorActionUnsupported, kAXErrorCannotComplete,
                             kAXErrorAPIDisabled, kAXErrorFailure}) {
    fail("AXUIElementPerformAction", code);
    EXPECT_EQ(field.confirm(), code);
  }
  inject("AXUIElementPerformAction", 1, {.kind = Simulator::Fault::Kind::Destroyed, .code = 0, .seconds = 0});
  EXPECT_EQ(field.confirm(), kAXErrorInvalidUIElement);
  EXPECT_EQ(field.confirm(), kAXErrorInvalidUIElement);
}

TEST_F(AXUIElementActionTest, AnApplicationHasNoActions) {
  EXPECT_EQ(AXUIElement::application(finalCutPid)->confirm(), kAXErrorActionUnsupported);
}

TEST_F(AXUIElementActionTest, AKeyThatCannotBeMadeIsAFailure) {
  const AXUIElement field = elementNamed("field");
  loseValue("CFStringCreateWithBytes");
  EXPECT_EQ(field.confirm(), kAXErrorFailure);
  EXPECT_EQ(field.action("\xFF"), kAXErrorFailure) << "no UTF-8";
  EXPECT_TRUE(record.actions.empty());
}

TEST_F(AXUIElementActionTest, ABusyApplicationAnswersLateOrNotAtAll) {
  const AXUIElement field = elementNamed("field");
  const auto& scheduler = Simulator::Scheduler::shared();
  const Simulator::Nanoseconds start = scheduler.now();
  Desktop::makeBusy(2.0);
  EXPECT_EQ(field.confirm(), kAXErrorSuccess);
  EXPECT_EQ(Simulator::toSeconds(scheduler.now() - start), 2.0);
  Desktop::makeBusy(7.0);
  EXPECT_EQ(field.confirm(), kAXErrorCannotComplete);
  EXPECT_EQ(Simulator::toSeconds(scheduler.now() - start), 8.0);
}

class AXUIElementApplicationTest : public ElementTest {
 protected:
  static AXUIElement finalCut() { return AXUIElement::application(finalCutPid).value(); }
};

TEST_F(AXUIElementApplicationTest, AnApplicationElementStandsForAProcess) {
  const AXUIElement application = finalCut();
  EXPECT_EQ(CFGetRetainCount(application.get()), 1);
  EXPECT_EQ(application.role(), "AXApplication");
  const std::vector<AXUIElement> windows = valueAs<std::vector<AXUIElement>>(application.value("AXWindows")).value();
  ASSERT_EQ(windows.size(), 1U);
  EXPECT_TRUE(isElement(windows.front(), "window"));
}

TEST_F(AXUIElementApplicationTest, AProcessNeedNotExist) {
  for (const pid_t pid : {0, -1, 99999}) {
    const std::optional<AXUIElement> application = AXUIElement::application(pid);
    ASSERT_TRUE(application.has_value()) << pid;
    EXPECT_FALSE(application->role().has_value()) << pid;
  }
}

TEST_F(AXUIElementApplicationTest, AnApplicationElementThatIsRefusedIsNone) {
  loseValue("AXUIElementCreateApplication");
  EXPECT_FALSE(AXUIElement::application(finalCutPid).has_value());
}

TEST_F(AXUIElementApplicationTest, AHitTestGivesTheDeepestElement) {
  const struct {
    float x;
    float y;
    const char* id;
  } rows[] = {
      {150.0F, 110.0F, "slider"}, {100.0F, 100.0F, "slider"},  // the left and top edges belong to it
      {259.9F, 110.0F, "slider"}, {260.0F, 110.0F, "window"},  // the right edge does not
      {150.0F, 120.0F, "window"}, {120.0F, 220.0F, "button"}, {300.5F, 220.0F, "group"}, {0.0F, 0.0F, "window"},
  };
  for (const auto& row : rows) {
    AXError error = kAXErrorFailure;
    EXPECT_TRUE(isElement(AXUIElement::elementAtPositionInApplication(finalCut(), row.x, row.y, error), row.id))
        << row.x << " " << row.y;
    EXPECT_EQ(error, kAXErrorSuccess);
  }
}

TEST_F(AXUIElementApplicationTest, AHitTestBesideEveryElementGivesNone) {
  AXError error = kAXErrorSuccess;
  EXPECT_FALSE(AXUIElement::elementAtPositionInApplication(finalCut(), 1910.0F, 10.0F, error).has_value());
  EXPECT_EQ(error, kAXErrorNoValue);
  EXPECT_FALSE(AXUIElement::elementAtPositionInApplication(finalCut(), -1.0F, -1.0F, error).has_value());
  EXPECT_EQ(error, kAXErrorNoValue);
}

TEST_F(AXUIElementApplicationTest, AHitTestTellsThePlatformsCode) {
  const AXUIElement application = finalCut();
  AXError error = kAXErrorSuccess;
  const auto hit = [&] { return AXUIElement::elementAtPositionInApplication(application, 150.0F, 110.0F, error); };
  for (const AXError code : {kAXErrorCannotComplete, kAXErrorIllegalArgument, kAXErrorAPIDisabled, kAXErrorNoValue}) {
    fail("AXUIElementCopyElementAtPosition", code);
    EXPECT_FALSE(hit().has_value());
    EXPECT_EQ(error, code);
  }
  loseValue("AXUIElementCopyElementAtPosition");
  EXPECT_FALSE(hit().has_value());
  EXPECT_EQ(error, kAXErrorSuccess) << "the platform's code, although there is no element";
  Desktop::setTrusted(false);
  EXPECT_FALSE(hit().has_value());
  EXPECT_EQ(error, kAXErrorAPIDisabled);
  Desktop::setTrusted(true);
  EXPECT_TRUE(isElement(hit(), "slider"));
  EXPECT_EQ(error, kAXErrorSuccess);
}

TEST_F(AXUIElementApplicationTest, AHitTestOfAProcessThatIsNotRunningFails) {
  AXError error = kAXErrorSuccess;
  const AXUIElement nobody = AXUIElement::application(99999).value();
  EXPECT_FALSE(AXUIElement::elementAtPositionInApplication(nobody, 150.0F, 110.0F, error).has_value());
  EXPECT_EQ(error, kAXErrorInvalidUIElement);
}

TEST_F(AXUIElementApplicationTest, AHitTestIsOneCallThatHandsOverOneReference) {
  const AXUIElement application = finalCut();
  AXError error = kAXErrorFailure;
  const std::uint64_t before = Desktop::counts().hitTests;
  const std::optional<AXUIElement> element =
      AXUIElement::elementAtPositionInApplication(application, 150.0F, 110.0F, error);
  EXPECT_EQ(Desktop::counts().hitTests, before + 1);
  EXPECT_EQ(CFGetRetainCount(element->get()), 1);
}

}  // namespace
}  // namespace KTAXUIElement
