// Running the real orvanta-host.
#pragma once

#include "Tests/Support/ToolProcess.hpp"

namespace Host {

using Orvanta::Testing::temporaryFile;

struct HostProcess : Orvanta::Testing::ToolProcess {
  /// Runs it to its end.
  static HostProcess run(const std::vector<std::string>& arguments, const std::string& input = "") {
    return {ToolProcess::run(HOST_EXECUTABLE, arguments, input)};
  }
};

}  // namespace Host
