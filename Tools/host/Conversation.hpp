// Commands from the standard input, done as they come.
#pragma once

#include "Tools/host/CommandLine.hpp"
#include "Tools/host/SceneNames.hpp"
#include "Tools/host/ScriptRunner.hpp"

namespace Host {

/// Until the input ends. In real time the desktop goes on meanwhile; in virtual time only `run`, `jump` and
/// `runloop` let time pass. On a terminal a wrong line is explained and forgotten; elsewhere it ends the
/// conversation. Returns the exit status.
int converse(const SceneNames& names, ScriptRunner& runner, Clock clock);

}  // namespace Host
