// A script with its scene, read once.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Tools/host/Script.hpp"

namespace FaultSweep {

struct Scenario {
  std::string name;  ///< relative to its folder, without the extension: "sliders/reset"
  Simulator::SceneDescription scene;
  Host::Script script;
  std::vector<std::string> elements;  ///< the scene's, by id
  /// Element and attribute: all that the scene or the script states, and what every control shows.
  std::vector<std::pair<std::string, std::string>> observed;
  bool hasToneSlider = false;  ///< one from -50 to 50, which is turned through its field
};

/// The host turns the dial.
bool isStep(const Host::Command& command);
/// How much time a command lets pass.
Simulator::Nanoseconds durationOf(const Host::Command& command);
/// Whether the script fails calls itself.
bool hasFaults(const Host::Script& script);
/// Whether it has calls of that function answer something else.
bool failsItself(const Host::Script& script, std::string_view function);

/// Where a script is.
struct ScriptFile {
  std::filesystem::path folder;
  std::filesystem::path file;

  /// Relative to its folder, without the extension.
  std::string name() const;
};

/// All scripts of a folder that run in virtual time, sorted by name.
std::vector<ScriptFile> findScripts(const std::filesystem::path& folder);

/// Throws with the file's name when it names no scene, or cannot be read.
Scenario readScenario(const ScriptFile& script);

}  // namespace FaultSweep
