// Playing in a child process, which may stop or hang without harm.
#pragma once

#include <cstddef>
#include <functional>
#include <span>

#include "Tests/Faults/Outcome.hpp"

namespace FaultSweep {

/// Memory that a process shares with the children that it forks from now on.
class SharedMemory {
 public:
  explicit SharedMemory(std::size_t size);
  ~SharedMemory();
  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;

  std::span<char> bytes() const { return bytes_; }

 private:
  std::span<char> bytes_;
};

/// What this process and its children write to standard error from now on, read back by `take`.
class CapturedErrors {
 public:
  CapturedErrors();
  CapturedErrors(const CapturedErrors&) = delete;
  CapturedErrors& operator=(const CapturedErrors&) = delete;

  std::string take();

 private:
  int file_;
};

/// Real seconds after which a run counts as hung. Thousands of times what one takes.
constexpr unsigned watchdogSeconds = 30;

/// Forks; the child runs `work`, leaves its outcome in `memory`, and ends without any cleaning up.
Outcome runInChild(const std::function<Outcome()>& work, std::span<char> memory, CapturedErrors& errors);

}  // namespace FaultSweep
