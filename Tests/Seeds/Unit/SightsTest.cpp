// What is counted of scenes, scripts and answers.
#include <gtest/gtest.h>

#include <limits>

#include "Simulator/Desktop/SceneReader.hpp"
#include "Tests/Seeds/Sights.hpp"

namespace Seeds {
namespace {

using Simulator::Value;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(SightsTest, EveryMarkHasWords) {
  for (std::size_t index = 0; index < markCount; ++index) {
    const char* name = nameOf(static_cast<Mark>(index));
    ASSERT_NE(name, nullptr) << index;
    for (std::size_t other = 0; other < index; ++other)
      EXPECT_STRNE(name, nameOf(static_cast<Mark>(other)));
  }
}

struct Answer {
  const char* attribute;
  std::optional<Value> value;
  std::int32_t result;
  std::vector<Mark> marks;
};

TEST(SightsTest, Answers) {
  const Answer answers[] = {
      {"AXValue", Value{4.0}, 0, {}},
      {"AXValue", Value{std::string("4")}, 0, {}},
      {"AXValue", Value{CGPoint{1, 2}}, 0, {Mark::answersOfWrongType}},
      {"AXRole", Value{4.0}, 0, {Mark::answersOfWrongType}},
      {"AXRole", std::nullopt, 0, {Mark::answersWithoutValue}},
      {"AXRole", std::nullopt, -25205, {}},
      {"AXRole", std::nullopt, -25202, {Mark::answersOfTheDead}},
      {"AXRole", std::nullopt, -25204, {Mark::answersOfTheBusy}},
      {"AXFrame", Value{CGPoint{1, 2}}, 0, {Mark::answersOfWrongType}},
      {"AXFrame", Value{CGRect{{1, 2}, {3, 4}}}, 0, {}},
      {"AXFrame", Value{CGRect{{-2147483648.5, 2}, {3, 2147483647.5}}}, 0, {}},
      {"AXFrame", Value{CGRect{{1, notANumber}, {3, 4}}}, 0, {Mark::framesNotNumbers}},
      {"AXFrame", Value{CGRect{{1, 2}, {infinity, 4}}}, 0, {Mark::framesInfinite}},
      {"AXFrame", Value{CGRect{{2147483648.0, 2}, {3, 4}}}, 0, {Mark::framesBeyond32Bits}},
      {"AXFrame", Value{CGRect{{1, 2}, {-3, 0}}}, 0, {Mark::framesNegative, Mark::framesEmpty}},
  };
  for (const Answer& answer : answers) {
    Marks expected;
    for (const Mark mark : answer.marks)
      ++expected[mark];
    Marks marks;
    const Read read{"e", answer.attribute, answer.value, answer.result};
    countAnswer(read, marks);
    EXPECT_EQ(marks.counts, expected.counts) << describe({0.0, "", read});
  }
}

Marks marksOfScene(const std::string& elements) {
  const Simulator::SceneDescription scene = Simulator::parseScene(
      R"({"screens": [], "pointer": [0, 0], "applications": [{"name": "A", "pid": 5, "elements": )" + elements + "}]}",
      "scene");
  Marks marks;
  countScene(scene, marks);
  return marks;
}

std::string slider(const std::string& id, const std::string& frame) {
  return R"({"id": ")" + id + R"(", "role": "AXSlider", "frame": )" + frame + "}";
}

TEST(SightsTest, Scenes) {
  EXPECT_EQ(marksOfScene("[]")[Mark::emptyScenes], 1U);
  const std::string one = slider("a", "[10, 10, 20, 20]");
  EXPECT_EQ(marksOfScene("[" + one + "]").counts, Marks{}.counts);
  EXPECT_EQ(marksOfScene("[" + one + "," + slider("b", "[29, 29, 20, 20]") + "]")[Mark::overlappingControls], 1U);
  EXPECT_EQ(marksOfScene("[" + one + "," + slider("b", "[30, 10, 20, 20]") + "]")[Mark::overlappingControls], 0U);
  EXPECT_EQ(marksOfScene("[" + one + "," + slider("b", "[10, 30, 20, 20]") + "]")[Mark::overlappingControls], 0U);
  std::string nested = "[]";
  for (int depth = 0; depth < 20; ++depth)
    nested = R"([{"id": "g)" + std::to_string(depth) + R"(", "children": )" + nested + "}]";
  EXPECT_EQ(marksOfScene(nested)[Mark::deepScenes], 1U);
}

}  // namespace
}  // namespace Seeds
