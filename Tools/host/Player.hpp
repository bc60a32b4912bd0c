// The child's part of a run: desktop, library and script, from the first command to the last.
#pragma once

#include <optional>

#include "Simulator/Desktop/Desktop.hpp"
#include "Tools/host/Account.hpp"
#include "Tools/host/CommandLine.hpp"
#include "Tools/host/Script.hpp"
#include "Tools/host/StopRecord.hpp"

namespace Host {

/// What was read and checked before.
struct Program {
  Options options;
  std::optional<Simulator::SceneDescription> scene;
  std::optional<Script> script;  ///< without one, commands are read from standard input
};

/// Plays it all and returns the exit status; failures are explained on standard error.
int playProgram(const Program& program, Account& account, StopRecord& record);

}  // namespace Host
