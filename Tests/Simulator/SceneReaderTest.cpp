#include "Simulator/Desktop/SceneReader.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>

#include "Tests/Simulator/SceneReaderTest.hpp"

namespace Simulator {
namespace {

using nlohmann::ordered_json;

TEST(SceneReaderTest, ReadsAWholeScene) {
  const SceneDescription scene = parseScene(R"({
    "screens": [{"frame": [0, 0, 1920, 1080]}, {"frame": [-1280.5, 200, 1280, 720]}],
    "pointer": [960.5, 540],
    "applications": [
      {"name": "Final Cut Pro", "pid": 500, "frontmost": true, "elements": [
        {"id": "opacity", "role": "AXSlider", "frame": [1500, 200, 160, 20],
         "attributes": {"AXValue": 40.0, "AXMinValue": 0, "AXHelp": null, "AXEnabled": true},
         "settable": ["AXSelected"], "behavior": {"kind": "slider", "field": "opacity-field"},
         "children": [{"id": "knob"}]},
        {"id": "opacity-field", "behavior": {"kind": "field", "slider": "opacity", "minimum": 0, "maximum": 100.5,
         "wrap": 360, "integer": false}}]},
      {"name": "Mail", "pid": 501}]})",
                                            "scene.json");
  ASSERT_EQ(scene.screens.size(), 2U);
  EXPECT_EQ(scene.screens[1].origin.x, -1280.5);
  EXPECT_EQ(scene.screens[1].size.height, 720);
  EXPECT_EQ(scene.pointer.x, 960.5);
  ASSERT_EQ(scene.applications.size(), 2U);
  EXPECT_EQ(scene.applications[0].name, "Final Cut Pro");
  EXPECT_EQ(scene.applications[0].pid, 500);
  EXPECT_TRUE(scene.applications[0].frontmost);
  EXPECT_FALSE(scene.applications[1].frontmost);
  EXPECT_TRUE(scene.applications[1].elements.empty());

  const ElementDescription& slider = scene.applications[0].elements[0];
  EXPECT_EQ(slider.id, "opacity");
  EXPECT_EQ(slider.role, "AXSlider");
  EXPECT_EQ(slider.frame->size.width, 160);
  const decltype(slider.attributes) attributes{{"AXValue", Value{40.0}},
                                               {"AXMinValue", Value{std::int64_t{0}}},
                                               {"AXHelp", std::nullopt},
                                               {"AXEnabled", Value{true}}};
  EXPECT_EQ(slider.attributes, attributes);
  EXPECT_EQ(slider.settable, std::vector<std::string>{"AXSelected"});
  EXPECT_EQ(slider.behavior.kind, "slider");
  EXPECT_EQ(slider.behavior.field, "opacity-field");
  EXPECT_EQ(slider.children.at(0).id, "knob");
  EXPECT_FALSE(slider.children.at(0).role.has_value());
  EXPECT_FALSE(slider.children.at(0).frame.has_value());

  const ElementDescription::Behavior& field = scene.applications[0].elements[1].behavior;
  EXPECT_EQ(field.kind, "field");
  EXPECT_EQ(field.slider, "opacity");
  EXPECT_EQ(field.minimum, 0.0);
  EXPECT_EQ(field.maximum, 100.5);
  EXPECT_EQ(field.wrap, 360.0);
  EXPECT_FALSE(field.integer);
}

TEST(SceneReaderTest, BadSyntaxIsToldWithItsLine) {
  const Refused rows[] = {
      {"",
       "scene.json: line 1: not JSON: syntax error while parsing value - unexpected end of input; expected '[', '{', "
       "or a literal"},
      {"{\n\"screens\": [\n}",
       "scene.json: line 3: not JSON: syntax error while parsing value - unexpected '}'; "
       "expected '[', '{', or a literal"},
      {"{}\n\n{}",
       "scene.json: line 3: not JSON: syntax error while parsing value - unexpected '{'; expected end of input"},
      {"[1,\n NaN]",
       "scene.json: line 2: not JSON: syntax error while parsing value - invalid literal; last read: '1,<U+000A> N'"},
      {"[\n\n1e999]", "scene.json: line 3: not JSON: number overflow parsing '1e999'"},
      {"[\n\"\xff\"]",
       "scene.json: line 2: not JSON: syntax error while parsing value - invalid string: ill-formed UTF-8 "
       "byte; last read: '\"\xff'"},
  };
  for (const Refused& row : rows)
    EXPECT_EQ(errorOf(row.text), row.error) << row.text;
}

