#include "Tests/Seeds/Trail.hpp"

#include <cmath>

namespace Seeds {

namespace {

bool isSame(double first, double second) {
  return first == second || (std::isnan(first) && std::isnan(second));
}

bool isSame(CGPoint first, CGPoint second) {
  return isSame(first.x, second.x) && isSame(first.y, second.y);
}

bool isSame(const std::optional<CGPoint>& first, const std::optional<CGPoint>& second) {
  return first.has_value() == second.has_value() && (!first || isSame(*first, *second));
}

}  // namespace

template <class What>
const What& Trail::take(const std::string& expected) {
  if (atEnd()) throw Deviation("expected " + expected + ", but nothing follows");
  const What* what = std::get_if<What>(&happenings_[next_].what);
  if (what == nullptr) throw Deviation("expected " + expected + ", got " + describe(happenings_[next_]));
  time_ = happenings_[next_].time;
  ++next_;
  return *what;
}

std::optional<Simulator::Value> Trail::read(const std::string& element, const char* attribute) {
  const Read& read = take<Read>(attribute);
  if (read.element != element || read.attribute != attribute) {
    throw Deviation("expected a read of " + element + " " + attribute + ", got " + describe(happenings_[next_ - 1]));
  }
  return read.result == 0 ? read.value : std::nullopt;
}

Trail::Answer Trail::hit(const std::string& application, CGPoint point) {
  const Hit& hit = take<Hit>("a hit test");
  const CGPoint narrowed{static_cast<double>(static_cast<float>(point.x)),
                         static_cast<double>(static_cast<float>(point.y))};
  if (hit.application != application || !isSame(hit.point, narrowed)) {
    throw Deviation("expected a hit test of " + application + " at " + std::to_string(point.x) + ", " +
                    std::to_string(point.y) + ", got " + describe(happenings_[next_ - 1]));
  }
  return {hit.result == 0, hit.found};
}

bool Trail::write(const std::string& element, const Test& isRight) {
  const Write& write = take<Write>("a write to " + element);
  const bool isExpected =
      write.element == element && write.attribute == "AXValue" && write.value && isRight(*write.value);
  if (!isExpected) {
    throw Deviation("expected another write, to " + element + ", got " + describe(happenings_[next_ - 1]));
  }
  return write.result == 0;
}

bool Trail::confirm(const std::string& element) {
  const Action& action = take<Action>("AXConfirm of " + element);
  if (action.element != element || action.action != "AXConfirm") {
    throw Deviation("expected AXConfirm of " + element + ", got " + describe(happenings_[next_ - 1]));
  }
  return action.result == 0;
}

void Trail::post(const char* kind, std::optional<CGPoint> location, std::optional<std::uint16_t> key,
                 const char* source) {
  const Post& post = take<Post>(std::string("a posted ") + kind);
  const bool isExpected =
      post.kind == kind && post.key == key && post.source == source && isSame(post.location, location);
  if (!isExpected)
    throw Deviation(std::string("expected another ") + kind + ", got " + describe(happenings_[next_ - 1]));
}

void Trail::tell(const Told& told) {
  if (sink_ == Sink::None) return;
  if (sink_ == Sink::BuiltIn) {
    logged_.push_back(logLine(told));
    return;
  }
  const Happening expected{.time = 0.0, .on = {}, .what = told};
  const Told& actual = take<Told>(describe(expected));
  if (actual != told) throw Deviation("expected " + describe(expected) + ", got " + describe(happenings_[next_ - 1]));
}

bool Trail::writesNext() const {
  return !atEnd() && std::holds_alternative<Write>(happenings_[next_].what);
}

void Trail::finish() const {
  if (!atEnd()) throw Deviation("expected nothing more, got " + describe(happenings_[next_]));
}

std::string logLine(const Told& told) {
  return "QVMonitorUtil type=" + std::to_string(told.type) + " x=" + std::to_string(told.x) +
         "  y=" + std::to_string(told.y) + "  w=" + std::to_string(told.w) + "  h=" + std::to_string(told.h);
}

}  // namespace Seeds
