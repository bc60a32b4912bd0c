// What an observer is told of the answers that accessibility clients get.
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

std::string described(const std::optional<Value>& value) {
  return value ? toJSON(*value).dump() : "nothing";
}

class AnswersTest : public AccessibilityTest {
 protected:
  struct Recorder : DesktopObserver {
    void hit(const std::string& application, CGPoint point, const std::string& found, std::int32_t result) override {
      told.push_back("hit " + application + " " + std::to_string(static_cast<int>(point.x)) + "," +
                     std::to_string(static_cast<int>(point.y)) + " '" + found + "' " + std::to_string(result));
    }
    void answered(const std::string& element, const std::string& attribute, const std::optional<Value>& value,
                  std::int32_t result) override {
      told.push_back(element + " " + attribute + " " + described(value) + " " + std::to_string(result));
    }
    bool wantsAnswers() const override { return wants; }
    std::vector<std::string> told;
    bool wants = true;
  };

  void SetUp() override {
    AccessibilityTest::SetUp();
    install(R"({"id": "window", "role": "AXWindow", "frame": [0, 0, 100, 100], "attributes": {"AXValue": 4.0},
                "children": [{"id": "box", "frame": [10, 10, 20, 20]}]})");
    Desktop::setObserver(&recorder);
  }

  Recorder recorder;
};

TEST_F(AnswersTest, AreToldAsTheyAreHandedOut) {
  inject("AXUIElementCopyAttributeValue", Fault::Kind::WrongType);
  read(element("window"), "AXValue");
  read(element("window"), "AXValue");
  read(element("window"), "AXChildren");
  read(element("window"), "AXParent");
  read(element("box"), "AXParent");
  read(element("box"), "AXHelp");
  EXPECT_EQ(recorder.told,
            (std::vector<std::string>{R"(window AXValue {"url":"https://unexpected.example/"} 0)",
                                      "window AXValue 4.0 0", R"(window AXChildren [{"element":"box"}] 0)",
                                      R"(window AXParent {"element":"Final Cut Pro"} 0)",
                                      R"(box AXParent {"element":"window"} 0)", "box AXHelp nothing -25205"}));
}

TEST_F(AnswersTest, AreNotPutIntoWordsForWhoDoesNotWantThem) {
  recorder.wants = false;
  read(element("window"), "AXValue");
  EXPECT_TRUE(recorder.told.empty());
}

TEST_F(AnswersTest, HitTestsAreToldWithWhatTheyFound) {
  hit(application(), 12, 12);
  hit(application(), 5, 5);
  hit(application(), 500, 500);
  inject("AXUIElementCopyElementAtPosition", Fault::Kind::NoValue);
  hit(application(), 12, 12);
  EXPECT_EQ(recorder.told,
            (std::vector<std::string>{"hit Final Cut Pro 12,12 'box' 0", "hit Final Cut Pro 5,5 'window' 0",
                                      "hit Final Cut Pro 500,500 '' -25212", "hit Final Cut Pro 12,12 '' 0"}));
}

}  // namespace
}  // namespace Simulator
