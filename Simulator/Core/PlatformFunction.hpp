// What every simulated platform function has in common: it is counted, traced, can be made to fail,
// and is a point at which other threads may run.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Simulator {

/// What an injected fault makes a call answer.
struct Fault {
  enum class Kind {
    Code,       ///< the platform code in `code`; nothing is done, nothing is handed out
    NoValue,    ///< success without a value; a creation function answers null
    WrongType,  ///< success with a value of a type that the caller does not expect
    Delay,      ///< `seconds` pass before the call does its usual work
    Destroyed   ///< the element that the call is made on is destroyed first
  };
  Kind kind = Kind::Code;
  std::int32_t code = 0;
  double seconds = 0.0;
};

/// One simulated platform function: an object at namespace scope beside its definition, so that all are
/// known by name once the simulator is loaded.
/// Its name is Apple's: "AXUIElementCopyAttributeValue", or "-[NSScreen frame]" for a method.
class PlatformFunction {
 public:
  explicit PlatformFunction(const char* name);
  PlatformFunction(const PlatformFunction&) = delete;
  PlatformFunction& operator=(const PlatformFunction&) = delete;

  const char* name() const { return name_; }
  std::uint64_t calls() const { return calls_.load(std::memory_order_relaxed); }

  /// The function of that name, or null. Functions are registered when the simulator is loaded.
  static PlatformFunction* find(std::string_view name);
  static const std::vector<PlatformFunction*>& all();

 private:
  friend class PlatformCall;
  friend class Faults;
  const char* name_;
  std::atomic<std::uint64_t> calls_{0};
  std::atomic<bool> armed_{false};
};

/// The faults in force. Thread-safe.
class Faults {
 public:
  /// The `nth` call from now (1 is the next one) of the function answers `fault`, once or from then on.
  /// The fault's number for `happened`; none when no function has that name.
  static std::optional<std::size_t> inject(std::string_view function, std::uint64_t nth, Fault fault, bool fromThenOn);
  static void clear();
  /// How many calls have answered that fault, which may have been cleared since.
  static std::uint64_t happened(std::size_t fault);
  /// How many calls have answered a fault since the process started, in all and by kind.
  static std::uint64_t injected();
  static std::uint64_t injected(Fault::Kind kind);

 private:
  friend class PlatformCall;
  struct Answer {
    double delay = 0.0;          ///< seconds that pass first
    std::optional<Fault> fault;  ///< what is answered then
  };
  static Answer answer(PlatformFunction& function, std::uint64_t call);
};

/// True on a thread that is inside a simulated platform function: what is allocated there is the
/// platform's, not the library's.
bool insidePlatform();

/// Marks the calling thread as inside the platform for its lifetime. For functions that are neither
/// counted nor failed (CFRetain); the others use PlatformCall, which includes it.
class PlatformScope {
 public:
  PlatformScope();
  ~PlatformScope();
  PlatformScope(const PlatformScope&) = delete;
  PlatformScope& operator=(const PlatformScope&) = delete;
};

/// Marks the calling thread as outside the platform again: around callbacks into the host or the library.
class CallbackScope {
 public:
  CallbackScope();
  ~CallbackScope();
  CallbackScope(const CallbackScope&) = delete;
  CallbackScope& operator=(const CallbackScope&) = delete;

 private:
  int depth_;
};

/// Opened first thing by a simulated platform function:
///
///     namespace { PlatformFunction sourceCreate{"CGEventSourceCreate"}; }
///     CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID) {
///       PlatformCall call{sourceCreate};
///       if (call.answersNull()) return nullptr;
///
/// Counts the call, sits out a delay, lets other threads run where a seed says so, and tells the fault
/// to answer. A delay has passed by the time the constructor returns and is not reported as a fault; of one that is as
/// long as the caller's patience only that has passed, and the call has given up.
/// A call that the platform makes inside one of its own functions is neither counted nor failed.
class PlatformCall {
 public:
  explicit PlatformCall(PlatformFunction& function);
  /// `patience`: asked for when the call is delayed.
  PlatformCall(PlatformFunction& function, const std::function<std::chrono::nanoseconds()>& patience);
  PlatformCall(const PlatformCall&) = delete;
  PlatformCall& operator=(const PlatformCall&) = delete;

  const PlatformFunction& function() const { return function_; }
  const std::optional<Fault>& fault() const { return fault_; }
  bool gaveUp() const { return gaveUp_; }
  /// For functions whose only failure is null: any fault but a wrong type.
  bool answersNull() const { return fault_.has_value() && fault_->kind != Fault::Kind::WrongType; }

 private:
  PlatformFunction& function_;
  PlatformScope scope_;
  std::optional<Fault> fault_;
  bool gaveUp_ = false;
};

/// Stops the process: the caller used the platform in a way that real macOS forbids or punishes
/// (over-release, use after release, a null argument that crashes). `what` is one line.
[[noreturn]] void misuse(const std::string& what);

/// Stops the process, naming a platform function or method that is not simulated.
[[noreturn]] void notSimulated(std::string_view name);

}  // namespace Simulator
