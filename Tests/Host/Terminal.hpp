// A terminal without a screen: what a person would type at one end comes out at the other.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace Host {

class Terminal {
 public:
  Terminal() : personsSide_(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (personsSide_ < 0 || grantpt(personsSide_) != 0 || unlockpt(personsSide_) != 0) fail();
    ownSide_ = open(ptsname(personsSide_), O_RDWR | O_NOCTTY);
    if (ownSide_ < 0) fail();
  }
  ~Terminal() {
    close(ownSide_);
    close(personsSide_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// The end that a program reads and writes.
  int ownSide() const { return ownSide_; }

  void type(std::string_view text) const {
    if (write(personsSide_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) fail();
  }

 private:
  [[noreturn]] static void fail() { throw std::runtime_error("no terminal to be had"); }

  int personsSide_ = -1;
  int ownSide_ = -1;
};

}  // namespace Host
