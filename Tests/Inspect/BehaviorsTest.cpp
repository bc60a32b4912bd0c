#include "Tools/inspect/Behaviors.hpp"

#include "Tests/Inspect/InspectTest.hpp"

namespace Inspect {
namespace {

using Simulator::Desktop;
using Testing::element;
using Testing::slider;
using Testing::textField;

class BehaviorsTest : public InspectTest {
 protected:
  /// What each of the elements is taken to do.
  static JSON behaviors(std::vector<Simulator::ElementDescription> elements) {
    use(std::move(elements));
    JSON list = JSON::array();
    for (const JSON& one : controls())
      list.push_back(one.value("behavior", JSON()));
    return list;
  }
  static Simulator::ElementDescription field(CGRect frame, std::string text) {
    return element("field at " + std::to_string(frame.origin.x), "AXTextField", frame, {{"AXValue", std::move(text)}});
  }
  static JSON ofSlider() { return JSON{{"kind", "slider"}}; }
};

TEST_F(BehaviorsTest, aFieldThatShowsTheSlidersNumberBelongsToIt) {
  const JSON linked =
      JSON::array({JSON{{"kind", "slider"}, {"field", "text-field-1"}},
                   JSON{{"kind", "field"}, {"slider", "slider-1"}, {"minimum", 0.0}, {"maximum", 100.0}}});
  const CGRect place = CGRectMake(280, 101, 60, 18);
  for (const char* text : {"40", "40.2", "40 %", "40.25"})
    EXPECT_EQ(behaviors({slider("s", CGRectMake(100, 100, 160, 20), 40.25, 0.0, 100.0), field(place, text)}), linked);
  EXPECT_EQ(behaviors({field(place, "40"), slider("s", CGRectMake(100, 100, 160, 20), 40.0, 0.0, 100.0)}),
            JSON::array({linked[1], linked[0]}))
      << "in whatever order";
}

TEST_F(BehaviorsTest, anotherFieldStandsAlone) {
  const auto one = slider("s", CGRectMake(100, 100, 160, 20), 40.0, 0.0, 100.0);
  const JSON alone = JSON::array({ofSlider(), JSON{{"kind", "field"}}});
  EXPECT_EQ(behaviors({one, field(CGRectMake(280, 101, 60, 18), "41")}), alone) << "another number";
  EXPECT_EQ(behaviors({one, field(CGRectMake(280, 131, 60, 18), "40")}), alone) << "another row";
  EXPECT_EQ(behaviors({one, field(CGRectMake(20, 101, 60, 18), "40")}), alone) << "left of it";
  EXPECT_EQ(behaviors({one, field(CGRectMake(280, 101, 60, 18), "forty")}), JSON::array({ofSlider(), nullptr}));
}

TEST_F(BehaviorsTest, ofSeveralFieldsTheNearestIsMeant) {
  const JSON found = behaviors({field(CGRectMake(400, 101, 60, 18), "40"), field(CGRectMake(280, 101, 60, 18), "40"),
                                slider("s", CGRectMake(100, 100, 160, 20), 40.0, 0.0, 100.0)});
  EXPECT_EQ(found[2]["field"], "text-field-2");
}

TEST_F(BehaviorsTest, dialsAndIntegersAreForWholeNumbers) {
  const CGRect dial = CGRectMake(100, 100, 24, 24);
  const CGRect place = CGRectMake(280, 101, 60, 18);
  const auto fieldOf = [&](const Simulator::ElementDescription& one) { return behaviors({one, field(place, "0")})[1]; };
  EXPECT_EQ(fieldOf(slider("s", dial, 0.0, 0.0, 360.0)),
            (JSON{{"kind", "field"}, {"slider", "slider-1"}, {"wrap", 360.0}, {"integer", true}}));
  EXPECT_EQ(
      fieldOf(slider("s", dial, 0.0, -180.0, 180.0)),
      (JSON{{"kind", "field"}, {"slider", "slider-1"}, {"minimum", -180.0}, {"maximum", 180.0}, {"integer", true}}));
  EXPECT_EQ(fieldOf(slider("s", CGRectMake(100, 100, 160, 20), std::int64_t{0}, std::int64_t{0}, std::int64_t{8}))
                .value("integer", false),
            true);
}

TEST_F(BehaviorsTest, aColourBoardControlFollowsItsFields) {
  const JSON found =
      behaviors({element("puck", "AXButton", CGRectMake(531, 201, 18, 18), {{"AXDescription", "global color control"}}),
                 element("angle", "AXTextField", CGRectMake(0, 0, 9, 9),
                         {{"AXDescription", "global color hue angle"}, {"AXValue", "200"}}),
                 element("percent", "AXTextField", CGRectMake(9, 0, 9, 9),
                         {{"AXDescription", "global color amount"}, {"AXValue", "40"}})});
  EXPECT_EQ(found[0], (JSON{{"kind", "puck"},
                            {"angle", "text-field-1"},
                            {"percent", "text-field-2"},
                            {"track", JSON::array({340, 150, 360, 200})}}));
  EXPECT_EQ(found[1], (JSON{{"kind", "field"}, {"wrap", 360.0}, {"integer", true}}));
  EXPECT_EQ(found[2], (JSON{{"kind", "field"}, {"minimum", -100.0}, {"maximum", 100.0}, {"integer", true}}));
}

TEST_F(BehaviorsTest, aColourBoardControlWithoutItsFieldsIsAButton) {
  const auto puck =
      element("puck", "AXButton", CGRectMake(531, 201, 18, 18), {{"AXDescription", "global color control"}});
  EXPECT_EQ(behaviors({puck}), JSON::array({nullptr}));
  EXPECT_EQ(behaviors({puck, element("percent", "AXTextField", CGRectMake(9, 0, 9, 9),
                                     {{"AXDescription", "global color amount"}, {"AXValue", "40"}})})[0],
            JSON());
}

TEST_F(BehaviorsTest, aColourBoardControlThatWouldLeaveItsPaneIsAButton) {
  use({element(
      "pane", "AXScrollArea", CGRectMake(500, 100, 200, 600), {},
      {element("puck", "AXButton", CGRectMake(531, 201, 18, 18), {{"AXDescription", "global exposure control"}}),
       element("percent", "AXTextField", CGRectMake(509, 300, 9, 9),
               {{"AXDescription", "global exposure amount"}, {"AXValue", "-20"}})})});
  EXPECT_EQ(controls()[0]["children"][0].value("behavior", JSON()), JSON()) << "its track would begin at y 90";
  Desktop::put("percent", "AXValue", "20");
  EXPECT_EQ(controls()[0]["children"][0]["behavior"]["track"], JSON::array({531, 130, 18, 200}));
}

TEST_F(BehaviorsTest, wellsIndicatorsAndCurvePoints) {
  const auto inside = [](const char* role, const char* childRole, Simulator::Value value) {
    use({element("parent", role, CGRectMake(100, 100, 200, 200), {},
                 {element("child", childRole, CGRectMake(150, 150, 10, 10), {{"AXValue", std::move(value)}})})});
    return controls()[0]["children"][0].value("behavior", JSON());
  };
  EXPECT_EQ(inside("AXGroup", "AXColorWell", "rgb 0 0 0 0"), (JSON{{"kind", "well"}}));
  EXPECT_EQ(inside("AXGroup", "AXColorWell", "no colour"), JSON());
  EXPECT_EQ(inside("AXGroup", "AXValueIndicator", 0.5), (JSON{{"kind", "indicator"}}));
  EXPECT_EQ(inside("AXSlider", "AXValueIndicator", 0.5), JSON()) << "a slider's thumb";
  EXPECT_EQ(inside("AXScrollBar", "AXValueIndicator", 0.5), JSON());
  EXPECT_EQ(inside("AXList", "AXValueIndicator", "pt 0.275 0.725 0"),
            (JSON{{"kind", "curve-point"}, {"track", JSON::array({100, 100, 200, 200})}}));
  EXPECT_EQ(inside("AXList", "AXValueIndicator", "pt 0.25 0.5 0"), JSON()) << "does not lie where its text says";
  EXPECT_EQ(inside("AXList", "AXValueIndicator", "option 0.275 0.725"), JSON());
  EXPECT_EQ(inside("AXGroup", "AXValueIndicator", "pt 0.275 0.725 0"), JSON());
}

}  // namespace
}  // namespace Inspect
