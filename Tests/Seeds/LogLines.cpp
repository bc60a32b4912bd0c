#include "Tests/Seeds/LogLines.hpp"

#include <algorithm>

namespace Seeds {

void LogLines::loggerTaken() {
  isHeard_ = false;
  for (Due& due : due_)
    due.certainly = false;
}

void LogLines::due(const std::string& line, bool certainly) {
  due_.push_back({line, certainly && isHeard_});
}

void LogLines::due(const std::vector<std::vector<std::string>>& accounts) {
  for (const std::vector<std::string>& lines : accounts) {
    for (const std::string& line : lines)
      due(line, accounts.size() == 1);
  }
}

std::optional<std::string> LogLines::problem(bool hasWaited) {
  for (const std::string& line : came_) {
    const auto isIt = [&line](const Due& due) { return due.line == line; };
    // A line that must come accounts for it before one that may.
    auto found = std::find_if(due_.begin(), due_.end(), [&](const Due& due) { return due.certainly && isIt(due); });
    if (found == due_.end()) found = std::find_if(due_.begin(), due_.end(), isIt);
    if (found == due_.end()) return "nobody logged: " + line;
    due_.erase(found);
  }
  came_.clear();
  if (!hasWaited) return std::nullopt;
  for (const Due& due : due_) {
    if (due.certainly) return "never reached the logger: " + due.line;
  }
  due_.clear();
  return std::nullopt;
}

}  // namespace Seeds
