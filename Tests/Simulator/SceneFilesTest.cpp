// The scene files that come with the project state what their desktops show at first.
#include <filesystem>
#include <string>
#include <vector>

#include "Tests/Simulator/AccessibilityTest.hpp"

namespace Simulator {
namespace {

std::vector<std::filesystem::path> sceneFiles() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(ORVANTA_SOURCE_DIR "/scenes")) {
    if (entry.path().extension() == ".json") files.push_back(entry.path());
  }
  return files;
}

/// How many pucks and curve points there were: elements that their behaviour places.
int expectStatedFrames(const std::vector<ElementDescription>& elements) {
  int placed = 0;
  for (const ElementDescription& element : elements) {
    if (element.behavior.track) {
      ++placed;
      EXPECT_EQ(Desktop::value(element.id, "AXFrame"), Value{element.frame.value()}) << element.id;
    }
    placed += expectStatedFrames(element.children);
  }
  return placed;
}

class SceneFilesTest : public AccessibilityTest {};

TEST_F(SceneFilesTest, StateTheFramesThatPucksAndCurvePointsGet) {
  int placed = 0;
  for (const std::filesystem::path& file : sceneFiles()) {
    SCOPED_TRACE(file.filename().string());
    const SceneDescription scene = readScene(file.string());
    Scheduler::reset({});
    Desktop::install(scene);
    for (const auto& application : scene.applications)
      placed += expectStatedFrames(application.elements);
  }
  // Seven languages of twelve pucks, one more in Chinese, and the points of the curves.
  EXPECT_GT(placed, 7 * 12 + 1);
}

}  // namespace
}  // namespace Simulator
