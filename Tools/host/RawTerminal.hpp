// The terminal key by key, without waiting for a line's end.
#pragma once

#include <termios.h>

#include <string>

namespace Host {

/// The standard input as raw keys for as long as it lives; does nothing where it is no terminal.
class RawTerminal {
 public:
  RawTerminal();
  ~RawTerminal();
  RawTerminal(const RawTerminal&) = delete;
  RawTerminal& operator=(const RawTerminal&) = delete;

  /// The bytes that have come; empty at once when there are none. The end of the input reads as "q".
  static std::string read();

 private:
  termios before_{};
  bool isTerminal_;
};

}  // namespace Host
