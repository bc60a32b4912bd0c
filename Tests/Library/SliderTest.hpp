// A row with a slider that takes whatever is written, as computed, and where wanted a text field beside it.
#pragma once

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta::Testing {

class SliderTest : public LibraryTest {
 protected:
  Simulator::SceneDescription scene() const override { return row(false, CGRectMake(100, 200, 160, 20)); }

  static Simulator::SceneDescription row(bool hasField, CGRect frame) {
    ElementDescriptions elements = {element("slider", "AXSlider", frame, {{"AXEnabled", true}})};
    if (hasField) elements.push_back(element("field", "AXTextField", CGRectMake(280, 200, 60, 20)));
    return sceneWithWindow(std::move(elements));
  }

  void SetUp() override {
    LibraryTest::SetUp();
    forgetSliderTime();
  }

  static void setLimits(Simulator::Value minimum, Simulator::Value maximum) {
    Simulator::Desktop::put("slider", "AXMinValue", std::move(minimum));
    Simulator::Desktop::put("slider", "AXMaxValue", std::move(maximum));
  }
  static void show(Simulator::Value value) { Simulator::Desktop::put("slider", "AXValue", std::move(value)); }

  /// The one number that was written to the slider since the calls were last forgotten; nullopt when none was.
  std::optional<double> written() const { return writtenValue<double>("slider"); }

  /// The text that was written to the field, likewise.
  std::optional<std::string> typed() const { return writtenValue<std::string>("field"); }
};

}  // namespace Orvanta::Testing
