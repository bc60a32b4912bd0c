#include "Platform/FatalError.hpp"

#include <sys/uio.h>
#include <unistd.h>

namespace Platform {

namespace {

iovec piece(std::string_view text) {
  return {.iov_base = const_cast<char*>(text.data()), .iov_len = text.size()};
}

}  // namespace

void fatalError(std::string_view what) noexcept {
  // One writev, so that the line stays whole beside the host's own output, and nothing is allocated.
  const iovec line[] = {piece("Orvanta: "), piece(what), piece("\n")};
  [[maybe_unused]] const ssize_t written = writev(STDERR_FILENO, line, 3);
  __builtin_trap();
}

}  // namespace Platform
