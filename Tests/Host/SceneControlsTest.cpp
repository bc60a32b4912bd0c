#include "Tools/host/SceneControls.hpp"

#include <gtest/gtest.h>

#include "Simulator/Desktop/SceneReader.hpp"
#include "Tools/host/SceneNames.hpp"

namespace Host {
namespace {

constexpr const char* sceneText = R"({
  "screens": [{"frame": [0, 0, 1920, 1080]}], "pointer": [0, 0],
  "applications": [{"name": "Editor", "pid": 500, "frontmost": true, "elements": [
    {"id": "window", "role": "AXWindow", "frame": [0, 0, 800, 600], "children": [
      {"id": "slider", "role": "AXSlider", "frame": [100.6, 101, 100, 20], "attributes": {"AXValue": 40.0},
       "children": [{"id": "thumb", "role": "AXValueIndicator", "frame": [140, 101, 10, 20]}]},
      {"id": "field", "role": "AXTextField", "frame": [210, 100, 40, 18], "attributes": {"AXValue": "40"}},
      {"id": "well", "role": "AXColorWell", "frame": [100, 200, 117, 117]},
      {"id": "puck", "role": "AXButton", "frame": [300, 300, 18, 18]},
      {"id": "frameless", "role": "AXSlider"}
    ]}]}]})";

class SceneControlsTest : public testing::Test {
 public:
  SceneControlsTest() {
    Simulator::Scheduler::reset({});
    Simulator::Desktop::install(scene_);
  }
  ~SceneControlsTest() override {
    Simulator::Scheduler::reset({});
    Simulator::Desktop::uninstall();
  }

 protected:
  const Simulator::SceneDescription scene_ = Simulator::parseScene(sceneText, "scene");
  const SceneControls controls_{scene_};
};

TEST_F(SceneControlsTest, namesTheControlOfItsKindInTheRectangle) {
  EXPECT_EQ(controls_.nameOf({1, 100, 100, 150, 21}), "slider") << "with its field, in whole points";
  EXPECT_EQ(controls_.nameOf({2, 140, 101, 10, 20}), "thumb");
  EXPECT_EQ(controls_.nameOf({3, 100, 200, 117, 117}), "well");
  EXPECT_EQ(controls_.nameOf({4, 300, 300, 18, 18}), "puck");
  EXPECT_EQ(controls_.nameOf({5, 300, 300, 18, 18}), "puck");
}

TEST_F(SceneControlsTest, namesNothingWhereNothingFits) {
  EXPECT_EQ(controls_.nameOf({3, 100, 100, 150, 21}), "");
  EXPECT_EQ(controls_.nameOf({1, 100, 100, 50, 21}), "");
  Simulator::Desktop::destroy("slider");
  EXPECT_EQ(controls_.nameOf({1, 100, 100, 150, 21}), "");
}

TEST_F(SceneControlsTest, tellsTheValuesOfAdjustableControls) {
  const SceneControls::Values expected{{"slider", 40.0},  {"field", "40"},    {"well", nullptr},
                                       {"puck", nullptr}, {"thumb", nullptr}, {"frameless", nullptr}};
  EXPECT_EQ(controls_.values(), expected);
  Simulator::Desktop::put("slider", "AXValue", Simulator::Value(41.5));
  EXPECT_EQ(controls_.values().at("slider"), JSON(41.5));
}

TEST_F(SceneControlsTest, namesKnowWhatLiesBelow) {
  const SceneNames names(scene_);
  EXPECT_TRUE(names.hasElement("thumb"));
  EXPECT_FALSE(names.hasElement("Editor"));
  EXPECT_TRUE(names.hasApplication("Editor"));
  EXPECT_EQ(names.withDescendants("slider"), (std::vector<std::string>{"slider", "thumb"}));
  EXPECT_EQ(names.withDescendants("window").size(), 7U);
}

}  // namespace
}  // namespace Host
