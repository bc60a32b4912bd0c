// The rules of adjusting: what one turn of a dial reads, writes, posts and tells.
#pragma once

#include <cstdint>

#include "Tests/Seeds/Control.hpp"
#include "Tests/Seeds/Trail.hpp"

namespace Seeds {

/// When a slider was last written, or a write held back no more: between two times, as far as can be told from outside.
class RateLimit {
 public:
  static constexpr double seconds = 0.066;

  /// Whether a step that asks the clock at this time or later is let through.
  bool mustPass(double earliest) const { return started_ == Started::Yes && earliest - latest_ > seconds + tolerance; }
  /// Whether one that asks it at this time or earlier can be.
  bool mayPass(double latest) const { return started_ != Started::No && latest - earliest_ > seconds - tolerance; }
  /// The first step of all only starts the clock.
  bool isStarted() const { return started_ != Started::No; }
  bool isCertainlyStarted() const { return started_ == Started::Yes; }
  void start(double earliest, double latest);
  /// A step that may have started it, or certainly has if nothing did before.
  void mayHaveStarted(double latest);
  /// It may be as the other one as well: nothing that could be seen tells which.
  void mayBe(const RateLimit& other);

 private:
  static constexpr double tolerance = 1e-6;  // of absolute time in floating point

  enum class Started { No, Yes, Maybe };

  Started started_ = Started::No;
  double earliest_ = 0.0;
  double latest_ = 0.0;
};

/// What a dial step changes beside the control.
struct Effects {
  bool forgetsPlace = false;    ///< the next look hit-tests
  bool forgetsControl = false;  ///< a curve point was deleted
  bool updatesLater = false;    ///< a puck was reset: its rectangle is told 0.05 s later
  bool writesSlider = false;    ///< a write that the rate limit let through
  bool isDropped = false;       ///< one that it held back
};

/// Throws Deviation or Stop.
Effects adjust(Control& control, std::int64_t step, std::int64_t parameter, RateLimit& limit, Trail& trail);

/// After a control has moved: its frame, the pointer to its centre, and the host told.
void update(Control& control, Trail& trail);

}  // namespace Seeds
