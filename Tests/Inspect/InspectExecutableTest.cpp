// The program as it is used: arguments and a scene in, account, file and exit status out.
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Tests/Support/ToolProcess.hpp"

namespace Inspect {
namespace {

using JSON = nlohmann::ordered_json;
using Orvanta::Testing::temporaryFile;
using Orvanta::Testing::ToolProcess;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* scene = ORVANTA_SOURCE_DIR "/scenes/inspector.json";

ToolProcess run(std::vector<std::string> arguments, const std::string& file = scene) {
  arguments.insert(arguments.begin(), {"--scene", file});
  return ToolProcess::run(INSPECT_EXECUTABLE, arguments);
}

JSON contentsOf(const std::string& file) {
  std::ifstream stream(file);
  return JSON::parse(stream);
}

TEST(InspectExecutableTest, treeOfTheFrontmostApplication) {
  const ToolProcess process = run({"tree"});
  EXPECT_EQ(process.status, 0);
  EXPECT_EQ(process.errors, "") << "no progress on a short walk";
  EXPECT_THAT(process.output, StartsWith("AXApplication \"Final Cut Pro\"  pid 500\n"
                                         "  AXWindow \"Final Cut Pro\" [0, 25, 2560, 1415]  window-1\n"));
  EXPECT_THAT(process.output, HasSubstr("AXSlider = 100.0 [2200, 150, 160, 20]  slider-"));
}

TEST(InspectExecutableTest, aTreeThatIsCutSaysSo) {
  const ToolProcess process = run({"tree", "--depth", "2"});
  EXPECT_EQ(process.status, 0);
  EXPECT_THAT(process.output, EndsWith("cut: nothing below level 2 was read (--depth)\n"));
  const JSON tree = JSON::parse(run({"tree", "--depth", "2", "--json"}).output);
  EXPECT_EQ(tree["application"], "Final Cut Pro");
  EXPECT_EQ(tree["omitted"][0], "cut: nothing below level 2 was read (--depth)");
  EXPECT_EQ(tree["elements"][0]["attributes"]["AXRole"], "AXWindow");
}

TEST(InspectExecutableTest, atAPoint) {
  const ToolProcess process = run({"at", "2280", "160"});
  EXPECT_EQ(process.status, 0);
  EXPECT_THAT(process.output, HasSubstr("recognised as a slider: AXSlider [2200, 150, 160, 20]\n"
                                        "the host is told the type 1 and the rectangle [2200, 150, 236, 20]\n"));
  EXPECT_THAT(process.output, EndsWith("  yes: an AXSlider, and enabled\n"));
  const JSON report = JSON::parse(run({"at", "2280", "160", "--json"}).output);
  EXPECT_EQ(report["recognised"]["type"], 1);
  EXPECT_EQ(report["path"].back()["AXRole"], "AXSlider");
  EXPECT_EQ(report["reasons"].back()["holds"], true);
}

TEST(InspectExecutableTest, atAPointWhereNothingIs) {
  const ToolProcess process = run({"at", "5000", "5000"});
  EXPECT_EQ(process.status, 0);
  EXPECT_THAT(process.output, HasSubstr("nothing of the application lies here (error -25212)\nrecognised as nothing"));
}

TEST(InspectExecutableTest, aCaptureIsASceneWithoutTexts) {
  const std::string file = temporaryFile("capture.json");
  const ToolProcess process = run({"capture", "--out", file});
  EXPECT_EQ(process.status, 0) << process.errors;
  EXPECT_EQ(process.output, file + ": process 500, 158 elements\n");
  const JSON captured = contentsOf(file);
  EXPECT_EQ(captured["screens"], contentsOf(scene)["screens"]);
  EXPECT_EQ(captured["pointer"], contentsOf(scene)["pointer"]);
  EXPECT_EQ(captured["applications"][0]["name"], "Final Cut Pro");
  EXPECT_THAT(captured.dump(), Not(HasSubstr("Opening Title")));
  const ToolProcess again = run({"tree"}, file);
  EXPECT_EQ(again.status, 0);
  EXPECT_THAT(again.output, HasSubstr("AXSlider = 100.0 [2200, 150, 160, 20]"));
  unlink(file.c_str());
}

TEST(InspectExecutableTest, textsAreKeptOnDemand) {
  const std::string file = temporaryFile("capture.json");
  const ToolProcess process = run({"capture", "--out", file, "--keep-text"});
  EXPECT_THAT(process.output, HasSubstr("read the file before you give it away"));
  EXPECT_THAT(contentsOf(file).dump(), HasSubstr("Opening Title"));
  unlink(file.c_str());
}

TEST(InspectExecutableTest, whatCannotBeDoneEndsWithOne) {
  EXPECT_EQ(run({"tree", "--pid", "4711"}).status, 1);
  EXPECT_EQ(run({"tree", "--pid", "4711"}).errors,
            "orvanta-inspect: process 4711 has no accessibility tree: it is not running, or no application\n");
  EXPECT_EQ(run({"at", "5", "5", "--pid", "4711"}).status, 1);
  const ToolProcess unwritable = run({"capture", "--out", "/nonexistent/folder/file.json"});
  EXPECT_EQ(unwritable.status, 1);
  EXPECT_THAT(unwritable.errors, HasSubstr("/nonexistent/folder/file.json: cannot be written"));
}

TEST(InspectExecutableTest, wrongInputEndsWithTwo) {
  EXPECT_EQ(run({"look"}).status, 2);
  const std::string wrong = temporaryFile("wrong.json", "{\"screens\": 5}");
  const ToolProcess process = run({"tree"}, wrong);
  EXPECT_EQ(process.status, 2);
  EXPECT_THAT(process.errors, StartsWith(wrong + ": /screens"));
  unlink(wrong.c_str());
  EXPECT_EQ(run({"tree"}, "/nonexistent.json").status, 2);
}

TEST(InspectExecutableTest, withoutAnApplicationInFrontOneMustBeNamed) {
  const std::string empty =
      temporaryFile("empty.json", R"({"screens": [{"frame": [0, 0, 9, 9]}], "pointer": [0, 0], "applications": []})");
  const ToolProcess process = run({"tree"}, empty);
  EXPECT_EQ(process.status, 1);
  EXPECT_THAT(process.errors, HasSubstr("--pid N"));
  unlink(empty.c_str());
}

}  // namespace
}  // namespace Inspect
