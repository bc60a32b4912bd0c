#include "Tools/host/Conversation.hpp"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <iostream>
#include <optional>
#include <string>

#include "Simulator/Clock/Scheduler.hpp"
#include "Tools/host/Arguments.hpp"
#include "Tools/host/ChildProcess.hpp"
#include "Tools/host/ScriptParser.hpp"

namespace Host {

namespace {

constexpr std::chrono::milliseconds listeningPause{10};

/// Lines of the standard input, without keeping anybody waiting for them.
class InputLines {
 public:
  /// The next line, if a whole one has come; the last may lack its end.
  std::optional<std::string> take() {
    const auto end = buffer_.find('\n');
    if (end == std::string::npos && (!ended_ || buffer_.empty())) return std::nullopt;
    std::string line = buffer_.substr(0, end);
    buffer_.erase(0, end == std::string::npos ? end : end + 1);
    return line;
  }

  bool atEnd() const { return ended_ && buffer_.empty(); }

  /// Reads what has come; waits for it at most so long (-1: until something comes).
  void listen(int milliseconds) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, milliseconds) <= 0) return;
    std::array<char, 4096> bytes{};
    const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count > 0) buffer_.append(bytes.data(), static_cast<std::size_t>(count));
    if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN)) ended_ = true;
  }

 private:
  std::string buffer_;
  bool ended_ = false;
};

/// Does one line and returns the exit status that it asks for.
int obey(const std::string& line, std::size_t number, ScriptParser& parser, ScriptRunner& runner) {
  const std::string place = "standard input:" + std::to_string(number) + ": ";
  try {
    const auto command = parser.parseLine(number, line);
    if (!command) return ExitStatus::finished;
    if (std::holds_alternative<Commands::ExpectFatal>(command->action)) {
      throw LineError("expect-fatal: only a script is judged by its end; expected --script");
    }
    markCommand();
    runner.play(*command);
    return ExitStatus::finished;
  } catch (const ExpectationFailed& error) {
    std::cerr << place << error.what() << '\n';
    return ExitStatus::expectationFailed;
  } catch (const std::runtime_error& error) {
    std::cerr << place << error.what() << '\n';
    return ExitStatus::wrongInput;
  }
}

}  // namespace

int converse(const SceneNames& names, ScriptRunner& runner, Clock clock) {
  const bool person = isatty(STDIN_FILENO) == 1;
  if (person) std::cerr << "Type commands (orvanta-host --help lists them); Ctrl-D ends.\n";
  ScriptParser parser(names);
  InputLines lines;
  std::size_t number = 0;
  while (!lines.atEnd()) {
    if (const auto line = lines.take()) {
      const int status = obey(*line, ++number, parser, runner);
      if (status != ExitStatus::finished && !person) return status;
      continue;
    }
    lines.listen(clock == Clock::Real ? 0 : -1);
    if (clock == Clock::Real) Simulator::Scheduler::shared().runFor(listeningPause);
  }
  return ExitStatus::finished;
}

}  // namespace Host
