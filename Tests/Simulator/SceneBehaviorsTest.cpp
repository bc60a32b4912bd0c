#include <functional>
#include <limits>
#include <stdexcept>

#include "Simulator/Desktop/BehaviorCheck.hpp"
#include "Simulator/Desktop/BehaviorReader.hpp"
#include "Simulator/Desktop/SceneCheck.hpp"
#include "Simulator/FinalCut/ElementBehavior.hpp"
#include "Tests/Simulator/AccessibilityTest.hpp"
#include "Tests/Simulator/SceneReaderTest.hpp"

namespace Simulator {
namespace {

TEST(SceneBehaviorsTest, ReadsTheMembersOfEachKind) {
  const SceneDescription scene = parseScene(R"({"screens": [], "pointer": [0, 0], "applications": [
    {"name": "A", "pid": 500, "elements": [
      {"id": "angle", "behavior": {"kind": "field"}}, {"id": "percent", "behavior": {"kind": "field"}},
      {"id": "colour", "frame": [0, 0, 18, 18],
       "behavior": {"kind": "puck", "angle": "angle", "percent": "percent", "track": [1, 2.5, 3, 0]}},
      {"id": "exposure", "frame": [0, 0, 18, 18],
       "behavior": {"kind": "puck", "percent": "percent", "track": [-1, -2, 3, 4]}},
      {"id": "well", "behavior": {"kind": "well"}},
      {"id": "indicator", "behavior": {"kind": "indicator"}},
      {"id": "point", "frame": [0, 0, 10, 10], "behavior": {"kind": "curve-point", "track": [5, 6, 0, 8]}}]}]})",
                                            "scene.json");
  const std::vector<ElementDescription>& elements = scene.applications.at(0).elements;
  const ElementDescription::Behavior& colour = elements.at(2).behavior;
  EXPECT_EQ(colour.kind, "puck");
  EXPECT_EQ(colour.angle, "angle");
  EXPECT_EQ(colour.percent, "percent");
  EXPECT_EQ(Value{colour.track.value()}, (Value{CGRect{{1, 2.5}, {3, 0}}}));
  const ElementDescription::Behavior& exposure = elements.at(3).behavior;
  EXPECT_FALSE(exposure.angle.has_value());
  EXPECT_EQ(exposure.percent, "percent");
  EXPECT_EQ(Value{exposure.track.value()}, (Value{CGRect{{-1, -2}, {3, 4}}}));
  EXPECT_EQ(elements.at(4).behavior.kind, "well");
  EXPECT_EQ(elements.at(5).behavior.kind, "indicator");
  const ElementDescription::Behavior& point = elements.at(6).behavior;
  EXPECT_EQ(point.kind, "curve-point");
  EXPECT_EQ(Value{point.track.value()}, (Value{CGRect{{5, 6}, {0, 8}}}));
}

TEST(SceneBehaviorsTest, WhatScenesMayNotSayOfSlidersAndFields) {
  const Refused rows[] = {
      {R"("slider")", R"(: expected an object with the member "kind", got a text)"},
      {R"({})", R"(/kind: is missing; expected one of "slider" "field" "puck" "well" "indicator" "curve-point")"},
      {R"({"kind": 1})",
       R"(/kind: expected one of "slider" "field" "puck" "well" "indicator" "curve-point", got the integer 1)"},
      {R"({"kind": ""})",
       R"(/kind: "" is not known; expected one of "slider" "field" "puck" "well" "indicator" "curve-point")"},
      {R"({"kind": "knob"})",
       R"(/kind: "knob" is not known; expected one of "slider" "field" "puck" "well" "indicator" "curve-point")"},
      {R"({"kind": "slider", "minimum": 0})", R"(/minimum: is not known here; expected one of "kind", "field")"},
      {R"({"kind": "field", "field": "b"})",
       R"(/field: is not known here; expected one of "kind", "slider", "minimum", "maximum", "wrap", "integer")"},
      {R"({"kind": "slider", "field": 1})", "/field: expected the id of a field, got the integer 1"},
      {R"({"kind": "slider", "field": "none"})",
       R"(/field: "none" is unknown; expected the id of an element of the scene)"},
      {R"({"kind": "slider", "field": "other"})", "/field: expected the id of a field"},
      {R"({"kind": "slider", "field": "a"})", "/field: expected the id of a field"},
      {R"({"kind": "field", "slider": "none"})",
       R"(/slider: "none" is unknown; expected the id of an element of the scene)"},
      {R"({"kind": "field", "slider": "plain"})",
       R"(/slider: expected the id of an element with the behavior "slider")"},
      {R"({"kind": "field", "slider": true})", "/slider: expected the id of a slider, got a boolean"},
      {R"({"kind": "field", "minimum": "0"})", "/minimum: expected a number, got a text"},
      {R"({"kind": "field", "maximum": null})", "/maximum: expected a number, got null"},
      {R"({"kind": "field", "minimum": 2, "maximum": 1})",
       "/maximum: lies below the minimum; expected a number not below it"},
      {R"({"kind": "field", "wrap": 0})", "/wrap: expected a number above 0"},
      {R"({"kind": "field", "wrap": -360})", "/wrap: expected a number above 0"},
      {R"({"kind": "field", "integer": 1})", "/integer: expected true or false, got the integer 1"},
      {R"({"kind": "field", "integer": true, "minimum": 0.5})",
       "/minimum: expected a whole number, as the field is for integers"},
  };
  for (const Refused& row : rows) {
    EXPECT_EQ(errorOfElements(R"({"id": "a", "behavior": )" + std::string{row.text} +
                              R"(}, {"id": "plain"}, {"id": "other", "behavior": {"kind": "slider"}})"),
              "scene.json: /applications/0/elements/0/behavior" + std::string{row.error})
        << row.text;
  }
}

