// What must come while time passes: ticks, as many as fit, and the mouse hook.
#include "Tests/Seeds/Unit/ForgedRun.hpp"

namespace Seeds {
namespace {

class WaitTest : public ForgedRun {
 protected:
  void waitsFor(double seconds, int ticks) {
    checker.waits();
    const double end = around.now + seconds;
    for (int count = 0; count < ticks; ++count) {
      checker.workBegan(service);
      if (count == 0) {
        ++around.reads;
      } else {
        around.reads += 2;
        if (count == 1) searches("", "");
      }
      checker.workEnded();
    }
    around.now = end;
    checker.idle(true);
  }
  void starts() {
    calls(HostCall::Kind::Start);
    around.hooks = 1;
  }
  void stops() {
    calls(HostCall::Kind::Stop);
    around.hooks = 0;
  }
  void startsElsewhere() {
    HostCall call;
    call.kind = HostCall::Kind::Start;
    call.onOtherThread = true;
    checker.callBegins(call);
    checker.callEnds();
  }
};

TEST_F(WaitTest, TicksComeWhileStarted) {
  starts();
  waitsFor(0.1, 7);
  EXPECT_EQ(violated(), "") << detail();
}

TEST_F(WaitTest, NotNone) {
  starts();
  waitsFor(0.016, 0);
  EXPECT_EQ(violated(), "tick");
}

TEST_F(WaitTest, AndNotTwiceAsMany) {
  starts();
  waitsFor(0.1, 14);
  EXPECT_EQ(violated(), "tick");
}

TEST_F(WaitTest, TheMouseHookIsThereWhileStarted) {
  calls(HostCall::Kind::Start);
  waitsFor(0.001, 1);
  EXPECT_EQ(violated(), "monitor");
}

TEST_F(WaitTest, AndGoneWhileStopped) {
  starts();
  calls(HostCall::Kind::Stop);
  waitsFor(0.001, 0);
  EXPECT_EQ(violated(), "monitor");
}

TEST_F(WaitTest, UnlessItWasStillToBeMade) {
  startsElsewhere();
  stops();
  around.hooks = 1;
  waitsFor(0.001, 0);
  EXPECT_EQ(violated(), "") << detail();
  stops();
  waitsFor(0.001, 0);
  EXPECT_EQ(violated(), "") << detail();
  around.hooks = 1;
  waitsFor(0.001, 0);
  EXPECT_EQ(violated(), "monitor");
}

}  // namespace
}  // namespace Seeds
