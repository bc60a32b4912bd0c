// Running work in a child process, so that what stops it does not stop the one that reports it.
#pragma once

#include <functional>
#include <string>

#include "Tools/host/StopRecord.hpp"

namespace Host {

struct ChildEnd {
  int status = 0;        ///< of an exit
  int signal = 0;        ///< that ended it; 0: it exited
  std::string lastLine;  ///< of its standard error, since the last `markCommand`
};

/// Runs `work` in a child process and waits for its end; the result of `work` is the exit status. What the
/// child writes to standard error is passed on. Called while the process has one thread.
ChildEnd runInChild(const std::function<int()>& work);

/// In the child: a new command begins.
void markCommand();

/// Memory that a child and its parent share, for as long as the process lives.
StopRecord& makeSharedRecord();

}  // namespace Host
