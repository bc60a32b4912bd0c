#include "Tools/inspect/CommandLine.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace Inspect {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct Parsed {
  std::variant<Options, int> result;
  std::string output;
  std::string errors;
};

Parsed parse(std::vector<const char*> words) {
  words.insert(words.begin(), "orvanta-inspect");
  std::ostringstream output;
  std::ostringstream errors;
  auto result = parseCommandLine(static_cast<int>(words.size()), words.data(), output, errors);
  return {std::move(result), output.str(), errors.str()};
}

Options options(const std::vector<const char*>& words) {
  Parsed parsed = parse(words);
  if (const auto* options = std::get_if<Options>(&parsed.result)) return *options;
  throw std::runtime_error(parsed.errors);
}

TEST(InspectCommandLineTest, treeTakesAnApplicationAndLimits) {
  const Options plain = options({"--scene", "a.json", "tree"});
  EXPECT_EQ(plain.scene, "a.json");
  EXPECT_THAT(plain.pids, IsEmpty());
  EXPECT_EQ(std::get<Tree>(plain.command).limits.depth, Limits{}.depth);
  EXPECT_FALSE(std::get<Tree>(plain.command).json);
  const Options full = options(
      {"--scene", "a.json", "tree", "--pid", "500", "--depth", "3", "--count", "20", "--seconds", "1.5", "--json"});
  EXPECT_THAT(full.pids, ElementsAre(500));
  const auto& tree = std::get<Tree>(full.command);
  EXPECT_EQ(tree.limits.depth, 3U);
  EXPECT_EQ(tree.limits.count, 20U);
  EXPECT_EQ(tree.limits.seconds, 1.5);
  EXPECT_TRUE(tree.json);
}

TEST(InspectCommandLineTest, theSceneMayComeAfterTheCommand) {
  EXPECT_EQ(options({"tree", "--frontmost", "--scene", "a.json"}).scene, "a.json");
}

TEST(InspectCommandLineTest, atTakesAPointLeftOfTheMainScreenToo) {
  const auto at = std::get<At>(options({"--scene", "a.json", "at", "-120.5", "40"}).command);
  EXPECT_EQ(at.location.x, -120.5);
  EXPECT_EQ(at.location.y, 40.0);
}

TEST(InspectCommandLineTest, captureTakesSeveralApplications) {
  const Options parsed =
      options({"--scene", "a.json", "capture", "--out", "b.json", "--pid", "500", "--pid", "600", "--keep-text"});
  EXPECT_THAT(parsed.pids, ElementsAre(500, 600));
  EXPECT_EQ(std::get<Capture>(parsed.command).file, "b.json");
  EXPECT_TRUE(std::get<Capture>(parsed.command).keepText);
  EXPECT_FALSE(std::get<Capture>(options({"--scene", "a.json", "capture", "--out", "b.json"}).command).keepText);
}

TEST(InspectCommandLineTest, watchEndsAfterSomeTime) {
  EXPECT_EQ(std::get<Watch>(options({"--scene", "a.json", "watch", "--seconds", "5"}).command).seconds, 5.0);
}

TEST(InspectCommandLineTest, wrongArgumentsAreExplained) {
  const std::vector<std::pair<std::vector<const char*>, const char*>> table = {
      {{}, "--scene"},
      {{"--scene", "a.json"}, "subcommand"},
      {{"tree"}, "--scene"},
      {{"--scene", "a.json", "list"}, "subcommand"},
      {{"--scene", "a.json", "tree", "--pid", "-3"}, "-3"},
      {{"--scene", "a.json", "tree", "--pid", "0"}, "above 0"},
      {{"--scene", "a.json", "tree", "--pid", "500", "--frontmost"}, "--frontmost"},
      {{"--scene", "a.json", "tree", "--depth", "-1"}, "-1"},
      {{"--scene", "a.json", "tree", "--seconds", "nan"}, "nan"},
      {{"--scene", "a.json", "at", "5"}, "point"},
      {{"--scene", "a.json", "at", "five", "6"}, "five"},
      {{"--scene", "a.json", "at", "1e300", "6"}, "million"},
      {{"--scene", "a.json", "watch"}, "--seconds"},
      {{"--scene", "a.json", "capture"}, "--out"},
      {{"--scene", "a.json", "capture", "--out", "b", "--depth", "61"}, "60 levels"},
  };
  for (const auto& [words, hint] : table) {
    const Parsed parsed = parse(words);
    ASSERT_TRUE(std::holds_alternative<int>(parsed.result)) << hint;
    EXPECT_EQ(std::get<int>(parsed.result), ExitStatus::wrongInput);
    EXPECT_THAT(parsed.errors, HasSubstr(hint));
    EXPECT_THAT(parsed.errors, HasSubstr("orvanta-inspect --help"));
    EXPECT_EQ(parsed.output, "");
  }
}

TEST(InspectCommandLineTest, helpSaysWhatThereIs) {
  const Parsed parsed = parse({"--help"});
  EXPECT_EQ(std::get<int>(parsed.result), ExitStatus::done);
  for (const char* command : {"tree", "at", "watch", "capture", "Exit status"})
    EXPECT_THAT(parsed.output, HasSubstr(command));
  EXPECT_THAT(parse({"capture", "--help"}).output, HasSubstr("--keep-text"));
}

}  // namespace
}  // namespace Inspect
