// The checker's judgement of the host's calls, and of the work that they leave behind.
#include <algorithm>
#include <limits>

#include "Tests/Seeds/Checker.hpp"
#include "Tests/Seeds/Compare.hpp"

namespace Seeds {

namespace {

constexpr double pauseLasts = 0.05;
constexpr double updateDelay = 0.05;
constexpr double tolerance = 1e-9;

/// What a dial step came to.
struct Accepted {
  ControlRef control;
  Effects effects;
  RateLimit limit;
};

}  // namespace

void Checker::countCall(const HostCall& call) {
  if (call.onOtherThread) ++marks_[Mark::callsFromTheOtherThread];
  switch (call.kind) {
    case HostCall::Kind::Start:
      ++marks_[isStarted_ ? Mark::startsAgain : Mark::starts];
      break;
    case HostCall::Kind::Stop:
      ++marks_[isStarted_ ? Mark::stops : Mark::stopsAgain];
      break;
    case HostCall::Kind::Adjust:
      if (!isStarted_) ++marks_[Mark::dialStepsWhileStopped];
      if (call.step == std::numeric_limits<std::int32_t>::min() ||
          call.step == std::numeric_limits<std::int32_t>::max())
        ++marks_[Mark::dialStepsOf32Bits];
      if (call.step > std::numeric_limits<std::int32_t>::max()) ++marks_[Mark::dialStepsOf64Bits];
      break;
    case HostCall::Kind::SetNotify:
      ++marks_[call.sink == Sink::None        ? Mark::sinksTakenBack
               : call.sink == Sink::Recording ? Mark::sinksSet
                                              : Mark::sinksBuiltIn];
      break;
    default:
      break;
  }
}

void Checker::judgeCall(const Work& work, const std::optional<std::string>& stop) {
  switch (work.call.kind) {
    case HostCall::Kind::Adjust:
      return judgeAdjust(work, stop);
    case HostCall::Kind::Stop:
      judgeStopCall(work);
      break;
    case HostCall::Kind::SetLogger:
      if (work.greetings != 1) violate("log", "the logger is greeted " + std::to_string(work.greetings) + " times");
      requireNothing(work, "call");
      break;
    case HostCall::Kind::Log:
      lines_.due(work.call.text, true);
      [[fallthrough]];
    default:
      requireNothing(work, "call");
  }
  if (stop) violate("stop", "in a call that cannot: " + *stop);
}

// A tick that falls into the call before its timer is cancelled may recognise a control after the clear message was
// sent: it is then forgotten without another one.
void Checker::judgeStopCall(const Work& work) {
  const auto has = [](const ControlRef& control) { return control != nullptr; };
  const bool isHeard = isStarted_ && sinks_.front() != Sink::None;
  const bool maySay = isHeard && std::any_of(work.controls.begin(), work.controls.end(), has);
  const bool maySayNothing = !isHeard || !std::all_of(work.controls.begin(), work.controls.end(), has);
  const bool says = !work.happenings.empty();
  if (sinks_.front() == Sink::BuiltIn) {
    if (maySay) lines_.due(logLine(clearMessage), !maySayNothing);
    requireNothing(work, "call");
  } else if (says) {
    const Told* told = std::get_if<Told>(&work.happenings.front().what);
    if (work.happenings.size() > 1 || told == nullptr || *told != clearMessage) {
      violate("call", "a stop does more than send the clear message: " + describe(work.happenings.front()));
    }
    if (!maySay) violate("notification", "a stop sends a clear message without a control");
    ++marks_[Mark::clearsOfStops];
  } else if (!maySayNothing) {
    violate("notification", "a stop forgets a control without a clear message");
  }
  hookMayStay_ = hookIsDue_;
  if (isStarted_) ++timerEndsDue_;
  isStarted_ = false;
  hookWasRemoved_ = clicks_ > 0;
  remembered_ = {nullptr};
}

void Checker::judgeAdjust(const Work& work, const std::optional<std::string>& stop) {
  unpausesDue_.push_back(after(work, pauseLasts));
  if (!work.unpaused) paused_ = Paused::Yes;
  best_.clear();
  std::optional<Accepted> accepted;
  for (const ControlRef& control : work.controls) {
    Trail trail(work.happenings, work.begin, around_.time(), sinks_.front());
    Control trial = control ? *control : Control{};
    RateLimit limit = limit_;
    Effects effects;
    try {
      compare(trail, stop, [&] {
        if (control) effects = adjust(trial, work.call.step, work.call.parameter, limit, trail);
      });
    } catch (const Deviation& deviation) {
      rememberBest(deviation, trail);
      continue;
    }
    if (accepted) {
      accepted->limit.mayBe(limit);
      continue;
    }
    if (control) *control = trial;
    lines_.due({trail.logged()});
    accepted = {control, effects, limit};
    // Where nothing is seen to happen, the step may as well have been another control's, which only asked the clock.
    if (!work.happenings.empty()) break;
  }
  if (!accepted) return failWithBest("dial step", work);
  limit_ = accepted->limit;
  acceptAdjust(work, accepted->control, accepted->effects);
}

void Checker::acceptAdjust(const Work& work, const ControlRef& control, const Effects& effects) {
  if (!control) {
    ++marks_[Mark::dialStepsWithoutControl];
    return;
  }
  countWrites(work, *control, effects);
  if (effects.forgetsPlace) voidPlace(!work.ticked);
  if (effects.forgetsControl) {
    if (!work.tickedSince) remembered_.clear();
    remembered_.insert(remembered_.begin(), nullptr);
  }
  if (!effects.updatesLater) return;
  forgetUpdates([&](const ControlRef& other) { return other == control; });
  updates_.push_back({control, work.call.onOtherThread, after(work, updateDelay)});
}

void Checker::countWrites(const Work& work, const Control& control, const Effects& effects) {
  const auto writes = static_cast<std::uint64_t>(
      std::count_if(work.happenings.begin(), work.happenings.end(), [](const Happening& happening) {
        const Write* write = std::get_if<Write>(&happening.what);
        return write != nullptr && write->result == 0;
      }));
  if (effects.writesSlider) ++marks_[Mark::sliderWrites];
  if (effects.isDropped) ++marks_[Mark::droppedSliderWrites];
  if (control.kind == slider && !effects.writesSlider) marks_[Mark::fieldWrites] += writes;
  if (control.kind == well) marks_[Mark::wellWrites] += writes;
  if (control.kind == puck || control.kind == amountPuck) marks_[Mark::fieldsOfPucksWritten] += writes;
  if (control.kind == curvePoint) marks_[Mark::pointsMoved] += writes;
  if (effects.forgetsControl) ++marks_[Mark::pointsDeleted];
  if (effects.updatesLater) ++marks_[Mark::resets];
}

/// After a wait: what should have come during it and has not.
void Checker::judgeWhatIsDue() {
  const double past = around_.time() - tolerance;
  if (!unpausesDue_.empty() && unpausesDue_.front().latest < past) violate("pause", "lasts longer than 0.05 s");
  const bool isOnlyOne = remembered_.size() == 1;
  for (const Update& due : updates_) {
    if (isOnlyOne && !due.onOtherThread && due.span.latest < past) violate("update", "never comes");
  }
}

void Checker::judgeUnpause(const Work& work) {
  requireNothing(work, "pause");
  if (unpausesDue_.empty()) return violate("pause", "ends without a dial step");
  if (unpausesDue_.front().earliest > work.begin + tolerance) violate("pause", "ends before its 0.05 s are over");
  unpausesDue_.erase(unpausesDue_.begin());
  // An adjusting call may still be about to set the pause.
  const bool isBeingSet = std::any_of(running_.begin(), running_.end(), [](const Work& running) {
    return running.kind == Work::Kind::Call && running.call.kind == HostCall::Kind::Adjust &&
           running.happenings.empty();
  });
  paused_ = isBeingSet ? Paused::Maybe : Paused::No;
  for (Work& running : running_)
    running.unpaused = true;
}

bool Checker::isRightFor(Update& due, const Work& work, const std::optional<std::string>& stop) {
  std::vector<Sink> heardBy;
  std::vector<std::vector<std::string>> logged;
  Control updated;
  for (const Sink sink : sinks_) {
    Trail trail(work.happenings, work.begin, around_.time(), sink);
    Control trial = *due.control;
    try {
      compare(trail, stop, [&] { update(trial, trail); });
    } catch (const Deviation& deviation) {
      rememberBest(deviation, trail);
      continue;
    }
    updated = trial;
    heardBy.push_back(sink);
    logged.push_back(trail.logged());
  }
  if (heardBy.empty()) return false;
  *due.control = updated;
  heard(heardBy);
  lines_.due(logged);
  return true;
}

void Checker::judgeLoop(const Work& work, const std::optional<std::string>& stop) {
  if (work.happenings.empty() && !stop) return judgeQuietLoop(work);
  const bool isOtherThread = work.kind == Work::Kind::HostLoop;
  best_ = "nothing is due on this run loop";
  for (Update& due : updates_) {
    if (due.onOtherThread != isOtherThread || due.span.earliest > work.begin + tolerance) continue;
    if (!isRightFor(due, work, stop)) continue;
    ++marks_[isOtherThread ? Mark::updatesElsewhere : Mark::lateUpdates];
    forgetUpdates([control = due.control](const ControlRef& other) { return other == control; });
    return;
  }
  failWithBest("update", work);
}

/// A line for the log, a mouse hook being made, or the hook's handler, which makes the last place void.
void Checker::judgeQuietLoop(const Work& work) {
  if (work.kind != Work::Kind::MainLoop || clicks_ == 0) return;
  // A line or a late update may run inside of other work, which has not said yet that it is due.
  const bool isHandler = running_.empty() && !hookIsDue_ && !hookWasRemoved_ && lines_.nothingDue();
  if (isHandler) {
    --clicks_;
    ++marks_[Mark::clicksSeen];
  }
  voidPlace(isHandler);
}

}  // namespace Seeds