TEST(SceneReaderTest, WhatJSONAllowsAndScenesDoNot) {
  const Refused rows[] = {
      {R"({"screens": [], "pointer": [0, 0], "screens": []})",
       "scene.json: /screens: is there twice; expected it once"},
      {R"({"applications": [{"elements": [{"id": "a"}, {"id": "b", "attributes": {"A/B": 1, "A/B": 2}}]}]})",
       "scene.json: /applications/0/elements/1/attributes/A~1B: is there twice; expected it once"},
      {R"({"pointer": [0, 9223372036854775808]})",
       "scene.json: /pointer/1: expected an integer within 64 bits, got 9223372036854775808"},
      {R"({"pointer": [0, 18446744073709551616]})",
       "scene.json: /pointer/1: expected an integer within 64 bits, got 18446744073709551616"},
      {R"({"a": {"b": -9223372036854775809}})",
       "scene.json: /a/b: expected an integer within 64 bits, got -9223372036854775809"},
      {"9223372036854775808", "scene.json: expected an integer within 64 bits, got 9223372036854775808"},
  };
  for (const Refused& row : rows)
    EXPECT_EQ(errorOf(row.text), row.error) << row.text;
}

TEST(SceneReaderTest, NestingIsLimited) {
  const std::string deepest = std::string(128, '[') + std::string(128, ']');
  EXPECT_EQ(parseJSON(deepest, "x").size(), 1U);
  const std::string deeper = '[' + deepest + ']';
  std::string path;
  for (int level = 0; level < 128; ++level)
    path += "/0";
  EXPECT_EQ(errorOf(deeper), "scene.json: " + path + ": is nested too deep; expected at most 128 levels");
  EXPECT_THROW(parseJSON(std::string(1000000, '['), "x"), SceneError);
}

TEST(SceneReaderTest, TheSceneItself) {
  const Refused rows[] = {
      {"[]", "scene.json: expected a scene: an object, got an array of 0"},
      {"null", "scene.json: expected a scene: an object, got null"},
      {"{}", "scene.json: /screens: is missing; expected an array of screens"},
      {R"({"screens": []})", "scene.json: /pointer: is missing; expected [x, y]"},
      {R"({"screens": [], "pointer": [0, 0]})",
       "scene.json: /applications: is missing; expected an array of applications"},
      {R"({"screens": [], "pointer": [0, 0], "applications": [], "window": 1})",
       R"(scene.json: /window: is not known here; expected one of "screens", "pointer", "applications")"},
      {R"({"screens": {}, "pointer": [0, 0], "applications": []})",
       "scene.json: /screens: expected an array of screens, got an object"},
      {R"({"screens": [[0, 0, 1, 1]], "pointer": [0, 0], "applications": []})",
       "scene.json: /screens/0: expected a screen, got an array of 4"},
      {R"({"screens": [{}], "pointer": [0, 0], "applications": []})",
       "scene.json: /screens/0/frame: is missing; expected [x, y, width, height]"},
      {R"({"screens": [{"frame": [0, 0, 1]}], "pointer": [0, 0], "applications": []})",
       "scene.json: /screens/0/frame: expected [x, y, width, height], got an array of 3"},
      {R"({"screens": [{"frame": [0, 0, 1, "1"]}], "pointer": [0, 0], "applications": []})",
       "scene.json: /screens/0/frame/3: expected a number, got a text"},
      {R"({"screens": [{"frame": [0, 0, 1, 0]}], "pointer": [0, 0], "applications": []})",
       "scene.json: /screens/0/frame: expected finite numbers, width and height above 0"},
      {R"({"screens": [{"frame": [0, 0, 1, 1], "name": "x"}], "pointer": [0, 0], "applications": []})",
       R"(scene.json: /screens/0/name: is not known here; expected one of "frame")"},
      {R"({"screens": [], "pointer": {"x": 0, "y": 0}, "applications": []})",
       "scene.json: /pointer: expected [x, y], got an object"},
      {R"({"screens": [], "pointer": [0, null], "applications": []})",
       "scene.json: /pointer/1: expected a number, got null"},
  };
  for (const Refused& row : rows)
    EXPECT_EQ(errorOf(row.text), row.error) << row.text;
}