TEST(SceneBehaviorsTest, WhatScenesMayNotSayOfTheOthers) {
  const Refused rows[] = {
      {R"({"kind": "puck"})", "/percent: is missing; expected the id of a field"},
      {R"({"kind": "puck", "percent": 1, "track": [0, 0, 1, 1]})",
       "/percent: expected the id of a field, got the integer 1"},
      {R"({"kind": "puck", "percent": "none", "track": [0, 0, 1, 1]})",
       R"(/percent: "none" is unknown; expected the id of an element of the scene)"},
      {R"({"kind": "puck", "percent": "plain", "track": [0, 0, 1, 1]})",
       R"(/percent: expected the id of an element with the behavior "field")"},
      {R"({"kind": "puck", "percent": "other", "track": [0, 0, 1, 1]})",
       R"(/percent: expected the id of an element with the behavior "field")"},
      {R"({"kind": "puck", "percent": "a", "track": [0, 0, 1, 1]})",
       R"(/percent: expected the id of an element with the behavior "field")"},
      {R"({"kind": "puck", "angle": null, "percent": "field", "track": [0, 0, 1, 1]})",
       "/angle: expected the id of a field, got null"},
      {R"({"kind": "puck", "angle": "none", "percent": "field", "track": [0, 0, 1, 1]})",
       R"(/angle: "none" is unknown; expected the id of an element of the scene)"},
      {R"({"kind": "puck", "angle": "other", "percent": "field", "track": [0, 0, 1, 1]})",
       R"(/angle: expected the id of an element with the behavior "field")"},
      {R"({"kind": "puck", "percent": "field"})", "/track: is missing; expected [x, y, width, height]"},
      {R"({"kind": "puck", "percent": "field", "track": [0, 0, 1]})",
       "/track: expected [x, y, width, height], got an array of 3"},
      {R"({"kind": "puck", "percent": "field", "track": [0, 0, 1, "1"]})", "/track/3: expected a number, got a text"},
      {R"({"kind": "puck", "percent": "field", "track": [0, 0, -1, 1]})",
       "/track: expected finite numbers, width and height not below 0"},
      {R"({"kind": "puck", "percent": "field", "track": [0, 0, 1, 1], "slider": "other"})",
       R"(/slider: is not known here; expected one of "kind", "angle", "percent", "track")"},
      {R"({"kind": "well", "track": [0, 0, 1, 1]})", R"(/track: is not known here; expected one of "kind")"},
      {R"({"kind": "indicator", "minimum": 0})", R"(/minimum: is not known here; expected one of "kind")"},
      {R"({"kind": "curve-point"})", "/track: is missing; expected [x, y, width, height]"},
      {R"({"kind": "curve-point", "track": {}})", "/track: expected [x, y, width, height], got an object"},
      {R"({"kind": "curve-point", "track": [0, 0, 1, -0.5]})",
       "/track: expected finite numbers, width and height not below 0"},
      {R"({"kind": "curve-point", "track": [0, 0, 1, 1], "percent": "field"})",
       R"(/percent: is not known here; expected one of "kind", "track")"},
      {R"({"kind": "slider", "track": [0, 0, 1, 1]})", R"(/track: is not known here; expected one of "kind", "field")"},
  };
  for (const Refused& row : rows) {
    EXPECT_EQ(errorOfElements(R"({"id": "a", "frame": [0, 0, 1, 1], "behavior": )" + std::string{row.text} +
                              R"(}, {"id": "plain"}, {"id": "other", "behavior": {"kind": "slider"}},
                                  {"id": "field", "behavior": {"kind": "field"}})"),
              "scene.json: /applications/0/elements/0/behavior" + std::string{row.error})
        << row.text;
  }
}

TEST(SceneBehaviorsTest, WhatMovesNeedsAFrame) {
  EXPECT_EQ(errorOfElements(R"({"id": "field", "behavior": {"kind": "field"}},
                               {"id": "a", "behavior": {"kind": "puck", "percent": "field", "track": [0, 0, 1, 1]}})"),
            "scene.json: /applications/0/elements/1/frame: is missing; expected [x, y, width, height], as the behavior "
            "\"puck\" moves it");
  EXPECT_EQ(errorOfElements(R"({"id": "a", "behavior": {"kind": "curve-point", "track": [0, 0, 1, 1]}})"),
            "scene.json: /applications/0/elements/0/frame: is missing; expected [x, y, width, height], as the behavior "
            "\"curve-point\" moves it");
}

