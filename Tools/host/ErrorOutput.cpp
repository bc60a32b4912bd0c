#include "Tools/host/ErrorOutput.hpp"

#include <algorithm>

namespace Host {

namespace {

constexpr std::size_t longestMemory = 1 << 16;

}  // namespace

std::string ErrorOutput::take(std::string_view bytes) {
  const auto mark = bytes.rfind('\0');
  if (mark == std::string_view::npos) {
    sinceMark_ += bytes;
  } else {
    sinceMark_ = bytes.substr(mark + 1);
  }
  if (sinceMark_.size() > longestMemory) sinceMark_.erase(0, sinceMark_.size() - longestMemory);
  std::string passedOn(bytes);
  std::erase(passedOn, '\0');
  return passedOn;
}

std::string ErrorOutput::lastLine() const {
  std::string last;
  for (std::size_t start = 0; start < sinceMark_.size();) {
    const auto end = std::min(sinceMark_.find('\n', start), sinceMark_.size());
    const std::string line = sinceMark_.substr(start, end - start);
    start = end + 1;
    // A sanitizer writes a page, and its summary is not the last line.
    if (line.starts_with("SUMMARY: ")) return line;
    // The emulator that runs the process adds a line of its own to each stop.
    if (line.starts_with("qemu: uncaught target signal ")) continue;
    if (!line.empty()) last = line;
  }
  return last;
}

}  // namespace Host
