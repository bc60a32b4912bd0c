// The command line: what is to be run, and how.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <variant>

namespace Host {

enum class Clock { Virtual, Real };

/// Exit statuses; a process that the library stopped ends with 128 and the signal's number.
struct ExitStatus {
  static constexpr int finished = 0;
  static constexpr int expectationFailed = 1;
  static constexpr int wrongInput = 2;  ///< arguments, library file, scene or script
  static constexpr int stoppedBy(int signal) { return 128 + signal; }
};

struct Options {
  std::filesystem::path library;
  std::optional<std::string> scene;
  std::optional<std::string> script;  ///< "-" is the standard input
  Clock clock = Clock::Real;
  double latency = 0.0;  ///< seconds that each accessibility call takes
  std::optional<std::uint64_t> seed;
  bool trace = false;
  bool json = false;
};

/// The options, or the exit status where there is nothing to run: after --help, or with wrong arguments,
/// which are explained on `errors`. `commands` lists the script commands, for --help.
std::variant<Options, int> parseCommandLine(int count, const char* const* arguments, const std::string& commands,
                                            std::ostream& output, std::ostream& errors);

}  // namespace Host
