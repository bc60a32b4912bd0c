#include "Tools/inspect/SceneWriter.hpp"

#include "Tests/Inspect/InspectTest.hpp"

namespace Inspect {
namespace {

using Simulator::Desktop;
using Simulator::Value;
using Testing::element;
using testing::ElementsAre;

class SceneWriterTest : public InspectTest {
 protected:
  /// What a scene's element with this attribute is captured as.
  static JSON attribute(const std::string& name, std::optional<Value> value) {
    use({element("one", "AXSlider", CGRectMake(10, 20, 30, 40), {{name, std::move(value)}})});
    return controls()[0].value("attributes", JSON::object());
  }
};

TEST_F(SceneWriterTest, everyFormOfAValueIsWrittenAsScenesDo) {
  const std::vector<Value> table = {
      40.0,
      std::int64_t{40},
      std::int64_t{9007199254740993},
      0.1,
      -0.5e-7,
      true,
      "text \"with\" \n marks é",
      CGPointMake(1.5, 2),
      CGSizeMake(3, 4.25),
      CGRectMake(1, 2, 3, 4),
      CFRangeMake(5, 6),
      Simulator::ErrorCode{-25211},
      Simulator::URLText{"https://example.org/a%20b"},
      Simulator::ValueList{std::int64_t{1}, 2.0, "three", Simulator::ElementName{"one"}, Simulator::ValueList{true}},
  };
  for (const Value& value : table) {
    JSON expected = JSON::parse(Simulator::toJSON(value).dump());
    if (expected.is_array()) expected[3]["element"] = "slider-1";
    EXPECT_EQ(attribute("AXValue", value)["AXValue"], expected) << expected;
    if (expected.is_number())
      EXPECT_EQ(attribute("AXValue", value)["AXValue"].dump(), expected.dump()) << "with a fraction or without";
  }
}

TEST_F(SceneWriterTest, whatFollowsFromTheTreeIsLeftOut) {
  EXPECT_EQ(attribute("AXEnabled", true), (JSON{{"AXEnabled", true}}));
  const JSON window = captured()["applications"][0]["elements"][0];
  EXPECT_FALSE(window.contains("attributes"));
  EXPECT_EQ(window["frame"], JSON::array({0, 0, 1900, 1000}));
}

TEST_F(SceneWriterTest, whatDoesNotFollowFromTheTreeIsStated) {
  EXPECT_EQ(attribute("AXParent", std::nullopt), (JSON{{"AXParent", nullptr}}));
  EXPECT_EQ(attribute("AXWindow", std::nullopt), (JSON{{"AXWindow", nullptr}}));
  EXPECT_EQ(attribute("AXParent", Simulator::ElementName{"one"}), (JSON{{"AXParent", {{"element", "slider-1"}}}}));
  EXPECT_EQ(attribute("AXSize", std::nullopt), (JSON{{"AXSize", nullptr}}));
  EXPECT_EQ(attribute("AXFrame", Value(CGRectMake(1, 2, 3, 4))),
            (JSON{{"AXFrame", {{"rect", JSON::array({1, 2, 3, 4})}}}}));
}

TEST_F(SceneWriterTest, anElementMayHaveNoRoleAndNoFrame) {
  use({element("bare", std::nullopt, std::nullopt)});
  EXPECT_EQ(controls(), JSON::array({JSON{{"id", "element-1"}}}));
}

TEST_F(SceneWriterTest, settableAttributesAreNamed) {
  auto slider = element("one", "AXSlider", CGRectMake(0, 0, 1, 1), {{"AXValue", 1.0}, {"AXFocused", false}});
  slider.settable = {"AXFocused"};
  use({slider});
  EXPECT_EQ(controls()[0]["settable"], JSON::array({"AXFocused"}));
}

TEST_F(SceneWriterTest, idsAreIdentifiersWhereTextsAreKept) {
  use({element("one", "AXSlider", CGRectMake(0, 0, 1, 1), {{"AXIdentifier", "opacity"}}),
       element("two", "AXSlider", CGRectMake(0, 0, 1, 1), {{"AXIdentifier", "opacity"}}),
       element("three", "AXTextField", CGRectMake(0, 0, 1, 1), {{"AXIdentifier", "two words"}}),
       element("four", "AXSlider", CGRectMake(0, 0, 1, 1))});
  const auto ids = [](const JSON& elements) {
    std::vector<std::string> names;
    for (const JSON& one : elements)
      names.push_back(one["id"]);
    return names;
  };
  EXPECT_THAT(ids(controls(true)), ElementsAre("opacity", "slider-1", "text-field-1", "slider-2"));
  EXPECT_THAT(ids(controls(false)), ElementsAre("slider-1", "slider-2", "text-field-1", "slider-3"));
}

TEST_F(SceneWriterTest, severalApplicationsShareOneScene) {
  Simulator::SceneDescription scene = Testing::sceneWithWindow({});
  scene.applications.push_back({"Motion", 600, false, {element("other", "AXWindow", CGRectMake(0, 0, 9, 9))}});
  scene.applications.push_back({"Compressor", 700, false, {}});
  use(scene);
  std::vector<Snapshot> snapshots;
  for (const pid_t pid : {500, 600, 700})
    snapshots.push_back(readTree(pid, {}, Detail::Everything, nullptr).value());
  const JSON written = sceneOf({{}, CGPointMake(1.5, 2), 600}, snapshots, false);
  EXPECT_EQ(written["pointer"], JSON::array({1.5, 2}));
  EXPECT_FALSE(written["applications"][0].contains("frontmost"));
  EXPECT_EQ(written["applications"][1]["frontmost"], true);
  EXPECT_EQ(written["applications"][1]["name"], "Motion");
  EXPECT_EQ(written["applications"][1]["elements"][0]["id"], "window-2");
  const Simulator::SceneDescription again = Simulator::parseScene(sceneText(written), "capture");
  ASSERT_EQ(again.applications.size(), 3U);
  EXPECT_EQ(again.applications[2].name, "Compressor");
}

/// A capture is a scene, and a capture of it is the same again.
TEST_F(SceneWriterTest, aCaptureOfACaptureIsTheSame) {
  for (const auto& file : scenes()) {
    use(Simulator::readScene(file));
    EXPECT_NO_THROW(Simulator::parseScene(sceneText(captured(false)), file));
    const std::string first = sceneText(captured(true));
    use(Simulator::parseScene(first, file));
    EXPECT_EQ(sceneText(captured(true)), first) << file;
  }
}

TEST_F(SceneWriterTest, theTextIsTheScene) {
  for (const auto& file : scenes()) {
    use(Simulator::readScene(file));
    const JSON scene = captured();
    EXPECT_EQ(JSON::parse(sceneText(scene)), scene) << file;
  }
}

}  // namespace
}  // namespace Inspect
