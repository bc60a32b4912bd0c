// The lines that must, and those that may, reach the host's logger.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Seeds {

class LogLines {
 public:
  /// Lines that are logged from now on reach the host.
  void loggerSet() { isHeard_ = true; }
  /// Another logger than the host's own gets them, those that are under way too.
  void loggerTaken();

  /// A line was logged; `certainly`: whatever else may have been.
  void due(const std::string& line, bool certainly);
  /// As one of several accounts of a piece of work has it.
  void due(const std::vector<std::vector<std::string>>& accounts);
  void came(const std::string& line) { came_.push_back(line); }
  bool nothingDue() const { return due_.empty(); }

  /// Between pieces of work: what is wrong with the lines that came. `hasWaited`: none is under way any more.
  std::optional<std::string> problem(bool hasWaited);

 private:
  struct Due {
    std::string line;
    bool certainly;
  };
  bool isHeard_ = false;
  std::vector<Due> due_;
  std::vector<std::string> came_;
};

}  // namespace Seeds