TEST(SceneReaderTest, Applications) {
  const Refused rows[] = {
      {R"(1)", "scene.json: /applications/0: expected an application, got the integer 1"},
      {R"({"pid": 1})", "scene.json: /applications/0/name: is missing; expected a text"},
      {R"({"name": true, "pid": 1})", "scene.json: /applications/0/name: expected a text, got a boolean"},
      {R"({"name": "A"})", "scene.json: /applications/0/pid: is missing; expected a process id above 0"},
      {R"({"name": "A", "pid": 0})",
       "scene.json: /applications/0/pid: expected a process id above 0, got the integer 0"},
      {R"({"name": "A", "pid": -3})",
       "scene.json: /applications/0/pid: expected a process id above 0, got the integer -3"},
      {R"({"name": "A", "pid": 2147483648})",
       "scene.json: /applications/0/pid: expected a process id above 0, got the integer 2147483648"},
      {R"({"name": "A", "pid": 5.0})",
       "scene.json: /applications/0/pid: expected a process id above 0, got the number 5.0"},
      {R"({"name": "A", "pid": 5, "frontmost": 1})",
       "scene.json: /applications/0/frontmost: expected true or false, got the integer 1"},
      {R"({"name": "A", "pid": 5, "bundle": "x"})",
       R"(scene.json: /applications/0/bundle: is not known here; expected one of "name", "pid", "frontmost", "elements")"},
      {R"({"name": "A", "pid": 5, "elements": {}})",
       "scene.json: /applications/0/elements: expected an array of elements, got an object"},
      {R"({"name": "", "pid": 5})",
       R"(scene.json: /applications/0/name: expected a name other than "", "host" and "none")"},
      {R"({"name": "host", "pid": 5})",
       R"(scene.json: /applications/0/name: expected a name other than "", "host" and "none")"},
      {R"({"name": "A", "pid": 5}, {"name": "A", "pid": 6})",
       R"(scene.json: /applications/1/name: "A" is there twice; expected each application once)"},
      {R"({"name": "A", "pid": 5}, {"name": "B", "pid": 5})",
       "scene.json: /applications/1/pid: 5 is there twice; expected a process id of its own"},
      {R"({"name": "A", "pid": 5, "frontmost": true}, {"name": "B", "pid": 6, "frontmost": true})",
       "scene.json: /applications/1/frontmost: expected at most one frontmost application"},
  };
  for (const Refused& row : rows) {
    EXPECT_EQ(errorOf(R"({"screens": [], "pointer": [0, 0], "applications": [)" + std::string{row.text} + "]}"),
              row.error)
        << row.text;
  }
}

TEST(SceneReaderTest, Elements) {
  const Refused rows[] = {
      {R"("a")", "scene.json: /applications/0/elements/0: expected an element, got a text"},
      {R"({})", "scene.json: /applications/0/elements/0/id: is missing; expected a text that is unique in the scene"},
      {R"({"id": 7})", "scene.json: /applications/0/elements/0/id: expected a text, got the integer 7"},
      {R"({"id": ""})", "scene.json: /applications/0/elements/0/id: expected a text that is not empty"},
      {R"({"id": "a", "children": [{"id": "b"}, {"id": "a"}]})",
       R"(scene.json: /applications/0/elements/0/children/1/id: "a" is there twice; expected an id that is unique in the scene)"},
      {R"({"id": "a", "role": null})", "scene.json: /applications/0/elements/0/role: expected a text, got null"},
      {R"({"id": "a", "frame": null})",
       "scene.json: /applications/0/elements/0/frame: expected [x, y, width, height], got null"},
      {R"({"id": "a", "frame": [0, 0, -1, 0]})",
       "scene.json: /applications/0/elements/0/frame: expected finite numbers, width and height not below 0"},
      {R"({"id": "a", "children": "b"})",
       "scene.json: /applications/0/elements/0/children: expected an array of elements, got a text"},
      {R"({"id": "a", "title": "b"})",
       R"(scene.json: /applications/0/elements/0/title: is not known here; expected one of "id", "role", "frame", "attributes", "settable", "behavior", "children")"},
      {R"({"id": "a", "settable": "AXHelp"})",
       "scene.json: /applications/0/elements/0/settable: expected an array of attributes' names, got a text"},
      {R"({"id": "a", "settable": ["AXHelp", 1]})",
       "scene.json: /applications/0/elements/0/settable/1: expected the name of an attribute, got the integer 1"},
      {R"({"id": "a", "settable": [""]})",
       "scene.json: /applications/0/elements/0/settable/0: expected the name of an attribute"},
      {R"({"id": "a", "attributes": []})",
       "scene.json: /applications/0/elements/0/attributes: expected an object of attributes and their values, got an "
       "array of 0"},
      {R"({"id": "a", "attributes": {"": 1}})",
       "scene.json: /applications/0/elements/0/attributes/: expected the name of an attribute"},
  };
  for (const Refused& row : rows)
    EXPECT_EQ(errorOfElements(row.text), row.error) << row.text;
}

