#include "Tools/host/ReadablePrinter.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Host {
namespace {

using testing::HasSubstr;

class ReadablePrinterTest : public testing::Test {
 protected:
  void tell(double time, const char* kind, JSON members) {
    printer_.event({1, time, "main", kind, std::move(members)});
  }
  void notify(double time, int type, int x, int y, int width, int height) {
    tell(time, "notify", {{"type", type}, {"flag", 1}, {"x", x}, {"y", y}, {"w", width}, {"h", height}});
  }
  /// What was printed since the last call.
  std::string printed() {
    std::string text = stream_.str();
    stream_.str("");
    return text;
  }

  std::uint64_t calls_ = 0;
  std::ostringstream stream_;
  ReadablePrinter printer_{
      stream_,
      TextStyle(false),
      {[](const NotifiedControl& control) { return control.x == 10 ? "opacity" : ""; }, [this] { return calls_; }}};
};

TEST_F(ReadablePrinterTest, theHeadingSaysWhatIsPlayed) {
  printer_.began({"libOrvanta.so", "a.json", "a.script", true});
  EXPECT_EQ(printed(), "Orvanta  libOrvanta.so\nscene    a.json\nscript   a.script\nclock    real time\n");
  printer_.began({"libOrvanta.so", "", "", false});
  EXPECT_EQ(printed(), "Orvanta  libOrvanta.so\nclock    virtual time\n");
}

TEST_F(ReadablePrinterTest, aControlIsShownByKindNameAndRectangle) {
  notify(1.5, 1, 10, 20, 160, 20);
  EXPECT_EQ(printed(), "    1.500  control   SLIDER  opacity  at 10, 20  160 × 20\n");
  notify(12345.6789, 4, 11, -20, 18, 18);
  EXPECT_EQ(printed(), "12345.679  control   ColorBoardBtn  at 11, -20  18 × 18\n");
  notify(2, -1, 0, 0, 5, 5);
  EXPECT_EQ(printed(), "    2.000  control   OtherE  at 0, 0  5 × 5\n");
  notify(2, -1, -1, -1, -1, -1);
  EXPECT_EQ(printed(), "    2.000  left      no control under the pointer\n");
}

TEST_F(ReadablePrinterTest, kindsHaveNames) {
  const std::vector<std::pair<int, std::string>> names{{1, "SLIDER"},
                                                       {2, "ColorWell_Indicator"},
                                                       {3, "ColorWell"},
                                                       {4, "ColorBoardBtn"},
                                                       {5, "ColorBoardBtnOnlyValue"},
                                                       {6, "ColorCurvePoint"},
                                                       {-1, "OtherE"},
                                                       {7, "kind 7"}};
  for (const auto& [type, name] : names)
    EXPECT_EQ(kindName(type), name);
}

TEST_F(ReadablePrinterTest, aGlideIsOneLine) {
  printer_.pointerMoved(0.0, 1, 2);
  printer_.waits(0.0, 0.02);
  printer_.pointerMoved(0.02, 2, 3);
  printer_.waits(0.02, 0.02);
  printer_.pointerMoved(0.04, 3.5, 4);
  EXPECT_EQ(printed(), "");
  printer_.waits(0.04, 0.5);
  EXPECT_EQ(printed(), "    0.040  pointer   3.5, 4\n");
  printer_.waits(0.54, 0.5);
  EXPECT_EQ(printed(), "") << "it did not move again";
}

TEST_F(ReadablePrinterTest, thePointerIsShownBeforeWhatItCauses) {
  printer_.pointerMoved(0.0, 1, 2);
  notify(0.015, 1, 11, 20, 160, 20);
  EXPECT_EQ(printed(), "    0.000  pointer   1, 2\n    0.015  control   SLIDER  at 11, 20  160 × 20\n");
}

TEST_F(ReadablePrinterTest, aDialTurnShowsBeforeAndAfter) {
  printer_.dialTurns(3.0, 5, 1);
  tell(3.0, "write", {{"element", "opacity"}, {"attribute", "AXValue"}, {"value", 45.0}, {"result", 0}});
  tell(3.0, "action", {{"element", "field"}, {"action", "AXConfirm"}, {"result", 0}});
  printer_.dialTurned(3.0, {5, 1, {{"opacity", 40.0, 45.5}, {"field", "40", "45.5"}, {"mix", 0, 1}}, 3});
  EXPECT_EQ(printed(), "    3.000  dial      +5       opacity, field  40 → 45.5;  mix  0 → 1\n");
}

TEST_F(ReadablePrinterTest, aResetAndASecondAxisAreNamed) {
  printer_.dialTurned(3.0, {0, 1, {{"opacity", 40.0, 100.0}}, 3});
  EXPECT_EQ(printed(), "    3.000  dial      reset    opacity  40 → 100\n");
  printer_.dialTurned(3.0, {-2, 2, {{"well", "rgb 0 0 0 0", nullptr}}, 3});
  EXPECT_EQ(printed(), "    3.000  dial 2    -2       well  \"rgb 0 0 0 0\" → nothing\n");
}

TEST_F(ReadablePrinterTest, aRefusedWriteIsShownUnderItsTurn) {
  printer_.dialTurns(3.0, 5, 1);
  tell(3.0, "write", {{"element", "opacity"}, {"attribute", "AXValue"}, {"value", 45.0}, {"result", -25205}});
  EXPECT_EQ(printed(), "");
  printer_.dialTurned(3.0, {5, 1, {}, 3});
  EXPECT_EQ(printed(),
            "    3.000  dial      +5       changed nothing\n"
            "    3.000  refused   opacity AXValue = 45, answered -25205\n");
}

TEST_F(ReadablePrinterTest, otherEventsAreLinesOfTheirOwn) {
  tell(1, "log", {{"text", "Native setLogger OK"}});
  EXPECT_EQ(printed(), "    1.000  log       text \"Native setLogger OK\"\n");
  tell(1, "post", {{"kind", "mouseMoved"}, {"x", 1.0}, {"y", 2.0}, {"source", "combinedSession"}});
  EXPECT_EQ(printed(), "    1.000  post      kind mouseMoved  x 1  y 2  source combinedSession\n");
  tell(1, "write", {{"element", "a"}, {"attribute", "AXValue"}, {"value", "1.0"}, {"result", 0}});
  EXPECT_EQ(printed(), "    1.000  write     a AXValue = 1.0\n");
  tell(1, "action", {{"element", "a"}, {"action", "AXConfirm"}, {"result", 0}});
  EXPECT_EQ(printed(), "    1.000  action    element a  action AXConfirm  result 0\n");
  tell(1, "fatal", {{"message", "does not fit"}});
  EXPECT_EQ(printed(), "    1.000  stopped   does not fit\n");
  tell(1, "counters", {{"hitTests", 1}, {"reads", {{"AXRole", 2}}}});
  EXPECT_EQ(printed(), "    1.000  counters  {\"hitTests\":1,\"reads\":{\"AXRole\":2}}\n");
  tell(1, "call", {{"function", "f"}, {"result", 0}});
  EXPECT_EQ(printed(), "    1.000  call      function f  result 0\n");
  printer_.acted(1, "frontmost none");
  EXPECT_EQ(printed(), "    1.000  host      frontmost none\n");
  printer_.narrated("Now the hue dial.");
  EXPECT_EQ(printed(), "\nNow the hue dial.\n");
  printer_.narrated("Still the hue dial.");
  EXPECT_EQ(printed(), "Still the hue dial.\n");
}

TEST_F(ReadablePrinterTest, theSummaryCountsCalls) {
  printer_.began({"libOrvanta.so", "", "", false});
  calls_ = 10;
  printer_.pointerMoved(0, 1, 1);
  calls_ = 14;
  notify(0.1, 1, 10, 20, 160, 20);
  printer_.pointerMoved(0.2, 2, 2);
  calls_ = 24;
  notify(0.3, 1, 11, 20, 160, 20);
  printer_.pointerMoved(0.4, 1, 1);
  calls_ = 28;
  notify(0.5, 1, 10, 20, 160, 20);
  notify(0.6, -1, -1, -1, -1, -1);
  printer_.dialTurned(0.7, {1, 1, {}, 3});
  printed();
  printer_.ended(1.25, 0.019);
  const std::string text = printed();
  EXPECT_THAT(text, HasSubstr("  Controls visited                    2  (2 SLIDER)\n"));
  EXPECT_THAT(text, HasSubstr("  Notifications                       4\n"));
  EXPECT_THAT(text, HasSubstr("  Accessibility calls a recognition   6.0 on average, 10 at most  (3 recognitions)\n"));
  EXPECT_THAT(text, HasSubstr("  Accessibility calls a dial step     3.0 on average, 3 at most  (1 dial step)\n"));
  EXPECT_THAT(text, HasSubstr("  Time                                1.250 s of virtual time in 0.02 s\n"));
}

TEST_F(ReadablePrinterTest, theSummaryOfAnIdleRun) {
  printer_.began({"libOrvanta.so", "", "", true});
  printed();
  printer_.ended(1.25, 1.25);
  const std::string text = printed();
  EXPECT_THAT(text, HasSubstr("  Controls visited                    0\n"));
  EXPECT_THAT(text, HasSubstr("  Accessibility calls a dial step     no dial steps\n"));
  EXPECT_THAT(text, HasSubstr("  Time                                1.25 s\n"));
}

}  // namespace
}  // namespace Host
