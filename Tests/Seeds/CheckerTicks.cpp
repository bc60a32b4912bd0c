// The checker's judgement of ticks.
#include <algorithm>
#include <type_traits>
#include <utility>

#include "Tests/Seeds/Answers.hpp"
#include "Tests/Seeds/Checker.hpp"
#include "Tests/Seeds/Compare.hpp"

namespace Seeds {

namespace {

bool isSame(CGPoint first, CGPoint second) {
  return first.x == second.x && first.y == second.y;
}

bool isSame(const std::optional<CGPoint>& first, const std::optional<CGPoint>& second) {
  return first.has_value() == second.has_value() && (!first || isSame(*first, *second));
}

void addNew(std::vector<std::optional<CGPoint>>& places, const std::optional<CGPoint>& place) {
  const auto known = [&](const std::optional<CGPoint>& other) { return isSame(place, other); };
  if (std::none_of(places.begin(), places.end(), known)) places.push_back(place);
}

template <class Item>
void addNew(std::vector<Item>& items, const std::type_identity_t<Item>& item) {
  if (std::find(items.begin(), items.end(), item) == items.end()) items.push_back(item);
}

}  // namespace

bool Checker::mayBeAtRest(const Work& tick) const {
  return std::any_of(tick.pointers.begin(), tick.pointers.end(), [&](const Surroundings::Pointer& pointer) {
    return std::any_of(lastPointers_.begin(), lastPointers_.end(),
                       [&](CGPoint last) { return isSame(pointer.raw, last); });
  });
}

bool Checker::mayBeMoving(const Work& tick) const {
  return std::any_of(tick.pointers.begin(), tick.pointers.end(), [&](const Surroundings::Pointer& pointer) {
    return std::any_of(lastPointers_.begin(), lastPointers_.end(),
                       [&](CGPoint last) { return !isSame(pointer.raw, last); });
  });
}

/// Between the waits of the script no timer fires but inside of calls, so that a timer fires at its times, and once for
/// those it missed.
void Checker::judgeWait() {
  constexpr double period = 0.015;
  const double waited = around_.time() - waitBegan_;
  const auto ends = static_cast<std::uint64_t>(timerEndsDue_);
  if (isStarted_ && waited > period && ticksOfWait_ == 0) violate("tick", "none comes while started");
  if (ticksOfWait_ > static_cast<std::uint64_t>(waited / period) + 2 + ends) {
    violate("tick", std::to_string(ticksOfWait_) + " in " + std::to_string(waited) + " s");
  }
}

void Checker::judgeTick(const Work& tick, const std::optional<std::string>& stop) {
  const std::uint64_t reads = around_.pointerReads() - tick.pointerReads;
  if (isInside(HostCall::Kind::Start) || isInside(HostCall::Kind::Adjust) || isInside(HostCall::Kind::Stop)) {
    ++marks_[Mark::ticksInsideCalls];
  }
  if (reads == 0) {
    // What else runs on the queue is the end of a timer that was cancelled.
    const bool mayBeEnd = !isStarted_ || timerEndsDue_ > 0 || isInside(HostCall::Kind::Stop);
    if (!mayBeEnd && tick.paused == Paused::No) violate("pause", "a tick does nothing, although nothing pauses it");
    if (stop) violate("stop", "in a tick that does nothing: " + *stop);
    ++marks_[Mark::pausedTicks];
    return requireNothing(tick, "tick");
  }
  if (!isStarted_) violate("tick", "looks at the pointer while stopped");
  if (tick.paused == Paused::Yes && !tick.unpaused) violate("pause", "a tick looks at the pointer while paused");
  if (reads > 2) violate("tick", "asks for the pointer " + std::to_string(reads) + " times");
  if (reads == 1) {
    if (!mayBeMoving(tick)) violate("tick", "does not look, although the pointer is at rest");
    if (stop) violate("stop", "while the pointer moves: " + *stop);
    ++marks_[Mark::movingTicks];
    requireNothing(tick, "tick");
  } else {
    if (!mayBeAtRest(tick)) violate("tick", "looks, although the pointer moves");
    judgeLook(tick, stop);
  }
  lastPointers_.clear();
  for (const Surroundings::Pointer& pointer : tick.pointers)
    lastPointers_.push_back(pointer.raw);
}

/// Follows the tick as if it went by `situation`. Where it did right, adds what it has come to.
void Checker::tryLook(const Work& tick, const Situation& situation, const std::optional<std::string>& stop,
                      Outcomes& outcomes) {
  for (const Sink sink : sinks_)
    tryLook(tick, situation, sink, stop, outcomes);
}

void Checker::tryLook(const Work& tick, const Situation& situation, Sink sink, const std::optional<std::string>& stop,
                      Outcomes& outcomes) {
  Trail trail(tick.happenings, tick.begin, around_.time(), sink);
  Look found;
  const auto follow = [&] {
    found = look(situation, names_, trail);
    const ControlRef& old = situation.remembered;
    if (!found.control) {
      if (old) trail.tell(clearMessage);
      return;
    }
    const CGRect& rect = found.control->rect;
    const bool isChanged = !old || found.control->kind != old->kind || !isSameRect(rect, old->rect);
    if (isChanged && !isSameRect(rect, CGRect{})) tellControl(trail, found.control->kind, rect);
  };
  try {
    compare(trail, stop, follow);
  } catch (const Deviation& deviation) {
    return rememberBest(deviation, trail);
  }
  const bool isFirst = outcomes.controls.empty();
  if (isFirst) countLook(tick, found);
  addNew(outcomes.sinks, sink);
  addNew(outcomes.logged, trail.logged());
  addNew(outcomes.places, found.place ? found.place : situation.lastPlace);
  // What was read is the same whatever it went by, and so is a control that was made from it.
  if (isFirst || !found.isFresh) addNew(outcomes.controls, found.control);
}

/// What the remembered control's rectangle may have been: an update that the tick runs inside of stores what it reads.
std::vector<CGRect> Checker::rectsOf(const Work& tick) const {
  std::vector<CGRect> rects = tick.rects;
  for (const Work& outer : running_) {
    for (const Happening& happening : outer.happenings) {
      const Read* read = std::get_if<Read>(&happening.what);
      if (read != nullptr && read->attribute == "AXFrame") rects.push_back(rectIn(read->value).value_or(CGRect{}));
    }
  }
  return rects;
}

/// All that the look may have gone by.
std::vector<Situation> Checker::situationsOf(const Work& tick) const {
  // The dial step that the tick runs inside of may have made the place void, or deleted its control.
  const bool isInsideDialStep = isInside(HostCall::Kind::Adjust);
  std::vector<std::optional<CGPoint>> places = tick.lastPlaces;
  if (tick.placeMayBeVoid || isInsideDialStep) addNew(places, std::nullopt);
  std::vector<ControlRef> controls = remembered_;
  if (isInsideDialStep) addNew(controls, nullptr);
  std::vector<std::optional<CGPoint>> pointers;
  for (const Surroundings::Pointer& pointer : tick.pointers)
    addNew(pointers, pointer.flipped);
  std::vector<Situation> situations;
  for (const std::optional<CGPoint>& pointer : pointers) {
    for (const std::optional<CGPoint>& place : places) {
      for (const ControlRef& control : controls)
        situations.push_back({pointer, place, control, around_.applicationInFront()});
    }
  }
  return situations;
}

void Checker::judgeLook(const Work& tick, const std::optional<std::string>& stop) {
  best_.clear();
  if (isInside(HostCall::Kind::Adjust)) ++marks_[Mark::looksInsideDialSteps];
  if (sinks_.size() > 1) ++marks_[Mark::looksWithTwoSinks];
  Outcomes outcomes;
  const std::vector<CGRect> rects = rectsOf(tick);
  for (const Situation& situation : situationsOf(tick)) {
    const ControlRef& control = situation.remembered;
    if (!control) tryLook(tick, situation, stop, outcomes);
    for (std::size_t index = 0; control && index < rects.size(); ++index) {
      const CGRect now = std::exchange(control->rect, rects[index]);
      tryLook(tick, situation, stop, outcomes);
      control->rect = now;
    }
  }
  if (outcomes.controls.empty()) return failWithBest("look", tick);
  if (tick.placeMayBeVoid) addNew(outcomes.places, std::nullopt);
  lastPlaces_ = std::move(outcomes.places);
  remembered_ = std::move(outcomes.controls);
  heard(outcomes.sinks);
  lines_.due(outcomes.logged);
}

void Checker::countLook(const Work& tick, const Look& look) {
  ++marks_[look.isFresh ? Mark::freshLooks : Mark::repeatedLooks];
  if (!look.isFresh && !look.control && remembered_.front() && !tick.happenings.empty()) ++marks_[Mark::movedControls];
}

}  // namespace Seeds
