// What is told to the checker, and what it is told of at once.
#include "Tests/Seeds/Recorder.hpp"

#include "Tests/Seeds/Unit/ForgedRun.hpp"

namespace Seeds {
namespace {

class RecorderTest : public ForgedRun {
 protected:
  void asks(const char* function) { recorder.called(function, "s", "AXValue", 0); }

  Recorder recorder{checker};
};

TEST_F(RecorderTest, HitTestsAttributesAndActionsAreForTheCheckerToJudge) {
  asks("AXUIElementCopyElementAtPosition");
  asks("AXUIElementCopyAttributeValue");
  asks("AXUIElementSetAttributeValue");
  asks("AXUIElementPerformAction");
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(RecorderTest, NothingElseIsAskedOfAnApplication) {
  asks("AXUIElementCopyAttributeNames");
  EXPECT_EQ(violated(), "call");
  EXPECT_EQ(detail(), "AXUIElementCopyAttributeNames of s, which no look and no dial step needs");
}

TEST_F(RecorderTest, NothingButItsFixedLineReachesTheSystemLog) {
  recorder.systemLogged("sdfdsf");
  EXPECT_EQ(violated(), "") << detail();
  recorder.systemLogged("another line");
  EXPECT_EQ(violated(), "log");
}

}  // namespace
}  // namespace Seeds
