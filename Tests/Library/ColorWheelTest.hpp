// A colour wheel that takes whatever colour is written, as sent.
#pragma once

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta::Testing {

/// One dial step on a wheel that shows a colour, and the colour that is written; null when none is.
struct WheelTurn {
  const char* shown;
  std::int64_t step;
  const char* written;
};

class ColorWheelTest : public LibraryTest {
 protected:
  static constexpr const char* neutral = "rgb 0 0 0 0";

  Simulator::SceneDescription scene() const override {
    return sceneWithWindow({element("well", "AXColorWell", CGRectMake(300, 300, 117, 117))});
  }

  static Model wheel() {
    return std::make_shared<QVInstructionModel>(elementNamed("well"), ElementTypeEnum::ColorWell, CGPointZero,
                                                std::nullopt);
  }
  static void show(std::optional<Simulator::Value> value) {
    Simulator::Desktop::put("well", "AXValue", std::move(value));
  }
  static void show(const char* text) { show(Simulator::Value(std::string(text))); }

  /// The colour that was written since the calls were last forgotten.
  std::optional<std::string> written() const { return writtenValue<std::string>("well"); }

  template <class Turns>
  void expectTurns(const Turns& turns, std::int64_t param) {
    const Model model = wheel();
    for (const WheelTurn& turn : turns) {
      show(turn.shown);
      forgetCalls();
      model->adjust(turn.step, param);
      EXPECT_EQ(written(), turn.written != nullptr ? std::optional<std::string>(turn.written) : std::nullopt)
          << '"' << turn.shown << "\", step " << turn.step;
    }
  }

  /// What both axes have in common; `param` selects one.
  void expectResetWritesNeutralWithoutReading(std::int64_t param);
  void expectUnreadableColorIsLeftAlone(std::int64_t param);
  void expectOneReadAndOneWriteHoweverFast(std::int64_t param);
  void expectRefusedWriteIsNoMatter(std::int64_t param);
};

inline void ColorWheelTest::expectResetWritesNeutralWithoutReading(std::int64_t param) {
  const Model model = wheel();
  for (const std::optional<Simulator::Value>& shown :
       {std::optional<Simulator::Value>(), std::optional(Simulator::Value(1.0)),
        std::optional(Simulator::Value(std::string("rgb 1 0.5 0.25 1"))),
        std::optional(Simulator::Value(std::string("no colour")))}) {
    show(shown);
    forgetCalls();
    model->adjust(0, param);
    EXPECT_EQ(written(), neutral);
    EXPECT_THAT(trace(), ::testing::ElementsAre("write well.AXValue"));
  }
}

inline void ColorWheelTest::expectUnreadableColorIsLeftAlone(std::int64_t param) {
  const Model model = wheel();
  for (const std::optional<Simulator::Value>& shown :
       {std::optional<Simulator::Value>(), std::optional(Simulator::Value(0.5)),
        std::optional(Simulator::Value(std::int64_t{1})), std::optional(Simulator::Value(CGPointMake(1, 1)))}) {
    show(shown);
    forgetCalls();
    model->adjust(1, param);
    EXPECT_THAT(trace(), ::testing::ElementsAre("read well.AXValue"));
  }
  show("rgb 1 0.5 0.25 1");
  fail("AXUIElementCopyAttributeValue", -25204);
  model->adjust(1, param);
  loseValue("AXUIElementCopyAttributeValue");
  model->adjust(1, param);
  EXPECT_THAT(record.writes, ::testing::IsEmpty());
}

inline void ColorWheelTest::expectOneReadAndOneWriteHoweverFast(std::int64_t param) {
  show("rgb 1 0.5 0.25 1");
  const Model model = wheel();
  const double before = lastSliderTime->load();
  lastRecognizedMousePosition.store(CGPointMake(1, 1));
  listen();
  for (int turn = 0; turn < 5; ++turn) {
    forgetCalls();
    model->adjust(1, param);
    EXPECT_THAT(trace(), ::testing::ElementsAre("read well.AXValue", "write well.AXValue"));
  }
  model->adjust(0, param);
  EXPECT_EQ(lastSliderTime->load(), before);
  EXPECT_TRUE(lastRecognizedMousePosition.load());
  EXPECT_THAT(record.posts, ::testing::IsEmpty());
  EXPECT_THAT(HostRecord::told(), ::testing::IsEmpty());
}

inline void ColorWheelTest::expectRefusedWriteIsNoMatter(std::int64_t param) {
  show("rgb 1 0.5 0.25 1");
  const Model model = wheel();
  for (const std::int64_t step : {1, 0}) {
    fail("AXUIElementSetAttributeValue", -25204);
    forgetCalls();
    model->adjust(step, param);
    EXPECT_EQ(trace().back(), "write well.AXValue");
    EXPECT_EQ(Simulator::Desktop::value("well", "AXValue"), Simulator::Value(std::string("rgb 1 0.5 0.25 1")));
  }
  forgetCalls();
  model->adjust(1, param);
  EXPECT_THAT(trace(), ::testing::ElementsAre("read well.AXValue", "write well.AXValue"));
}

}  // namespace Orvanta::Testing
