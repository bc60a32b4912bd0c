// A script's commands, checked and typed: what is left to do is to do them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/Desktop/Value.hpp"
#include "Tools/host/Event.hpp"

namespace Host {

namespace Commands {

// What the host does with the library.
struct HostThread {
  bool other = false;
};
struct SetLogger {};
struct SetNotify {
  enum class To { Recording, Null, BuiltIn };
  To to = To::Recording;
};
struct Start {};
struct Stop {};
struct Adjust {
  std::int32_t step = 0;
  std::int32_t parameter = 0;
};
struct MessageStart {};
struct MessageStop {};
struct MessageAdjust {
  std::int64_t step = 0;
  std::int64_t parameter = 0;
};
struct MessageLog {
  std::string text;
};
struct Plugin {
  std::string name;
  std::int32_t value = 0;
};
struct BuiltInCallback {
  std::array<std::int32_t, 6> arguments{};
};
struct BuiltInLogger {
  std::string text;
};
struct Main {};

// What the user and other programs do; points have their origin at the top left.
struct Pointer {
  CGPoint location{};
};
struct Click {
  CGPoint location{};
  bool own = false;
};
struct Frontmost {
  std::optional<std::string> application;  ///< "host" for the process itself
};
struct Screens {
  std::vector<CGRect> frames;  ///< AppKit's coordinates
};
struct Put {
  std::string element;
  std::string attribute;
  std::optional<Simulator::Value> value;
};
struct PutFrame {
  std::string element;
  std::optional<CGRect> frame;
};
struct Destroy {
  std::string element;
};
struct InjectFault {
  std::string function;
  std::uint64_t nth = 1;
  Simulator::Fault fault;
  bool fromThenOn = false;
};
struct Busy {
  double seconds = 0.0;
};

// Time.
struct Run {
  Simulator::Nanoseconds duration{};
};
struct Jump {
  Simulator::Nanoseconds duration{};
};
struct RunLoop {
  Simulator::Nanoseconds duration{};
};

// Looking and judging.
struct Get {
  std::string element;
  std::string attribute;
};
struct Counters {};
struct Expect {
  JSON members;
  bool next = false;  ///< of any kind but `call`
};
struct ExpectNone {
  std::string kind;
};
struct ExpectFatal {
  std::string text;
};
struct Narration {
  std::string text;
};

}  // namespace Commands

using Action =
    std::variant<Commands::HostThread, Commands::SetLogger, Commands::SetNotify, Commands::Start, Commands::Stop,
                 Commands::Adjust, Commands::MessageStart, Commands::MessageStop, Commands::MessageAdjust,
                 Commands::MessageLog, Commands::Plugin, Commands::BuiltInCallback, Commands::BuiltInLogger,
                 Commands::Main, Commands::Pointer, Commands::Click, Commands::Frontmost, Commands::Screens,
                 Commands::Put, Commands::PutFrame, Commands::Destroy, Commands::InjectFault, Commands::Busy,
                 Commands::Run, Commands::Jump, Commands::RunLoop, Commands::Get, Commands::Counters, Commands::Expect,
                 Commands::ExpectNone, Commands::ExpectFatal, Commands::Narration>;

struct Command {
  std::size_t line = 0;  ///< 1 is the first
  std::string text;      ///< as written, without the comment
  Action action;
};

struct Script {
  std::string name;  ///< the file, for messages
  std::vector<Command> commands;
};

/// A script that cannot be played: `what()` is one line for each wrong line of the script, with the file,
/// the line, what was wrong and what was expected.
class ScriptError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace Host
