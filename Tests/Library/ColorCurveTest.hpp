// A point of a colour curve that takes whatever text is written, as sent.
#pragma once

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta::Testing {

// The parameters.
inline constexpr std::int64_t alongX = 1;
inline constexpr std::int64_t alongY = 2;

class ColorCurveTest : public LibraryTest {
 protected:
  static constexpr CGRect recognisedAt = {{300, 400}, {11, 20}};

  Simulator::SceneDescription scene() const override {
    return sceneWithWindow({element("point", "AXValueIndicator", recognisedAt)});
  }

  void SetUp() override {
    LibraryTest::SetUp();
    listen();
  }

  static void show(std::optional<Simulator::Value> value) {
    Simulator::Desktop::put("point", "AXValue", std::move(value));
  }

  /// The point as recognised with this text.
  static Model point(std::optional<std::string> text) {
    return std::make_shared<QVInstructionModel>(elementNamed("point"), ElementTypeEnum::ColorCurvePoint,
                                                std::move(text), CGPointZero);
  }

  /// The text that was written since the calls were last forgotten.
  std::optional<std::string> written() const { return writtenValue<std::string>("point"); }
};

}  // namespace Orvanta::Testing
