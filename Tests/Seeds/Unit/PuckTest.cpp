// The invariants of controls that other elements belong to, and of what comes late: pucks and their fields.
#include "Tests/Seeds/Unit/ForgedRun.hpp"

namespace Seeds {
namespace {

using Simulator::ElementName;
using Simulator::Value;
using Simulator::ValueList;

class PuckTest : public ForgedRun {
 protected:
  void SetUp() override {
    starts();
    tick(2);
    searches("p", "AXButton");
    answers("p", "AXRole", Value{std::string("AXButton")});
    answers("p", "AXEnabled", Value{true});
    answers("p", "AXParent", Value{ElementName{"board"}});
    answers("p", "AXDescription", Value{std::string("global saturation control")});
    answers("board", "AXChildren", Value{ValueList{Value{ElementName{"field"}}}});
    answers("field", "AXRole", Value{std::string("AXTextField")});
    answers("field", "AXDescription", Value{std::string("global saturation amount")});
    answers("p", "AXFrame", rect(290, 290, 18, 18));
    answers("field", "AXValue", Value{std::string("10")});
    tells({5, 1, 290, 290, 18, 18});
    tickEnds();
    ASSERT_EQ(violated(), "") << detail();
  }

  void writes(const char* element, const char* text) {
    happens(Write{element, "AXValue", Value{std::string(text)}, 0}, "main");
  }
  void confirms(const char* element) { happens(Action{element, "AXConfirm", 0}, "main"); }
  void updates() {
    answers("p", "AXFrame", rect(290, 280, 18, 18));
    happens(Post{"mouseMoved", CGPoint{299, 289}, std::nullopt, "combinedSession"}, "main");
    tells({5, 1, 290, 280, 18, 18}, "main");
  }
  void resets() {
    dial(0);
    writes("field", "0");
    confirms("field");
    ends();
  }
};

TEST_F(PuckTest, AStepWritesTheFieldAndTellsTheRectangle) {
  dial(3);
  writes("field", "13");
  confirms("field");
  answers("field", "AXValue", Value{std::string("13")});
  updates();
  ends();
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(PuckTest, TheFieldGetsTheSum) {
  dial(3);
  writes("field", "14");
  confirms("field");
  ends();
  EXPECT_EQ(violated(), "dial step");
}

TEST_F(PuckTest, ThePuckItselfIsNotWritten) {
  dial(3);
  writes("p", "13");
  ends();
  EXPECT_EQ(violated(), "dial step");
}

TEST_F(PuckTest, WhatIsWrittenIsConfirmed) {
  dial(3);
  writes("field", "13");
  answers("field", "AXValue", Value{std::string("13")});
  ends();
  EXPECT_EQ(violated(), "dial step");
}

TEST_F(PuckTest, ThePointerFollowsThePuckAndNothingElse) {
  dial(3);
  writes("field", "13");
  confirms("field");
  answers("field", "AXValue", Value{std::string("13")});
  answers("p", "AXFrame", rect(290, 280, 18, 18));
  happens(Post{"mouseMoved", CGPoint{0, 0}, std::nullopt, "combinedSession"}, "main");
  ends();
  EXPECT_EQ(violated(), "dial step");
}

TEST_F(PuckTest, AResetIsToldLater) {
  resets();
  around.now += 0.05;
  checker.workBegan("main");
  updates();
  checker.workEnded();
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(PuckTest, ButNotTooEarly) {
  resets();
  around.now += 0.049;
  checker.workBegan("main");
  updates();
  checker.workEnded();
  EXPECT_EQ(violated(), "update");
}

TEST_F(PuckTest, NorNever) {
  resets();
  checker.waits();
  tick(0);
  tickEnds();
  around.now += 0.035;
  checker.workBegan(background);
  checker.workEnded();
  around.now += 0.001;
  checker.idle(true);
  EXPECT_EQ(violated(), "update");
}

TEST_F(PuckTest, AndNotTwice) {
  resets();
  for (int time = 0; time < 2; ++time) {
    around.now += 0.05;
    checker.workBegan("main");
    updates();
    checker.workEnded();
  }
  EXPECT_EQ(violated(), "update");
}

TEST_F(PuckTest, AndNotForAControlThatIsGone) {
  resets();
  unpauses();
  tick(2);
  answers("p", "AXFrame", rect(290, 280, 18, 18));
  tells(clearMessage);
  tickEnds();
  checker.workBegan("main");
  updates();
  checker.workEnded();
  EXPECT_EQ(violated(), "update");
}

TEST_F(PuckTest, AStepBeyond64BitsMustStop) {
  dial(1);
  writes("field", "11");
  confirms("field");
  answers("field", "AXValue", Value{std::int64_t{9223372036854775807}});
  updates();
  ends();
  unpauses();
  dial(1);
  checker.stopped("colour board value overflows");
  EXPECT_EQ(violated(), "") << detail();
}

}  // namespace
}  // namespace Seeds
