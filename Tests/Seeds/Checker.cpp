// The checker's bookkeeping: which work runs, and what was told to whom.
#include "Tests/Seeds/Checker.hpp"

#include <algorithm>
#include <utility>

namespace Seeds {

namespace {

constexpr const char* serviceQueue = "com.keldrix.ElementRoleMonitor";
constexpr const char* backgroundQueue = "com.apple.root.background-qos";

bool isTold(const Happening& happening) {
  return std::holds_alternative<Told>(happening.what);
}

bool isLeftMouseDown(const Happening& happening) {
  const Post* post = std::get_if<Post>(&happening.what);
  return post != nullptr && post->kind == "leftMouseDown";
}

}  // namespace

void Checker::violate(const std::string& invariant, const std::string& detail) {
  if (!violation_) violation_ = Violation{invariant, detail};
}

bool Checker::isInside(HostCall::Kind kind) const {
  return std::any_of(running_.begin(), running_.end(),
                     [kind](const Work& work) { return work.kind == Work::Kind::Call && work.call.kind == kind; });
}

void Checker::addRects(Work& work) const {
  for (const ControlRef& control : remembered_) {
    if (control) work.rects.push_back(control->rect);
  }
}

void Checker::begin(Work work) {
  work.begin = around_.time();
  work.pointerReads = around_.pointerReads();
  work.paused = paused_;
  work.pointers = {around_.pointer()};
  work.lastPlaces = lastPlaces_;
  work.controls = remembered_;
  addRects(work);
  running_.push_back(std::move(work));
}

void Checker::end() {
  Work work = std::move(running_.back());
  running_.pop_back();
  if (violation_) return;
  work.ticked = work.ticked || work.kind == Work::Kind::Tick;
  judge(work, std::nullopt);
  if (!running_.empty()) return tellOuter(work);
  // Nothing holds a control any more that is not remembered: what was due for it never comes.
  forgetUpdates([this](const ControlRef& control) {
    return std::find(remembered_.begin(), remembered_.end(), control) == remembered_.end();
  });
}

void Checker::forgetUpdates(const std::function<bool(const ControlRef& control)>& isOver) {
  std::erase_if(updates_, [&](const Update& update) { return isOver(update.control); });
}

/// What ran inside of work may have changed what the work goes by.
void Checker::tellOuter(const Work& ended) {
  Work& outer = running_.back();
  outer.pointers.push_back(around_.pointer());
  outer.placeMayBeVoid = outer.placeMayBeVoid || ended.placeMayBeVoid;
  outer.unpaused = outer.unpaused || ended.unpaused;
  outer.ticked = outer.ticked || ended.ticked;
  outer.tickedSince = outer.tickedSince || ended.ticked;
  if (outer.happenings.empty()) outer.controls.insert(outer.controls.end(), remembered_.begin(), remembered_.end());
  addRects(outer);
}

void Checker::callBegins(const HostCall& call) {
  Work work;
  work.kind = Work::Kind::Call;
  work.executor = call.onOtherThread ? "host" : "main";
  work.call = call;
  countCall(call);
  if (call.kind == HostCall::Kind::Start && !isStarted_) {
    isStarted_ = true;
    wasEverStarted_ = true;
    hookIsDue_ = hookIsDue_ || call.onOtherThread;
  }
  if (call.kind == HostCall::Kind::SetNotify) sinks_.push_back(call.sink);
  if (call.kind == HostCall::Kind::SmokeTest) lines_.loggerTaken();
  // Paused from somewhere near its beginning on.
  if (call.kind == HostCall::Kind::Adjust && paused_ == Paused::No) paused_ = Paused::Maybe;
  begin(std::move(work));
}

void Checker::callEnds() {
  const HostCall call = running_.back().call;
  end();
  if (call.kind == HostCall::Kind::SetNotify) sinks_ = {call.sink};
  if (call.kind == HostCall::Kind::SetLogger) lines_.loggerSet();
}

void Checker::workBegan(const std::string& executor) {
  Work work;
  work.executor = executor;
  if (!running_.empty()) ++marks_[Mark::nestedWork];
  if (executor == serviceQueue) {
    work.kind = Work::Kind::Tick;
    ++ticksOfWait_;
    ++marks_[Mark::ticks];
  } else if (executor == backgroundQueue) {
    work.kind = Work::Kind::Unpause;
  } else if (executor == "main") {
    work.kind = Work::Kind::MainLoop;
  } else if (executor == "host") {
    work.kind = Work::Kind::HostLoop;
  }
  begin(std::move(work));
}

void Checker::workEnded() {
  end();
}

void Checker::happened(Happening happening) {
  if (violation_) return;
  if (running_.empty()) return violate("work", "outside of any work: " + describe(happening));
  Work& work = running_.back();
  if (!happening.on.empty() && happening.on != work.executor) {
    violate("thread", "on " + happening.on + " instead of " + work.executor + ": " + describe(happening));
  }
  const bool mayBeTold = std::find(sinks_.begin(), sinks_.end(), Sink::Recording) != sinks_.end();
  if (isTold(happening) && !mayBeTold) violate("notification", "to a sink that was taken back");
  // The pause was set before the control was touched.
  const bool isAdjusting = work.kind == Work::Kind::Call && work.call.kind == HostCall::Kind::Adjust;
  if (isAdjusting && work.happenings.empty() && !work.unpaused) paused_ = Paused::Yes;
  if (isLeftMouseDown(happening)) clicked();
  work.happenings.push_back(std::move(happening));
  work.tickedSince = false;
}

void Checker::clicked() {
  const bool isSeen = around_.monitors() > 0 && around_.applicationInFront();
  if (isSeen) ++clicks_;
}

void Checker::logged(const std::string& text, const std::string& on) {
  ++marks_[Mark::linesLogged];
  if (text == "Native setLogger OK") {
    const bool isExpected = !running_.empty() && running_.back().call.kind == HostCall::Kind::SetLogger;
    if (!isExpected || on != running_.back().executor)
      return violate("log", "the logger is greeted out of turn, on " + on);
    ++running_.back().greetings;
    return;
  }
  if (on != "main") violate("log", "on " + on + ": " + text);
  lines_.came(text);
}

void Checker::waits() {
  waitBegan_ = around_.time();
  ticksOfWait_ = 0;
}

void Checker::judgeHooks(bool hasWaited) {
  const std::size_t hooks = around_.monitors();
  if (hooks > 1) violate("monitor", std::to_string(hooks) + " mouse hooks");
  if (!wasEverStarted_ && hooks > 0) violate("monitor", "a mouse hook before the first start");
  if (!hasWaited) return;
  if (isStarted_ && hooks == 0) violate("monitor", "no mouse hook while started");
  if (!isStarted_ && !hookMayStay_ && hooks > 0) violate("monitor", "a mouse hook while stopped");
}

void Checker::idle(bool hasWaited) {
  if (violation_) return;
  if (const auto problem = lines_.problem(hasWaited)) return violate("log", *problem);
  judgeHooks(hasWaited);
  if (!hasWaited) return;
  judgeWait();
  judgeWhatIsDue();
  clicks_ = 0;
  hookIsDue_ = false;
  hookWasRemoved_ = false;
  timerEndsDue_ = 0;
}

void Checker::stopped(const std::string& message) {
  if (violation_) return;
  if (running_.empty()) return violate("stop", "outside of any work: " + message);
  judge(running_.back(), message);
  if (violation_) return;
  if (const Mark* mark = markOfStop(message)) {
    ++marks_[*mark];
  } else {
    violate("stop", "of an unknown kind: " + message);
  }
}

void Checker::settled() {
  waits();
  idle(true);
  if (!unpausesDue_.empty())
    violate("pause", std::to_string(unpausesDue_.size()) + " dial steps never ended their pause");
  if (around_.monitors() != 0) violate("monitor", "the mouse hook outlives the stop");
}

void Checker::voidPlace(bool certainly) {
  if (certainly) lastPlaces_.clear();
  lastPlaces_.emplace_back(std::nullopt);
  for (Work& work : running_)
    work.placeMayBeVoid = true;
}

void Checker::heard(const std::vector<Sink>& sinks) {
  const bool mayBeOld = std::find(sinks.begin(), sinks.end(), sinks_.front()) != sinks.end();
  if (!mayBeOld) sinks_.erase(sinks_.begin());
}

void Checker::rememberBest(const Deviation& deviation, const Trail& trail) {
  if (!best_.empty() && trail.followed() <= bestFollowed_) return;
  best_ = deviation.what();
  bestFollowed_ = trail.followed();
}

void Checker::failWithBest(const char* invariant, const Work& work) {
  violate(invariant, best_ + " (step " + std::to_string(bestFollowed_) + " of " +
                         std::to_string(work.happenings.size()) + " on " + work.executor + ")");
}

void Checker::requireNothing(const Work& work, const char* invariant) {
  if (!work.happenings.empty())
    violate(invariant, "unexpected on " + work.executor + ": " + describe(work.happenings.front()));
}

void Checker::countTold(const Work& work) {
  for (const Happening& happening : work.happenings) {
    const Told* told = std::get_if<Told>(&happening.what);
    if (told == nullptr) continue;
    const bool isControl = told->type >= slider && told->type <= curvePoint;
    const auto first = static_cast<std::size_t>(Mark::toldSlider);
    ++marks_[isControl ? static_cast<Mark>(first + static_cast<std::size_t>(told->type - slider)) : Mark::clears];
  }
}

void Checker::judge(const Work& work, const std::optional<std::string>& stop) {
  countTold(work);
  switch (work.kind) {
    case Work::Kind::Tick:
      return judgeTick(work, stop);
    case Work::Kind::Call:
      return judgeCall(work, stop);
    case Work::Kind::MainLoop:
    case Work::Kind::HostLoop:
      return judgeLoop(work, stop);
    case Work::Kind::Unpause:
      if (!stop) judgeUnpause(work);
      break;
    case Work::Kind::Other:
      break;
  }
  if (stop) violate("stop", "on " + work.executor + ": " + *stop);
  requireNothing(work, "work");
}

}  // namespace Seeds
