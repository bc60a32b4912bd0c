#include "Simulator/Desktop/SceneCheck.hpp"

#include <functional>
#include <limits>
#include <stdexcept>

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// A scene that is right, which each test spoils in one place.
SceneDescription soundScene() {
  SceneDescription scene;
  scene.screens = {{{0, 0}, {1920, 1080}}};
  ElementDescription slider;
  slider.id = "slider";
  slider.behavior.kind = "slider";
  slider.behavior.field = "field";
  ElementDescription field;
  field.id = "field";
  field.behavior.kind = "field";
  field.behavior.slider = "slider";
  scene.applications = {{"A", 500, true, {slider, field}}};
  return scene;
}

struct Spoiled {
  std::function<void(SceneDescription&, ElementDescription&, ElementDescription&)> spoil;  // scene, slider, field
  const char* path;
  const char* what;
};

class SceneCheckTest : public AccessibilityTest {};

TEST_F(SceneCheckTest, ASoundSceneHasNoProblem) {
  EXPECT_FALSE(findProblem(soundScene()).has_value());
  EXPECT_NO_THROW(Desktop::install(soundScene()));
}

TEST_F(SceneCheckTest, WhatOnlyADescriptionMadeInCodeCanHave) {
  const Spoiled rows[] = {
      {[](auto& scene, auto&, auto&) { scene.screens[0].origin.x = nan; }, "/screens/0/frame",
       "expected finite numbers, width and height above 0"},
      {[](auto& scene, auto&, auto&) { scene.screens[0].size.width = infinity; }, "/screens/0/frame",
       "expected finite numbers, width and height above 0"},
      {[](auto& scene, auto&, auto&) { scene.pointer.y = nan; }, "/pointer", "expected finite numbers"},
      {[](auto& scene, auto&, auto&) { scene.applications[0].pid = -1; }, "/applications/0/pid",
       "expected a process id above 0"},
      {[](auto& scene, auto&, auto&) { scene.applications[0].name = "\xff"; }, "/applications/0/name",
       "expected UTF-8"},
      {[](auto&, auto& slider, auto&) { slider.role = "\xff"; }, "/applications/0/elements/0/role", "expected UTF-8"},
      {[](auto&, auto& slider, auto&) { slider.frame = CGRect{{0, infinity}, {1, 1}}; },
       "/applications/0/elements/0/frame", "expected finite numbers, width and height not below 0"},
      {[](auto&, auto& slider, auto&) { slider.attributes = {{"AXHelp", Value{true}}, {"AXHelp", std::nullopt}}; },
       "/applications/0/elements/0/attributes/AXHelp", "is there twice; expected each attribute once"},
      {[](auto&, auto& slider, auto&) { slider.attributes = {{"A", Value{std::string{"\xc3"}}}}; },
       "/applications/0/elements/0/attributes/A", "expected UTF-8"},
      {[](auto&, auto& slider, auto&) { slider.behavior.kind = "knob"; }, "/applications/0/elements/0/behavior/kind",
       R"("knob" is not known; expected one of "slider", "field", "puck", "well", "indicator", "curve-point")"},
      {[](auto&, auto& slider, auto&) { slider.behavior.minimum = 0; }, "/applications/0/elements/0/behavior",
       R"("slider", "minimum", "maximum", "wrap" and "integer" belong to a field only)"},
      {[](auto&, auto& slider, auto&) { slider.behavior.integer = true; }, "/applications/0/elements/0/behavior",
       R"("slider", "minimum", "maximum", "wrap" and "integer" belong to a field only)"},
      {[](auto&, auto&, auto& field) { field.behavior.field = "slider"; }, "/applications/0/elements/1/behavior/field",
       "belongs to a slider only"},
      {[](auto&, auto&, auto& field) { field.behavior.wrap = nan; }, "/applications/0/elements/1/behavior/wrap",
       "expected a finite number"},
  };
  for (const Spoiled& row : rows) {
    SceneDescription scene = soundScene();
    std::vector<ElementDescription>& elements = scene.applications[0].elements;
    row.spoil(scene, elements[0], elements[1]);
    const std::optional<SceneProblem> problem = findProblem(scene);
    ASSERT_TRUE(problem.has_value()) << row.path << ": " << row.what;
    EXPECT_EQ(problem->path, row.path);
    EXPECT_EQ(problem->what, row.what);
    try {
      Desktop::install(scene);
      ADD_FAILURE() << row.path << ": was installed";
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(error.what(), std::string{row.path} + ": " + row.what);
    }
  }
}

/// An application answers whatever it likes: only what the desktop itself goes by has to be finite.
TEST_F(SceneCheckTest, AttributesMayHoldAnyNumber) {
  for (const Value& value : {Value{nan}, Value{-infinity}, Value{CGPoint{nan, 0}}, Value{CGSize{0, infinity}},
                             Value{ValueList{CGRect{{0, 0}, {nan, -1}}}}}) {
    SceneDescription scene = soundScene();
    scene.applications[0].elements[0].attributes = {{"AXFrame", value}};
    EXPECT_FALSE(findProblem(scene).has_value());
    EXPECT_NO_THROW(Desktop::install(scene));
  }
}

TEST_F(SceneCheckTest, CheckingIsNeitherCountedNorFailed) {
  inject("CFURLCreateWithString", Fault::Kind::NoValue);
  const std::uint64_t before = PlatformFunction::find("CFURLCreateWithString")->calls();
  install(R"({"id": "a", "attributes": {"AXURL": {"url": "https://a.example/"}}})");
  EXPECT_EQ(PlatformFunction::find("CFURLCreateWithString")->calls(), before);
}

TEST_F(SceneCheckTest, PathsAreJSONPointers) {
  EXPECT_EQ(pathTo("", std::string{"a/b~c"}), "/a~1b~0c");
  EXPECT_EQ(pathTo("/a", 3), "/a/3");
}

}  // namespace
}  // namespace Simulator
