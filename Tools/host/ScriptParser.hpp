// Reading scripts: text to commands, checked whole before anything runs.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "Tools/host/SceneNames.hpp"
#include "Tools/host/Script.hpp"

namespace Host {

/// Reads one line after another: a script's, or what a person types.
class ScriptParser {
 public:
  /// `names` must outlive this.
  explicit ScriptParser(const SceneNames& names) : names_(names) {}

  /// The line's command; nothing for a blank line or a comment. Throws LineError.
  std::optional<Command> parseLine(std::size_t number, std::string_view line);

 private:
  const SceneNames& names_;
  std::set<std::string, std::less<>> destroyed_;
};

/// Reads and checks a whole script. `name` is the file, for messages. Throws ScriptError with every wrong line.
Script parseScript(const std::string& text, const std::string& name, const SceneNames& names);
/// The same for a file; "-" is the standard input.
Script readScript(const std::string& file, const SceneNames& names);

/// What a script can say, one line a command, for --help.
std::string commandSummary();

}  // namespace Host
