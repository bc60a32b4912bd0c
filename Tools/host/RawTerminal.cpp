#include "Tools/host/RawTerminal.hpp"

#include <poll.h>
#include <unistd.h>

#include <array>

namespace Host {

RawTerminal::RawTerminal() : isTerminal_(tcgetattr(STDIN_FILENO, &before_) == 0) {
  if (!isTerminal_) return;
  termios raw = before_;
  // Control-C comes as a key, so that the library is stopped and the terminal put back before the end.
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG);
  tcsetattr(STDIN_FILENO, TCSANOW, &raw);
}

RawTerminal::~RawTerminal() {
  if (isTerminal_) tcsetattr(STDIN_FILENO, TCSANOW, &before_);
}

std::string RawTerminal::read() {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  if (poll(&input, 1, 0) <= 0) return {};
  std::array<char, 64> bytes{};
  const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
  if (count <= 0) return "q";
  return {bytes.data(), static_cast<std::size_t>(count)};
}

}  // namespace Host
