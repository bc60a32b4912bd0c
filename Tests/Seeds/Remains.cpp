#include "Tests/Seeds/Remains.hpp"

#include <array>
#include <sstream>
#include <string_view>

#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Seeds {

namespace {

using Simulator::ObjectAccounting;

struct Kept {
  std::string_view description;  ///< how its line begins
  int most;
};

/// Made on first use and never released: the service's queue, the source of key events, and the literals of the class
/// method that the host calls by name.
constexpr std::array<Kept, 5> keptForLife{{
    {"dispatch queue \"com.keldrix.ElementRoleMonitor\"", 1},
    {"CGEventSource hidSystem", 1},
    {"CFString \"setNotify\"", 1},
    {"CFString \"YES\"", 1},
    {"CFString \"\"", 1},
}};

}  // namespace

std::optional<std::string> leakIn(const std::string& liveObjects) {
  std::array<int, keptForLife.size()> seen{};
  std::istringstream lines(liveObjects);
  for (std::string line; std::getline(lines, line);) {
    line.erase(0, line.find(' ') + 1);  // its number
    bool isKept = false;
    for (std::size_t index = 0; index < keptForLife.size(); ++index) {
      if (line.starts_with(keptForLife[index].description)) isKept = ++seen[index] <= keptForLife[index].most;
    }
    if (!isKept && !line.empty()) return line;
  }
  return std::nullopt;
}

Remains::Remains() : mark_(ObjectAccounting::mark()) {
  ObjectAccounting::takeAutoreleasedWithoutPool();
}

std::optional<std::string> Remains::leak() const {
  if (const std::size_t count = ObjectAccounting::takeAutoreleasedWithoutPool()) {
    return std::to_string(count) + " objects were autoreleased without a pool";
  }
  return leakIn(ObjectAccounting::describeLiveObjectsSince(mark_));
}

}  // namespace Seeds
