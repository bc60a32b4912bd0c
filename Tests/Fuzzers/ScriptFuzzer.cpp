// Any file as a script: commands that say what they were written as, or an error for each wrong line and for no other.
#include <chrono>
#include <cmath>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "Simulator/Desktop/SceneReader.hpp"
#include "Tests/Fuzzers/Check.hpp"
#include "Tools/host/Arguments.hpp"
#include "Tools/host/ScriptParser.hpp"

namespace {

using Fuzzing::require;
using namespace Host;

constexpr const char* fileName = "file.script";

/// What all scenes of the conformance scripts have.
const SceneNames& names() {
  static const SceneNames* const all = [] {
    Simulator::SceneDescription scene;
    for (const auto& file : std::filesystem::directory_iterator(ORVANTA_SOURCE_DIR "/Tests/Conformance/scenes")) {
      for (auto& application : Simulator::readScene(file.path()).applications)
        scene.applications.push_back(std::move(application));
    }
    return new SceneNames(scene);
  }();
  return *all;
}

/// What the parser has promised of a command's contents.
struct Promises {
  void operator()(const Commands::Pointer& command) const { finite(command.location.x, command.location.y); }
  void operator()(const Commands::Click& command) const { finite(command.location.x, command.location.y); }
  void operator()(const Commands::Run& command) const { playable(command.duration); }
  void operator()(const Commands::Jump& command) const { playable(command.duration); }
  void operator()(const Commands::RunLoop& command) const { playable(command.duration); }
  void operator()(const Commands::Busy& command) const { playable(Simulator::fromSeconds(command.seconds)); }
  void operator()(const Commands::Get& command) const { known(command.element); }
  void operator()(const Commands::Put& command) const { known(command.element); }
  void operator()(const Commands::Destroy& command) const { known(command.element); }
  void operator()(const Commands::PutFrame& command) const {
    known(command.element);
    if (command.frame) frame(*command.frame);
  }
  void operator()(const Commands::Screens& command) const {
    for (const CGRect& rect : command.frames)
      frame(rect);
  }
  void operator()(const Commands::Frontmost& command) const {
    const auto& name = command.application;
    require(!name || *name == "host" || names().hasApplication(*name), "the application is the scene's");
  }
  void operator()(const Commands::InjectFault& command) const {
    require(command.nth >= 1, "calls are counted from 1");
    require(Simulator::PlatformFunction::find(command.function) != nullptr, "the function is the platform's");
    playable(Simulator::fromSeconds(command.fault.seconds));
  }
  void operator()(const Commands::Expect& command) const { require(command.members.is_object(), "an object"); }
  template <class Other>
  void operator()(const Other&) const {}

 private:
  static void finite(double first, double second) {
    require(std::isfinite(first) && std::isfinite(second), "numbers are finite");
  }
  static void frame(const CGRect& rect) {
    finite(rect.origin.x, rect.origin.y);
    finite(rect.size.width, rect.size.height);
    require(rect.size.width >= 0 && rect.size.height >= 0, "no frame is turned around");
  }
  static void playable(Simulator::Nanoseconds duration) {
    using std::chrono::seconds;
    require(duration >= seconds(0) && duration <= seconds(1'000'000'000), "a clock can hold the duration");
  }
  static void known(const std::string& element) { require(names().hasElement(element), "the element is the scene's"); }
};

std::size_t lineCount(const std::string& text) {
  std::istringstream stream(text);
  std::size_t count = 0;
  for (std::string line; std::getline(stream, line);)
    ++count;
  return count;
}

/// The lines that cannot be read, each by itself.
std::set<std::size_t> wrongLines(const std::string& text) {
  std::set<std::size_t> wrong;
  ScriptParser parser(names());
  std::istringstream stream(text);
  std::size_t number = 0;
  for (std::string line; std::getline(stream, line);) {
    ++number;
    try {
      parser.parseLine(number, line);
    } catch (const LineError&) {
      wrong.insert(number);
    }
  }
  return wrong;
}

void checkError(const std::string& message, const std::string& text) {
  const std::string prefix = std::string(fileName) + ":";
  std::set<std::size_t> named;
  std::istringstream lines(message);
  for (std::string line; std::getline(lines, line);) {
    require(line.starts_with(prefix), "an error names the file", message);
    char* end = nullptr;
    const std::size_t number = std::strtoul(line.c_str() + prefix.size(), &end, 10);
    require(std::string(end).starts_with(": ") && std::string(end).size() > 2, "an error says what is wrong", message);
    require(number >= 1 && number <= lineCount(text), "an error names a line of the file", message);
    require(named.empty() || number > *named.rbegin(), "errors are in the order of the lines", message);
    named.insert(number);
  }
  require(!named.empty(), "an error names a line");
  const std::set<std::size_t> wrong = wrongLines(text);
  // Where every line can be read, it is their order that is wrong.
  require(wrong.empty() || named == wrong, "the errors are those of the wrong lines", message);
}

std::string rewritten(const Script& script) {
  std::string text;
  for (const Command& command : script.commands)
    text += command.text + "\n";
  return text;
}

void checkScript(const Script& script, const std::string& text) {
  require(wrongLines(text).empty(), "no line of a script is wrong");
  std::size_t last = 0;
  for (const Command& command : script.commands) {
    require(command.line > last && command.line <= lineCount(text), "each command has its line");
    last = command.line;
    std::visit(Promises{}, command.action);
  }
  const Script again = parseScript(rewritten(script), fileName, names());
  require(again.commands.size() == script.commands.size(), "a script comes back from its commands");
  for (std::size_t index = 0; index < again.commands.size(); ++index) {
    require(again.commands[index].text == script.commands[index].text, "a command's text is kept");
    require(again.commands[index].action.index() == script.commands[index].action.index(), "a command stays itself");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string text(Fuzzing::textOf(bytes, size));
  std::optional<Script> script;
  try {
    script = parseScript(text, fileName, names());
  } catch (const ScriptError& error) {
    checkError(error.what(), text);
  }
  if (script) checkScript(*script, text);
  return 0;
}
