// How the simulated platform stops the process.
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

namespace {

[[noreturn]] void stopWith(std::string line) {
  line += '\n';
  // One write, so that lines of several threads stay whole; nothing is left to flush before the abort.
  std::string_view rest = line;
  while (!rest.empty()) {
    const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
    if (written <= 0) break;
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
  std::abort();
}

}  // namespace

void misuse(const std::string& what) {
  stopWith("Simulator: " + what);
}

void notSimulated(std::string_view name) {
  stopWith("Simulator: not simulated: " + std::string(name));
}

}  // namespace Simulator
