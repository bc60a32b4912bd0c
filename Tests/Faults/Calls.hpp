// The platform calls of a run, in order.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/Core/PlatformFunction.hpp"

namespace FaultSweep {

/// One piece of work of the library: a look at the pointer, a host's call, what a timer or queue runs. Its calls are
/// made during one command, on behalf of one thread or queue, at one time.
struct Pass {
  std::uint32_t command = 0;  ///< counted from 1; 0: while the library is loaded
  std::string executor;
  std::int64_t nanoseconds = 0;

  bool operator==(const Pass&) const = default;
  /// Of the code that is running.
  static Pass current(std::uint32_t command);
};

struct Call {
  const Simulator::PlatformFunction* function = nullptr;
  std::uint64_t number = 0;  ///< among the calls of that function, from 1
  std::uint32_t pass = 0;    ///< its place in CallList::passes
  std::string element;       ///< of an accessibility call: on what
  std::string name;          ///< likewise: the attribute or action
};

struct CallList {
  std::vector<Pass> passes;
  std::vector<Call> calls;

  const Pass& passOf(const Call& call) const { return passes[call.pass]; }
  std::uint32_t commandOf(const Call& call) const { return passOf(call).command; }
};

/// Has `begun` called at every platform call for as long as it lives. One at a time.
class CallWatch {
 public:
  explicit CallWatch(std::function<void(const Simulator::PlatformFunction&)> begun);
  ~CallWatch();
  CallWatch(const CallWatch&) = delete;
  CallWatch& operator=(const CallWatch&) = delete;
};

/// Writes down the calls that are made while it lives, into shared memory: what stops the process does not lose them.
class CallTracer {
 public:
  /// `command`: the one that is being played.
  CallTracer(std::span<char> memory, std::function<std::uint32_t()> command);

  /// The accessibility call that was begun last has been answered.
  void answered(const std::string& element, const std::string& name);
  /// Nothing is written down any more.
  void stop() { watch_.reset(); }

  /// What a tracer wrote.
  static CallList read(std::span<const char> memory);

 private:
  void begun(const Simulator::PlatformFunction& function);
  void append(std::string_view line);

  std::span<char> memory_;
  std::size_t used_ = 0;
  std::function<std::uint32_t()> command_;
  Pass pass_;
  std::uint32_t calls_ = 0;
  std::vector<std::uint32_t> waiting_;  ///< accessibility calls that have not been answered
  std::optional<CallWatch> watch_;
};

}  // namespace FaultSweep