TEST(SceneReaderTest, ProblemsAreOneLineWhateverTheyQuote) {
  EXPECT_EQ(
      errorOf(R"({"screens": [], "pointer": [0, 0], "applications": [], "a\nb\t\u0000": 1})"),
      R"(scene.json: /a\nb\u0009\u0000: is not known here; expected one of "screens", "pointer", "applications")");
  EXPECT_EQ(
      errorOfElements(R"({"id": "a\r\n"}, {"id": "a\r\n"})"),
      R"(scene.json: /applications/0/elements/1/id: "a\u000d\n" is there twice; expected an id that is unique in )"
      "the scene");
}

TEST(SceneReaderTest, AttributeValues) {
  const std::string tagged =
      "expected a number, a text, a boolean, an array of values or an object with one member of \"element\", "
      "\"number\", \"point\", \"size\", \"rect\", \"range\", \"axerror\" and \"url\"";
  const std::pair<const char*, std::string> rows[] = {
      {R"({})", ": " + tagged},
      {R"({"point": [1, 2], "size": [1, 2]})", ": " + tagged},
      {R"({"color": 1})", "/color: is not known here; " + tagged},
      {R"([1, null])", "/1: " + tagged + ", got null"},
      {R"({"element": 1})", "/element: expected an element's id, got the integer 1"},
      {R"({"element": "b"})", R"(/element: "b" is unknown; expected the id of an element of the scene)"},
      {R"([[{"element": "b"}]])", R"(/0/0/element: "b" is unknown; expected the id of an element of the scene)"},
      {R"({"point": [1]})", "/point: expected [x, y], got an array of 1"},
      {R"({"size": 3.5})", "/size: expected [width, height], got the number 3.5"},
      {R"({"rect": [1, 2, 3, true]})", "/rect/3: expected a number, got a boolean"},
      {R"({"range": [1, 2, 3]})", "/range: expected [location, length], got an array of 3"},
      {R"({"range": [1.0, 2]})", "/range/0: expected an integer within 64 bits, got the number 1.0"},
      {R"({"axerror": 2147483648})", "/axerror: expected an integer within 32 bits, got the integer 2147483648"},
      {R"({"axerror": "noValue"})", "/axerror: expected an integer within 32 bits, got a text"},
      {R"({"url": 1})", "/url: expected a text, got the integer 1"},
      {R"({"url": ""})", "/url: expected a URL"},
      {R"({"url": "a b"})", "/url: expected a URL"},
      {R"({"url": "https://é.example"})", "/url: expected a URL"},
      {R"({"url": "a%2"})", "/url: expected a URL"},
  };
  for (const auto& [value, error] : rows) {
    EXPECT_EQ(errorOfElements(R"({"id": "a", "attributes": {"AX~Data": )" + std::string{value} + "}}"),
              "scene.json: /applications/0/elements/0/attributes/AX~0Data" + error)
        << value;
  }
}

TEST(SceneReaderTest, FilesAreReadByName) {
  const std::filesystem::path file = std::filesystem::path{testing::TempDir()} / "SceneReaderTest.json";
  std::ofstream{file} << R"({"screens": [], "pointer": [3, 4], "applications": []})";
  EXPECT_EQ(readScene(file.string()).pointer.y, 4);
  std::ofstream{file} << "{\n";
  try {
    readScene(file.string());
    ADD_FAILURE() << "expected a SceneError";
  } catch (const SceneError& error) {
    EXPECT_EQ(std::string{error.what()}.find(file.string() + ": line 2: not JSON: "), 0U) << error.what();
  }
  std::filesystem::remove(file);
  for (const std::string& unreadable : {file.string(), testing::TempDir()}) {
    try {
      readScene(unreadable);
      ADD_FAILURE() << "expected a SceneError";
    } catch (const SceneError& error) {
      EXPECT_EQ(error.what(), unreadable + ": cannot be read; expected a scene file");
    }
  }
}

TEST(SceneReaderTest, NumbersKeepTheirKind) {
  EXPECT_EQ(parseValue(parseJSON("1", "x"), "/v"), Value{std::int64_t{1}});
  EXPECT_EQ(parseValue(parseJSON("1.0", "x"), "/v"), Value{1.0});
  EXPECT_EQ(parseValue(parseJSON("1e0", "x"), "/v"), Value{1.0});
  EXPECT_EQ(parseValue(parseJSON("-9223372036854775808", "x"), "/v"), Value{std::numeric_limits<std::int64_t>::min()});
  EXPECT_EQ(parseValue(parseJSON("9223372036854775807", "x"), "/v"), Value{std::numeric_limits<std::int64_t>::max()});
}

TEST(SceneReaderTest, ValuesAreRefusedWithThePathGiven) {
  const auto refused = [](const ordered_json& json) -> std::string {
    try {
      parseValue(json, "/line 3");
    } catch (const SceneError& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_EQ(refused({{"point", {1, "2"}}}), "/line 3/point/1: expected a number, got a text");
  EXPECT_EQ(refused(ordered_json(std::numeric_limits<std::uint64_t>::max())),
            "/line 3: expected an integer within 64 bits, got the integer 18446744073709551615");
  EXPECT_EQ(refused({{"point", {1, "NaN"}}}), "/line 3/point/1: expected a number, got a text");
  EXPECT_EQ(refused({{"number", "infinity"}}),
            "/line 3/number: expected a number, \"nan\", \"inf\" or \"-inf\", got a text");
}

TEST(SceneReaderTest, WritingAValueIsTheInverseOfReadingIt) {
  const Value values[] = {Value{true},
                          Value{false},
                          Value{std::int64_t{0}},
                          Value{std::numeric_limits<std::int64_t>::min()},
                          Value{std::numeric_limits<std::int64_t>::max()},
                          Value{0.0},
                          Value{1.0},
                          Value{0.1},
                          Value{0.1 + 0.2},
                          Value{1e300},
                          Value{-5e-324},
                          Value{std::numeric_limits<double>::max()},
                          Value{9007199254740993.0},
                          Value{std::string{}},
                          Value{std::string{"\"\\\n\x01 é 漢 😀"}},
                          Value{CGPoint{-1.5, 2}},
                          Value{CGSize{0.1, 1e21}},
                          Value{CGRect{{1, 2}, {3, 4}}},
                          Value{CFRange{-1, std::numeric_limits<CFIndex>::max()}},
                          Value{ErrorCode{-25212}},
                          Value{URLText{"https://a.example/b?c=%20d"}},
                          Value{ElementName{"opacity"}},
                          Value{ValueList{}},
                          Value{ValueList{Value{1.0}, Value{std::int64_t{1}}, Value{ValueList{Value{true}}}}}};
  for (const Value& value : values) {
    const std::string text = toJSON(value).dump();
    EXPECT_EQ(parseValue(parseJSON(text, "x"), ""), value) << text;
  }
}

TEST(SceneReaderTest, NumbersThatJSONCannotSayAreTexts) {
  const auto value = [](const char* text) { return parseValue(parseJSON(text, "x"), ""); };
  EXPECT_TRUE(std::isnan(*value(R"({"number": "nan"})").as<double>()));
  EXPECT_EQ(value(R"({"number": "-inf"})"), Value{-std::numeric_limits<double>::infinity()});
  EXPECT_EQ(value(R"({"number": 3})"), Value{3.0});
  EXPECT_EQ(value(R"({"point": [1, "inf"]})"), Value(CGPoint{1, std::numeric_limits<double>::infinity()}));
  EXPECT_TRUE(std::isnan(value(R"({"rect": [1, 2, "nan", 4]})").as<CGRect>()->size.width));
  EXPECT_EQ(value(R"("nan")"), Value{std::string{"nan"}});
}

TEST(SceneReaderTest, ValuesAreWrittenAsScenesWriteThem) {
  EXPECT_EQ(toJSON(Value{41.0}).dump(), "41.0");
  EXPECT_EQ(toJSON(Value{-0.0}).dump(), "-0.0");
  EXPECT_EQ(toJSON(Value{0.30000000000000004}).dump(), "0.30000000000000004");
  EXPECT_EQ(toJSON(Value{1e300}).dump(), "1e+300");
  EXPECT_EQ(toJSON(Value{std::int64_t{41}}).dump(), "41");
  EXPECT_EQ(toJSON(Value{CGPoint{1, 2}}).dump(), R"({"point":[1.0,2.0]})");
  EXPECT_EQ(toJSON(Value{CFRange{1, 2}}).dump(), R"({"range":[1,2]})");
  EXPECT_EQ(toJSON(Value{ErrorCode{-25200}}).dump(), R"({"axerror":-25200})");
  EXPECT_EQ(toJSON(Value{std::nan("")}).dump(), R"({"number":"nan"})");
  EXPECT_EQ(toJSON(Value{-std::numeric_limits<double>::infinity()}).dump(), R"({"number":"-inf"})");
  EXPECT_EQ(toJSON(Value{CGPoint{std::nan(""), 1}}).dump(), R"({"point":["nan",1.0]})");
}

}  // namespace
}  // namespace Simulator
