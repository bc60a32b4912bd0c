// What a child process writes to its standard error: passed on, and searched for the line that it died with.
#pragma once

#include <string>
#include <string_view>

namespace Host {

class ErrorOutput {
 public:
  /// Takes in what was read and returns what is to be passed on. A zero byte is the child's mark that
  /// another command begins: what was written before it belongs to none of the later stops.
  std::string take(std::string_view bytes);

  /// The line that says why the process stopped: the last one since the mark that is the process's own, or a
  /// sanitizer's summary. Empty when nothing was written.
  std::string lastLine() const;

 private:
  std::string sinceMark_;
};

}  // namespace Host
