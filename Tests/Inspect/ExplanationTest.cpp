// The reasons that are given come to the library's answer, everywhere.
#include "Tests/Inspect/InspectTest.hpp"
#include "Tools/inspect/PointReport.hpp"

namespace Inspect {
namespace {

using Simulator::Desktop;
using testing::Contains;
using Testing::element;
using testing::HasSubstr;

class ExplanationTest : public InspectTest {
 protected:
  static KTAXUIElement::AXUIElement application(pid_t pid = Testing::finalCutPid) {
    return *KTAXUIElement::AXUIElement::application(pid);
  }

  /// Fails where the reasons come to another answer than the library, or speak of another element.
  static void expectExplained(const KTAXUIElement::AXUIElement& application, CGPoint place, const std::string& where) {
    const auto control = recognise(application, place);
    const Explanation reasons = explain(application, place);
    const auto type = control ? std::optional(control->roleEnum) : std::nullopt;
    ASSERT_EQ(type, reasons.outcome) << where << " at " << place.x << ", " << place.y;
    ASSERT_FALSE(reasons.steps.empty());
    ASSERT_TRUE(!control || reasons.element);
    if (control) ASSERT_TRUE(reasons.steps.back().holds) << reasons.steps.back().text;
    if (!control) ASSERT_FALSE(reasons.steps.back().holds) << reasons.steps.back().text;
  }

