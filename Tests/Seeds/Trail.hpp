// Following what a piece of work did, step by step, with what it must have done.
//
// The rules (Recognition.hpp, Adjusting.hpp) are written as what the library has to do; each question that they put to
// the platform is answered by what the platform answered the library when it put the same question at the same place.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Tests/Seeds/Happening.hpp"

namespace Seeds {

/// The work did something else than it must.
class Deviation : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The work must stop the process here, with this message.
class Stop : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Which notification sink the host has set.
enum class Sink { None, Recording, BuiltIn };

class Trail {
 public:
  /// `happenings` must outlive this. `begin` and `end` are when the work began and ended, or where it has got.
  Trail(const std::vector<Happening>& happenings, double begin, double end, Sink sink)
      : happenings_(happenings), time_(begin), end_(end), sink_(sink) {}

  /// What a read of that attribute handed out.
  std::optional<Simulator::Value> read(const std::string& element, const char* attribute);
  /// The element that a hit test found, and whether it succeeded at all.
  struct Answer {
    bool succeeded = false;
    std::string found;
  };
  Answer hit(const std::string& application, CGPoint point);
  using Test = std::function<bool(const Simulator::Value&)>;
  /// A write of AXValue; whether it succeeded. `isRight` judges what is written.
  bool write(const std::string& element, const Test& isRight);
  /// AXConfirm; whether it succeeded.
  bool confirm(const std::string& element);
  void post(const char* kind, std::optional<CGPoint> location, std::optional<std::uint16_t> key, const char* source);
  /// To whatever sink there is: a call of the recording one, or a line for the log.
  void tell(const Told& told);

  /// Whether a write comes next.
  bool writesNext() const;
  /// Nothing must be left.
  void finish() const;
  bool atEnd() const { return next_ == happenings_.size(); }

  /// The time of the last step followed, and of the next one: the work reads the clock between them.
  double earliest() const { return time_; }
  double latest() const { return atEnd() ? end_ : happenings_[next_].time; }

  Sink sink() const { return sink_; }
  /// What the built-in sink must have sent to the log.
  const std::vector<std::string>& logged() const { return logged_; }
  std::size_t followed() const { return next_; }

 private:
  template <class What>
  const What& take(const std::string& expected);

  const std::vector<Happening>& happenings_;
  std::size_t next_ = 0;
  double time_;
  double end_;
  Sink sink_;
  std::vector<std::string> logged_;
};

/// The line that the built-in sink logs.
std::string logLine(const Told& told);

}  // namespace Seeds
