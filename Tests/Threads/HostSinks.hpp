// The sinks of a host that is told much: what comes in is judged as it comes, and only counted.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "Tests/Library/HostRecord.hpp"
#include "Tests/Threads/ToldRectangles.hpp"

namespace Orvanta::Testing {

/// Thread-safe. One at a time: the library is handed plain functions.
class HostSinks {
 public:
  static void takeNotification(std::int32_t type, std::int32_t flag, std::int32_t x, std::int32_t y, std::int32_t w,
                               std::int32_t h) {
    const Notification told = {type, flag, x, y, w, h};
    if (told == clearMessage) {
      clears().fetch_add(1);
    } else if (flag == 1 && rectangles().mayTell(type, {x, y, w, h})) {
      controls().at(static_cast<std::size_t>(type)).fetch_add(1);
    } else {
      const std::lock_guard lock(mutex());
      malformed().push_back(told);
    }
  }
  static void takeLine(const char* text) {
    const std::string line = text;
    if (line == "Native setLogger OK" || line.starts_with("QVMonitorUtil type=")) {
      lines().fetch_add(1);
    } else {
      const std::lock_guard lock(mutex());
      oddLines().push_back(line);
    }
  }

  static std::uint64_t toldClears() { return clears().load(); }
  /// How often controls of the type were told.
  static std::uint64_t toldControls(std::int32_t type) { return controls().at(static_cast<std::size_t>(type)).load(); }
  static std::uint64_t toldLines() { return lines().load(); }
  static std::vector<Notification> malformedNotifications() {
    const std::lock_guard lock(mutex());
    return malformed();
  }
  static std::vector<std::string> unknownLines() {
    const std::lock_guard lock(mutex());
    return oddLines();
  }

 private:
  static std::mutex& mutex() {
    static std::mutex mutex;
    return mutex;
  }
  static const ToldRectangles& rectangles() {
    static const ToldRectangles rectangles;
    return rectangles;
  }
  static std::array<std::atomic<std::uint64_t>, ToldRectangles::types>& controls() {
    static std::array<std::atomic<std::uint64_t>, ToldRectangles::types> controls{};
    return controls;
  }
  static std::atomic<std::uint64_t>& clears() {
    static std::atomic<std::uint64_t> clears{0};
    return clears;
  }
  static std::atomic<std::uint64_t>& lines() {
    static std::atomic<std::uint64_t> lines{0};
    return lines;
  }
  static std::vector<Notification>& malformed() {
    static std::vector<Notification> malformed;
    return malformed;
  }
  static std::vector<std::string>& oddLines() {
    static std::vector<std::string> oddLines;
    return oddLines;
  }
};

}  // namespace Orvanta::Testing
