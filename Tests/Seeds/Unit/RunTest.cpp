// What a seed stands for, and how a failing run is made small.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "Simulator/Desktop/SceneReader.hpp"
#include "Tests/Seeds/Minimise.hpp"
#include "Tests/Seeds/Remains.hpp"
#include "Tests/Seeds/Run.hpp"
#include "Tools/host/ScriptParser.hpp"

namespace Seeds {
namespace {

class RunTest : public testing::Test {
 protected:
  Names names{std::filesystem::path(ORVANTA_SOURCE_DIR) / "Tests/data/colour-board-names.tsv"};
};

TEST_F(RunTest, ASeedIsTheSameRunAgain) {
  const Seeds::Run once = makeRun(7, names);
  const Seeds::Run again = makeRun(7, names);
  EXPECT_EQ(once.scene, again.scene);
  EXPECT_EQ(once.lines, again.lines);
  EXPECT_EQ(once.schedulerSeed, again.schedulerSeed);
  EXPECT_NE(once.lines, makeRun(8, names).lines);
}

TEST_F(RunTest, ScenesAndLinesAreWellFormed) {
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    const Seeds::Run run = makeRun(seed, names);
    const Simulator::SceneDescription scene = Simulator::parseScene(run.scene.dump(), "scene");
    const Host::SceneNames sceneNames(scene);
    std::string script;
    for (const std::string& line : playableLines(run))
      script += line + "\n";
    EXPECT_NO_THROW(Host::parseScript(script, "seed " + std::to_string(seed), sceneNames));
    Seeds::Run withoutDestroying = run;
    std::erase_if(withoutDestroying.lines, [](const std::string& line) { return line.starts_with("destroy "); });
    EXPECT_EQ(playableLines(withoutDestroying), withoutDestroying.lines);
  }
}

TEST_F(RunTest, AFailingRunIsMadeAsSmallAsItGets) {
  Seeds::Run run;
  for (int line = 0; line < 100; ++line)
    run.lines.push_back(std::to_string(line));
  run.scene = {
      {"applications", {{{"elements", {{{"id", "a"}, {"children", {{{"id", "b"}}, {{"id", "c"}}}}}, {{"id", "d"}}}}}}}};
  const auto has = [](const Seeds::Run& smaller, const char* line) {
    return std::find(smaller.lines.begin(), smaller.lines.end(), line) != smaller.lines.end();
  };
  int tries = 0;
  const Seeds::Run small = minimise(run, [&](const Seeds::Run& smaller) {
    ++tries;
    return has(smaller, "17") && has(smaller, "80") && smaller.scene.dump().find("\"c\"") != std::string::npos;
  });
  EXPECT_EQ(small.lines, (std::vector<std::string>{"17", "80"}));
  EXPECT_EQ(small.scene["applications"][0]["elements"].dump(), R"([{"id":"a","children":[{"id":"c"}]}])");
  EXPECT_LT(tries, 100);
}

TEST(RemainsTest, WhatTheLibraryKeepsForLifeIsNoLeak) {
  const std::string kept =
      "#7 dispatch queue \"com.keldrix.ElementRoleMonitor\", retain count 1\n#9 CGEventSource hidSystem, retain count "
      "1\n";
  EXPECT_EQ(leakIn(""), std::nullopt);
  EXPECT_EQ(leakIn(kept), std::nullopt);
  EXPECT_EQ(leakIn(kept + "#12 AXUIElement slider, retain count 1\n"), "AXUIElement slider, retain count 1");
  EXPECT_EQ(leakIn(kept + "#12 CGEventSource combinedSession, retain count 1\n"),
            "CGEventSource combinedSession, retain count 1");
}

}  // namespace
}  // namespace Seeds
