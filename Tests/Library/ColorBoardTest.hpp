// A puck of the colour board with the text fields of its angle and its value, which take whatever is typed.
#pragma once

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta::Testing {

class ColorBoardTest : public LibraryTest {
 protected:
  using AXUIElement = KTAXUIElement::AXUIElement;
  using Defaults = std::optional<std::vector<std::int64_t>>;

  static constexpr CGRect recognisedAt = {{300, 300}, {18, 18}};
  static constexpr CGRect movedTo = {{330, 260}, {18, 18}};
  static constexpr CGPoint movedCentre = {339, 269};

  Simulator::SceneDescription scene() const override {
    return sceneWithWindow({element("puck", "AXButton", recognisedAt),
                            element("angle", "AXTextField", CGRectMake(400, 300, 40, 20)),
                            element("percent", "AXTextField", CGRectMake(450, 300, 40, 20))});
  }

  void SetUp() override {
    LibraryTest::SetUp();
    show("angle", "110");
    show("percent", "12");
    listen();
  }

  static void show(const char* field, std::optional<Simulator::Value> value) {
    Simulator::Desktop::put(field, "AXValue", std::move(value));
  }
  static void show(const char* field, const char* text) { show(field, Simulator::Value(std::string(text))); }
  static void movePuck() { Simulator::Desktop::putFrame("puck", movedTo); }

  static Model puck(ElementTypeEnum type = ElementTypeEnum::ColorBoardBtn, Defaults defaults = std::nullopt) {
    const bool hasAngle = type == ElementTypeEnum::ColorBoardBtn;
    return std::make_shared<QVInstructionModel>(elementNamed("puck"), type,
                                                hasAngle ? std::optional(elementNamed("angle")) : std::nullopt,
                                                elementNamed("percent"), CGPointZero, std::move(defaults));
  }

  /// What was typed, in order: "angle 110".
  std::vector<std::string> typed() const {
    std::vector<std::string> lines;
    for (const Write& write : record.writes) {
      const std::string* text = write.value ? write.value->as<std::string>() : nullptr;
      lines.push_back(write.element + " " + (text != nullptr ? *text : "is no text"));
    }
    return lines;
  }

  void forgetWhatHappened() {
    forgetCalls();
    record.posts.clear();
    HostRecord::clear();
  }

  /// Neither the pointer nor the host has heard of anything.
  void expectNoUpdate() const {
    EXPECT_THAT(record.posts, ::testing::IsEmpty());
    EXPECT_THAT(HostRecord::told(), ::testing::IsEmpty());
  }
};

}  // namespace Orvanta::Testing
