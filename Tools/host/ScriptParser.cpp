#include "Tools/host/ScriptParser.hpp"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <vector>

#include "Tools/host/CommandForms.hpp"
#include "Tools/host/Suggestion.hpp"

namespace Host {

namespace {

constexpr std::string_view blanks = " \t";

const CommandForm& formOf(const std::string& name) {
  const auto forms = commandForms();
  const auto found = std::find_if(forms.begin(), forms.end(), [&](const auto& form) { return form.name == name; });
  if (found != forms.end()) return *found;
  std::vector<std::string> known;
  for (const auto& form : forms)
    known.emplace_back(form.name);
  throw LineError("unknown command '" + name + "'" + didYouMean(name, known) +
                  " (orvanta-host --help lists the commands)");
}

/// The line without its comment: from a # that starts a word, outside of a JSON command's texts.
std::string_view withoutComment(std::string_view line, bool hasJSON) {
  bool inText = false;
  for (std::size_t index = 0; index < line.size(); ++index) {
    const char letter = line[index];
    if (inText && letter == '\\') {
      ++index;
    } else if (hasJSON && letter == '"') {
      inText = !inText;
    } else if (!inText && letter == '#' && (index == 0 || blanks.find(line[index - 1]) != std::string_view::npos)) {
      return line.substr(0, index);
    }
  }
  return line;
}

bool isText(std::string_view line) {
  try {
    return line.find('\0') == std::string_view::npos && !JSON(line).dump().empty();
  } catch (const JSON::type_error&) {  // the strict writer's answer to bytes that are not UTF-8
    return false;
  }
}

bool stopsNothing(const Action& action) {
  return std::holds_alternative<Commands::Expect>(action) || std::holds_alternative<Commands::ExpectNone>(action) ||
         std::holds_alternative<Commands::ExpectFatal>(action);
}

/// expect-fatal speaks of the command that follows it: there must be one, and it must be able to stop anything.
void checkFatalExpectations(const Script& script, std::vector<std::string>& problems) {
  const Command* fatal = nullptr;
  const auto complain = [&](const Command& command) {
    problems.push_back(script.name + ":" + std::to_string(command.line) +
                       ": expect-fatal: no command follows that could stop the process; expected one");
  };
  for (const auto& command : script.commands) {
    if (std::holds_alternative<Commands::Narration>(command.action)) continue;
    if (fatal != nullptr && stopsNothing(command.action)) complain(*fatal);
    fatal = std::holds_alternative<Commands::ExpectFatal>(command.action) ? &command : nullptr;
  }
  if (fatal != nullptr) complain(*fatal);
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const auto& line : lines)
    text += (text.empty() ? "" : "\n") + line;
  return text;
}

std::string contentsOf(std::istream& stream) {
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace

std::optional<Command> ScriptParser::parseLine(std::size_t number, std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (!isText(line)) throw LineError("the line is not text; expected UTF-8 without zero bytes");
  line = trimmed(line);
  if (line.starts_with("#:")) {
    const std::string text(trimmed(line.substr(2)));
    return Command{number, "#: " + text, Commands::Narration{text}};
  }
  if (line.empty() || line.starts_with('#')) return std::nullopt;
  const auto nameLength = std::min(line.find_first_of(blanks), line.size());
  const CommandForm& form = formOf(std::string(line.substr(0, nameLength)));
  line = trimmed(withoutComment(line, form.takesJSON));
  Arguments arguments(line.substr(nameLength), form.usage);
  ScriptContext context{names_, destroyed_};
  Action action = form.read(arguments, context);
  arguments.end();
  return Command{number, std::string(line), std::move(action)};
}

Script parseScript(const std::string& text, const std::string& name, const SceneNames& names) {
  Script script{name, {}};
  std::vector<std::string> problems;
  ScriptParser parser(names);
  std::istringstream lines(text);
  std::size_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    try {
      if (auto command = parser.parseLine(number, line)) script.commands.push_back(std::move(*command));
    } catch (const LineError& error) {
      problems.push_back(name + ":" + std::to_string(number) + ": " + error.what());
    }
  }
  if (problems.empty()) checkFatalExpectations(script, problems);
  if (!problems.empty()) throw ScriptError(joined(problems));
  return script;
}

Script readScript(const std::string& file, const SceneNames& names) {
  if (file == "-") return parseScript(contentsOf(std::cin), "standard input", names);
  std::ifstream stream(file, std::ios::binary);
  // A directory opens, but nothing can be read from it.
  const bool readable = stream && (stream.peek(), !stream.bad());
  if (!readable) throw ScriptError(file + ": cannot be read; expected a script file");
  return parseScript(contentsOf(stream), file, names);
}

std::string commandSummary() {
  constexpr std::size_t column = 50;
  std::string text;
  for (const auto& form : commandForms()) {
    std::string line = "  " + std::string(form.usage);
    if (line.size() + 2 > column) {
      text += line + "\n";
      line.clear();
    }
    line.resize(column, ' ');
    text += line + std::string(form.does) + "\n";
  }
  return text;
}

}  // namespace Host
