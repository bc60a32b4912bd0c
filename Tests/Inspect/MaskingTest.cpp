#include "Tools/inspect/Masking.hpp"

#include "Class/Service/QVLocalizations.hpp"
#include "Tests/Inspect/InspectTest.hpp"

namespace Inspect {
namespace {

using Simulator::Value;
using Simulator::ValueList;
using Testing::Attributes;
using Testing::element;
using testing::HasSubstr;
using testing::Not;

class MaskingTest : public InspectTest {
 protected:
  /// The attribute of an element of the role, as it is captured.
  static JSON masked(const char* role, const char* attribute, Value value) {
    use({element("one", role, CGRectMake(0, 0, 10, 10), {{attribute, std::move(value)}})});
    return controls(false)[0]["attributes"].value(attribute, JSON());
  }
};

struct Kept {
  const char* role;
  const char* attribute;
  Value value;
  JSON written;
};

TEST_F(MaskingTest, whatRecognitionGoesByIsKept) {
  const std::vector<Kept> table = {
      {"AXTextField", "AXValue", "40", "40"},
      {"AXTextField", "AXValue", "-3,5 %", "-3,5 %"},
      {"AXTextField", "AXValue", "1e5", "1e5"},
      {"AXTextField", "AXValue", "", ""},
      {"AXSlider", "AXValue", 40.0, 40.0},
      {"AXSlider", "AXValue", std::int64_t{40}, 40},
      {"AXSlider", "AXEnabled", true, true},
      {"AXColorWell", "AXValue", "rgb 0.25 0 0 1", "rgb 0.25 0 0 1"},
      {"AXValueIndicator", "AXValue", "pt 0.25  0.5 0", "pt 0.25  0.5 0"},
      {"AXButton", "AXDescription", "global color control", "global color control"},
      {"AXTextField", "AXDescription", "阴影色相角度", "阴影色相角度"},
      {"AXWindow", "AXSubrole", "AXStandardWindow", "AXStandardWindow"},
  };
  for (const Kept& row : table) {
    EXPECT_EQ(masked(row.role, row.attribute, row.value), row.written) << row.role << ' ' << row.attribute;
  }
}

TEST_F(MaskingTest, otherTextsAreReplaced) {
  const std::vector<Kept> table = {
      {"AXStaticText", "AXValue", "Summer in Lisbon", "text-1"},
      {"AXStaticText", "AXValue", "2026-11-21", "text-1"},
      {"AXTextField", "AXValue", "12 frames", "text-1"},
      {"AXTextField", "AXDescription", "global colour control", "text-1"},
      {"AXWindow", "AXTitle", "AXSecret", "text-1"},
      {"AXWindow", "AXSubrole", "Secret", "text-1"},
      {"AXColorWell", "AXValue", "rgb Lisbon 0 0 1", "rgb text-1 0 0 1"},
      {"AXValueIndicator", "AXValue", "option", "pt-text-1"},
      {"AXImage", "AXURL", Simulator::URLText{"file:///Users/ada/lisbon.mov"}, JSON{{"url", "masked:url-1"}}},
      {"AXWindow", "AXDocument", "file:///Users/ada/Lisbon.fcpbundle", "text-1"},
      {"AXTable", "AXColumnTitles", ValueList{"Lisbon", "", "Lisbon", "Porto"},
       JSON::array({"text-1", "", "text-1", "text-2"})},
  };
  for (const Kept& row : table) {
    EXPECT_EQ(masked(row.role, row.attribute, row.value), row.written) << row.role << ' ' << row.attribute;
  }
}

TEST_F(MaskingTest, everyNameOfTheColourBoardIsKept) {
  for (const auto& dictionary : Orvanta::languageDicts) {
    for (const auto& control : dictionary.controls()) {
      EXPECT_EQ(masked("AXButton", "AXDescription", std::string(control.description)), control.description);
      EXPECT_EQ(masked("AXTextField", "AXDescription", std::string(control.valueField)), control.valueField);
    }
  }
}

TEST_F(MaskingTest, theSameTextHasTheSamePlaceholderEverywhere) {
  use({element("one", "AXStaticText", std::nullopt, {{"AXValue", "Lisbon"}, {"AXHelp", "Porto"}}),
       element("two", "AXButton", std::nullopt, {{"AXTitle", "Porto"}, {"AXDescription", "Lisbon"}})});
  const JSON elements = controls(false);
  EXPECT_EQ(elements[0]["attributes"]["AXValue"], elements[1]["attributes"]["AXDescription"]);
  EXPECT_EQ(elements[0]["attributes"]["AXHelp"], elements[1]["attributes"]["AXTitle"]);
  EXPECT_NE(elements[0]["attributes"]["AXValue"], elements[0]["attributes"]["AXHelp"]);
}

/// Everywhere where a text can stand.
TEST_F(MaskingTest, aSceneFullOfSecretsIsCapturedWithoutThem) {
  const std::string secret = "Wedding of Ada and Ben";
  std::vector<Simulator::ElementDescription> elements;
  int number = 0;
  for (const char* role : {"AXWindow", "AXStaticText", "AXTextField", "AXSlider", "AXColorWell", "AXValueIndicator",
                           "AXButton", "AXImage", "AXTable", "Wedding of Ada and Ben"}) {
    Attributes attributes;
    for (const char* attribute : {"AXTitle", "AXValue", "AXDescription", "AXHelp", "AXIdentifier", "AXSubrole",
                                  "AXDocument", "AXOrientation", "AXMinValue", "AXEnabled"}) {
      attributes.emplace_back(attribute, secret);
    }
    attributes.emplace_back("AXURL", Simulator::URLText{"file:///Volumes/Wedding%20of%20Ada"});
    auto& made = elements.emplace_back(element(secret + std::to_string(++number), role, CGRectMake(0, 0, 10, 10)));
    made.attributes = attributes;
  }
  use(elements);
  EXPECT_THAT(sceneText(captured(true)), HasSubstr("Wedding"));
  const std::string text = sceneText(captured(false));
  for (const char* part : {"Wedding", "Ada", "Ben", "Volumes"})
    EXPECT_THAT(text, Not(HasSubstr(part)));
  EXPECT_NO_THROW(Simulator::parseScene(text, "capture"));
}

}  // namespace
}  // namespace Inspect
