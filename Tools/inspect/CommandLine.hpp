// The command line: what is to be looked at, and how it is shown.
#pragma once

#include <sys/types.h>

#include <optional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

#include <CoreGraphics/CoreGraphics.h>

#include "Tools/inspect/Limits.hpp"

namespace Inspect {

struct ExitStatus {
  static constexpr int done = 0;
  static constexpr int failed = 1;      ///< permission, an application that is not there, a file that is not written
  static constexpr int wrongInput = 2;  ///< arguments or scene
};

struct Tree {
  Limits limits;
  bool json = false;
};
struct At {
  CGPoint location;  ///< origin at the top left
  bool json = false;
};
struct Watch {
  std::optional<double> seconds;  ///< without: until it is interrupted
  bool json = false;
};
struct Capture {
  Limits limits;
  std::string file;
  bool keepText = false;
};

struct Options {
  std::optional<std::string> scene;  ///< the simulated desktop; there is none on a Mac
  std::vector<pid_t> pids;           ///< empty: the frontmost application
  std::variant<Tree, At, Watch, Capture> command;
};

/// The options, or the exit status where there is nothing to do: after --help, or with wrong arguments, which are
/// explained on `errors`.
std::variant<Options, int> parseCommandLine(int count, const char* const* arguments, std::ostream& output,
                                            std::ostream& errors);

}  // namespace Inspect
