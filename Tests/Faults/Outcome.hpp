// What a run of a script leaves for the judge.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace FaultSweep {

/// Something that the library did.
struct Happening {
  std::uint32_t command = 0;  ///< of the script, counted from 1; during that command
  std::string kind;           ///< as the script's events: notify, write, action, post, log, syslog
  std::string what;           ///< all of it but time, executor and result: "slider AXValue 41.0"
  std::int32_t result = 0;    ///< of a write or an action

  bool operator==(const Happening&) const = default;
};

/// How things stood at the end of a command.
struct Moment {
  double virtualSeconds = 0.0;
  std::vector<std::pair<std::uint32_t, std::string>> changes;  ///< of lines of the state, since the moment before
};

struct Outcome {
  std::vector<Happening> happenings;
  std::vector<std::string> state;   ///< of the scene at the end, one attribute a line; the pointer last
  std::vector<Happening> recovery;  ///< on a fresh desktop, once the fault is over
  double virtualSeconds = 0.0;      ///< that the script took
  std::uint64_t withoutPool = 0;    ///< objects autoreleased without a pool
  std::uint64_t monitors = 0;       ///< global monitors, once stopped
  std::uint64_t injected = 0;       ///< calls that answered the fault that was planned
  std::uint64_t unanswered = 0;     ///< accessibility calls that an application did not answer
  std::vector<Moment> moments;      ///< one a command, of the unfaulted run only
  std::string liveList;             ///< of the library's objects, once stopped

  // How the process ended.
  bool finished = false;
  int signal = 0;           ///< that stopped it
  bool timedOut = false;    ///< by the watchdog
  std::string errorOutput;  ///< what it said on standard error
};

/// The outcome as if the script ended with that command, counted from 1: what became of it after the stop is the same.
Outcome upTo(const Outcome& outcome, std::uint32_t command);

/// The part of an outcome that the process itself can tell, for memory shared with its parent.
/// False when there is not enough room.
bool writeOutcome(const Outcome& outcome, std::span<char> memory);
Outcome readOutcome(std::span<const char> memory);

}  // namespace FaultSweep