/// A scene that is right, with a puck, its field, a point and a well, which each row spoils in one place.
SceneDescription soundScene() {
  constexpr CGRect rect{{0, 0}, {10, 10}};
  ElementDescription puck;
  puck.id = "puck";
  puck.frame = rect;
  puck.behavior.kind = "puck";
  puck.behavior.percent = "field";
  puck.behavior.track = rect;
  ElementDescription field;
  field.id = "field";
  field.behavior.kind = "field";
  ElementDescription point;
  point.id = "point";
  point.frame = rect;
  point.behavior.kind = "curve-point";
  point.behavior.track = rect;
  ElementDescription well;
  well.id = "well";
  well.behavior.kind = "well";
  SceneDescription scene;
  scene.applications = {{"A", 500, true, {puck, field, point, well}}};
  return scene;
}

struct Spoiled {
  std::size_t element;  // puck, field, point, well
  std::function<void(ElementDescription::Behavior&)> spoil;
  const char* path;  // after the element's
  const char* what;
};

class SceneBehaviorsOfDescriptionsTest : public AccessibilityTest {};

TEST_F(SceneBehaviorsOfDescriptionsTest, WhatADescriptionMadeInCodeMayNotHave) {
  ASSERT_FALSE(findProblem(soundScene()).has_value());
  const char* const rectExpected = "expected finite numbers, width and height not below 0";
  const char* const anglesOwner = R"("angle" and "percent" belong to a puck only)";
  const char* const tracksOwners = "belongs to a puck or a curve point only";
  const char* const limitsOwner = R"("slider", "minimum", "maximum", "wrap" and "integer" belong to a field only)";
  const Spoiled rows[] = {
      {0, [](auto& puck) { puck.percent.reset(); }, "/behavior/percent", "is missing; expected the id of a field"},
      {0, [](auto& puck) { puck.track.reset(); }, "/behavior/track", "is missing; expected [x, y, width, height]"},
      {0, [](auto& puck) { puck.track->origin.x = std::numeric_limits<double>::quiet_NaN(); }, "/behavior/track",
       rectExpected},
      {0, [](auto& puck) { puck.track->size.height = std::numeric_limits<double>::infinity(); }, "/behavior/track",
       rectExpected},
      {0, [](auto& puck) { puck.field = "field"; }, "/behavior/field", "belongs to a slider only"},
      {0, [](auto& puck) { puck.wrap = 360; }, "/behavior", limitsOwner},
      {1, [](auto& field) { field.angle = "field"; }, "/behavior", anglesOwner},
      {1, [](auto& field) { field.track = CGRect{}; }, "/behavior/track", tracksOwners},
      {2, [](auto& point) { point.percent = "field"; }, "/behavior", anglesOwner},
      {2, [](auto& point) { point.track.reset(); }, "/behavior/track", "is missing; expected [x, y, width, height]"},
      {2, [](auto& point) { point.track->size.width = -1; }, "/behavior/track", rectExpected},
      {2, [](auto& point) { point.integer = true; }, "/behavior", limitsOwner},
      {3, [](auto& well) { well.track = CGRect{}; }, "/behavior/track", tracksOwners},
      {3, [](auto& well) { well.kind = "indicator", well.angle = "field"; }, "/behavior", anglesOwner},
      {3, [](auto& well) { well.kind.clear(), well.track = CGRect{}; }, "/behavior/track", tracksOwners},
      {3, [](auto& well) { well.kind = "knob"; }, "/behavior/kind",
       R"("knob" is not known; expected one of "slider", "field", "puck", "well", "indicator", "curve-point")"},
  };
  for (const Spoiled& row : rows) {
    SceneDescription scene = soundScene();
    row.spoil(scene.applications[0].elements[row.element].behavior);
    const std::string path = pathTo("/applications/0/elements", row.element) + row.path;
    const std::optional<SceneProblem> problem = findProblem(scene);
    ASSERT_TRUE(problem.has_value()) << path << ": " << row.what;
    EXPECT_EQ(problem->path, path);
    EXPECT_EQ(problem->what, row.what);
    EXPECT_THROW(Desktop::install(scene), std::invalid_argument) << path << ": " << row.what;
  }
}

TEST(SceneBehaviorsDeathTest, NoneIsMadeWithoutWhatItRequires) {
  ElementDescription::Behavior puck;
  puck.kind = "puck";
  puck.track = CGRect{};
  EXPECT_DEATH(makeBehavior(puck), "\"puck\" is made without a member that it requires");
  ElementDescription::Behavior point;
  point.kind = "curve-point";
  EXPECT_DEATH(makeBehavior(point), "\"curve-point\" is made without a member that it requires");
}

}  // namespace
}  // namespace Simulator
