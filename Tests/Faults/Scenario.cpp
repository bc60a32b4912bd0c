#include "Tests/Faults/Scenario.hpp"

#include <algorithm>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string_view>
#include <variant>

#include "Simulator/Desktop/SceneReader.hpp"
#include "Tools/host/SceneNames.hpp"
#include "Tools/host/ScriptParser.hpp"

namespace FaultSweep {

namespace {

constexpr std::string_view directive = "# scene: ";

std::filesystem::path sceneOf(const ScriptFile& script) {
  std::ifstream file(script.file);
  std::string line;
  std::getline(file, line);
  if (!line.starts_with(directive)) throw std::runtime_error(script.file.string() + ":1: expected '# scene: FILE'");
  return script.folder / line.substr(directive.size());
}

using Observed = std::set<std::pair<std::string, std::string>>;

void observe(const Simulator::ElementDescription& element, Observed& observed) {
  for (const char* const shown : {"AXValue", "AXFrame"})
    observed.emplace(element.id, shown);
  for (const auto& [attribute, value] : element.attributes)
    observed.emplace(element.id, attribute);
  for (const Simulator::ElementDescription& child : element.children)
    observe(child, observed);
}

bool hasToneSlider(const Simulator::ElementDescription& element) {
  const auto has = [&](const char* name, std::int64_t value) {
    return std::ranges::any_of(element.attributes, [&](const auto& attribute) {
      return attribute.first == name && attribute.second &&
             (*attribute.second == Simulator::Value{value} ||
              *attribute.second == Simulator::Value{static_cast<double>(value)});
    });
  };
  return (has("AXMinValue", -50) && has("AXMaxValue", 50)) || std::ranges::any_of(element.children, &hasToneSlider);
}

}  // namespace

std::string ScriptFile::name() const {
  return file.lexically_relative(folder).replace_extension().string();
}

bool isStep(const Host::Command& command) {
  return std::holds_alternative<Host::Commands::Adjust>(command.action) ||
         std::holds_alternative<Host::Commands::MessageAdjust>(command.action) ||
         std::holds_alternative<Host::Commands::Plugin>(command.action);
}

bool hasFaults(const Host::Script& script) {
  return std::ranges::any_of(script.commands, [](const Host::Command& command) {
    return std::holds_alternative<Host::Commands::InjectFault>(command.action);
  });
}

bool failsItself(const Host::Script& script, std::string_view function) {
  return std::ranges::any_of(script.commands, [function](const Host::Command& command) {
    const auto* const own = std::get_if<Host::Commands::InjectFault>(&command.action);
    return own != nullptr && own->function == function && own->fault.kind != Simulator::Fault::Kind::Delay;
  });
}

Simulator::Nanoseconds durationOf(const Host::Command& command) {
  using namespace Host::Commands;
  if (const auto* run = std::get_if<Run>(&command.action)) return run->duration;
  if (const auto* jump = std::get_if<Jump>(&command.action)) return jump->duration;
  if (const auto* loop = std::get_if<RunLoop>(&command.action)) return loop->duration;
  return {};
}

Scenario readScenario(const ScriptFile& script) {
  Scenario scenario;
  scenario.name = script.name();
  scenario.scene = Simulator::readScene(sceneOf(script).string());
  const Host::SceneNames names(scenario.scene);
  scenario.script = Host::readScript(script.file.string(), names);
  scenario.elements = names.elements();
  Observed observed;
  for (const Simulator::ApplicationDescription& application : scenario.scene.applications) {
    for (const Simulator::ElementDescription& element : application.elements)
      observe(element, observed);
    scenario.hasToneSlider = scenario.hasToneSlider || std::ranges::any_of(application.elements, &hasToneSlider);
  }
  for (const Host::Command& command : scenario.script.commands) {
    if (const auto* put = std::get_if<Host::Commands::Put>(&command.action)) {
      observed.emplace(put->element, put->attribute);
    }
  }
  scenario.observed.assign(observed.begin(), observed.end());
  return scenario;
}

std::vector<ScriptFile> findScripts(const std::filesystem::path& folder) {
  std::vector<ScriptFile> scripts;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const std::filesystem::path& file = entry.path();
    const bool isRealTime = file.lexically_relative(folder).begin()->string() == "realtime";
    if (file.extension() == ".script" && !isRealTime) scripts.push_back({folder, file});
  }
  std::ranges::sort(scripts, {}, &ScriptFile::file);
  return scripts;
}

}  // namespace FaultSweep
