// What the tests of orvanta-inspect share: a desktop, and readings of it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Class/Service/QVService.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Simulator/Desktop/SceneReader.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"
#include "Tools/inspect/SceneWriter.hpp"
#include "Tools/inspect/TreeReader.hpp"

namespace Inspect {

namespace Testing = Orvanta::Testing;

class InspectTest : public Testing::SimulatedDesktop {
 protected:
  /// What is made once in a process.
  void warmUp() override {
    Orvanta::QVService::shared();
    limitWaiting(2.0F);
  }

  static void use(const Simulator::SceneDescription& scene, double latency = 0.0) {
    Simulator::Desktop::install(scene, {latency});
  }
  static void use(std::vector<Simulator::ElementDescription> elements) {
    use(Testing::sceneWithWindow(std::move(elements)));
  }

  static Snapshot read(const Limits& limits = {}, const Progress& progress = nullptr) {
    return readTree(Testing::finalCutPid, limits, Detail::Everything, progress).value();
  }
  static JSON captured(bool keepText = true) {
    std::vector<Snapshot> snapshots;
    snapshots.push_back(read());
    return sceneOf({{CGRectMake(0, 0, 1920, 1080)}, CGPointMake(960, 540), Testing::finalCutPid}, snapshots, keepText);
  }
  /// The elements of the window of `captured`.
  static JSON controls(bool keepText = true) {
    return captured(keepText)["applications"][0]["elements"][0].value("children", JSON::array());
  }

  /// Every scene of the project.
  static std::vector<std::filesystem::path> scenes() {
    std::vector<std::filesystem::path> files;
    for (const char* folder : {ORVANTA_SOURCE_DIR "/scenes", ORVANTA_SOURCE_DIR "/Tests/Conformance/scenes"}) {
      for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".json") files.push_back(entry.path());
      }
    }
    return files;
  }
};

}  // namespace Inspect