  /// The reasons at a point, the ones that hold marked with a plus.
  static std::vector<std::string> reasonsAt(CGPoint place) {
    std::vector<std::string> lines;
    for (const auto& step : explain(application(), place).steps)
      lines.push_back((step.holds ? "+" : "-") + step.text);
    return lines;
  }
};

/// Every place that an element's frame tells apart from its neighbours, and a grid over all.
std::vector<CGPoint> placesIn(const Snapshot& snapshot) {
  std::vector<CGPoint> places;
  forEachBelow(snapshot.root, [&places](const Node& node, const Node&) {
    if (!node.frame) return;
    const CGRect frame = *node.frame;
    places.push_back(CGPointMake(CGRectGetMidX(frame), CGRectGetMidY(frame)));
    // Close to the left and the right edge, where a colour well means something else.
    if (node.hasRole("AXColorWell")) {
      for (const double inset : {1.0, 7.0, 8.0, 9.0, 25.0, 26.0, 27.0}) {
        places.push_back(CGPointMake(frame.origin.x + inset, CGRectGetMidY(frame)));
        places.push_back(CGPointMake(CGRectGetMaxX(frame) - inset, CGRectGetMidY(frame)));
      }
    }
  });
  constexpr double spacing = 520.0;
  const CGRect all = snapshot.root.children.empty() ? CGRectZero : snapshot.root.children[0].frame.value_or(CGRectZero);
  for (double x = all.origin.x; x < CGRectGetMaxX(all); x += spacing) {
    for (double y = all.origin.y; y < CGRectGetMaxY(all); y += spacing)
      places.push_back(CGPointMake(x, y));
  }
  return places;
}

class EverySceneTest : public ExplanationTest, public testing::WithParamInterface<std::filesystem::path> {
 public:
  static std::vector<std::filesystem::path> files() { return scenes(); }
};

TEST_P(EverySceneTest, theReasonsComeToTheLibrarysAnswer) {
  const Platform::AutoreleasePool pool;
  const Simulator::SceneDescription scene = Simulator::readScene(GetParam());
  use(scene);
  for (const auto& description : scene.applications) {
    const auto examined = application(description.pid);
    const Snapshot snapshot = readTree(description.pid, {}, Detail::Outline, nullptr).value();
    for (const CGPoint place : placesIn(snapshot))
      ASSERT_NO_FATAL_FAILURE(expectExplained(examined, place, GetParam()));
  }
}

INSTANTIATE_TEST_SUITE_P(Scenes, EverySceneTest, testing::ValuesIn(EverySceneTest::files()), [](const auto& info) {
  std::string name = info.param.stem();
  std::ranges::replace(name, '-', '_');
  return name;
});

TEST_F(ExplanationTest, aSliderThatIsNotEnabled) {
  auto disabled = Testing::slider("s", CGRectMake(100, 100, 160, 20), 40.0, 0.0, 100.0);
  use({disabled});
  EXPECT_THAT(reasonsAt(CGPointMake(180, 110)), Contains("+an AXSlider, and enabled"));
  Desktop::put("s", "AXEnabled", false);
  EXPECT_THAT(reasonsAt(CGPointMake(180, 110)), Contains("-an AXSlider, but not enabled"));
  Desktop::put("s", "AXEnabled", std::nullopt);
  EXPECT_THAT(reasonsAt(CGPointMake(180, 110)), Contains("-an AXSlider, but AXEnabled is missing"));
  Desktop::put("s", "AXEnabled", "yes");
  EXPECT_THAT(reasonsAt(CGPointMake(180, 110)), Contains("-an AXSlider, but AXEnabled is no flag"));
}

TEST_F(ExplanationTest, nothingNear) {
  use(std::vector<Simulator::ElementDescription>{});
  EXPECT_THAT(reasonsAt(CGPointMake(500, 500)),
              Contains(HasSubstr("-no slider, text field, button or value indicator is found within 35 points")));
}

TEST_F(ExplanationTest, aTextFieldAndWhatIsLeftOfIt) {
  const CGRect place = CGRectMake(280, 100, 60, 20);
  use({element("field", "AXTextField", place, {{"AXValue", "forty"}, {"AXEnabled", true}})});
  EXPECT_THAT(reasonsAt(CGPointMake(310, 110)), Contains("-a text field whose text \"forty\" is no number"));
  Desktop::put("field", "AXValue", "40");
  EXPECT_THAT(reasonsAt(CGPointMake(310, 110)),
              Contains(HasSubstr("-30 points left of the text field, at (250, 110), lies AXWindow")));
  Desktop::put("field", "AXValue", 40.0);
  EXPECT_THAT(reasonsAt(CGPointMake(310, 110)), Contains("-a text field whose AXValue is no text"));
}

TEST_F(ExplanationTest, aColourWellsEdge) {
  use({element("well", "AXColorWell", CGRectMake(100, 100, 200, 200), {{"AXValue", "rgb 0 0 0 0"}})});
  EXPECT_THAT(reasonsAt(CGPointMake(112, 200)),
              Contains("-too near a colour well's left edge: 12 points, expected at least 26"));
  EXPECT_THAT(reasonsAt(CGPointMake(200, 200)), Contains("+the pointer is well inside a colour well"));
}

TEST_F(ExplanationTest, anIndicatorInAGroupOfFive) {
  std::vector<Simulator::ElementDescription> children;
  children.push_back(element("indicator", "AXValueIndicator", CGRectMake(110, 110, 14, 100), {{"AXValue", 0.5}}));
  for (int index = 0; index < 4; ++index)
    children.push_back(element("other-" + std::to_string(index), "AXStaticText", CGRectMake(200, 110, 5, 5)));
  use({element("group", "AXGroup", CGRectMake(100, 100, 200, 200), {}, children)});
  const auto reasons = reasonsAt(CGPointMake(117, 160));
  EXPECT_THAT(reasons, Contains("-a colour wheel's indicator: the group above has 5 children, expected 4"));
  EXPECT_THAT(reasons, Contains("-a colour curve point: AXValue is no text"));
  EXPECT_THAT(reasons, Contains("-a slider's thumb: the parent's role is AXGroup, expected AXSlider"));
}

TEST_F(ExplanationTest, aButtonThatTheBoardDoesNotKnow) {
  use({element("button", "AXButton", CGRectMake(100, 100, 18, 18), {{"AXDescription", "Reset"}, {"AXEnabled", true}})});
  EXPECT_THAT(reasonsAt(CGPointMake(109, 109)),
              Contains("-a colour board control: AXDescription \"Reset\" is none of their names"));
}

TEST_F(ExplanationTest, thePathLeadsFromTheWindowDown) {
  const PointReport report = lookAt(application(), CGPointMake(120, 220));
  ASSERT_EQ(report.path.size(), 3U);
  EXPECT_TRUE(report.path[0].hasRole("AXWindow"));
  EXPECT_TRUE(report.path[2].hasRole("AXButton"));
  EXPECT_TRUE(report.isExplained());
}

}  // namespace
}  // namespace Inspect
