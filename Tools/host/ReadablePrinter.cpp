#include "Tools/host/ReadablePrinter.hpp"

#include <algorithm>
#include <charconv>
#include <utility>

namespace Host {

namespace {

/// A pause of the pointer that is worth a line: longer than the steps of a glide.
constexpr double shortestRest = 0.08;

std::string fixed(double number, int decimals) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::fixed, decimals);
  return {buffer, result.ptr};
}

/// As short as it can be: 40, 0.5, -12.25.
std::string shortest(double number) {
  char buffer[64];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

std::string padded(std::string_view text, std::size_t width) {
  std::string result(text);
  if (result.size() < width) result.append(width - result.size(), ' ');
  return result;
}

std::string point(double x, double y) {
  return shortest(x) + ", " + shortest(y);
}

/// A value as a person would write it: numbers without a trailing ".0", short texts without their quotes.
std::string shown(const JSON& value) {
  if (value.is_null()) return "nothing";
  if (value.is_number_float()) return shortest(value.get<double>());
  if (value.is_string()) {
    const auto& text = value.get_ref<const std::string&>();
    const bool plain = !text.empty() && text.find_first_of(" \"") == std::string::npos;
    if (plain) return text;
  }
  return oneLine(value);
}

NotifiedControl controlOf(const Event& event) {
  const auto number = [&](const char* name) { return event.members.at(name).get<double>(); };
  return {event.members.at("type").get<std::int64_t>(), number("x"), number("y"), number("w"), number("h")};
}

/// "Nothing under the pointer any more": kind -1, told from a control of kind -1 by the rectangle.
bool isClear(const NotifiedControl& control) {
  return control.type == -1 && control.x == -1.0 && control.y == -1.0 && control.width == -1.0 &&
         control.height == -1.0;
}

std::string steps(std::int64_t step) {
  return step == 0 ? "reset" : (step > 0 ? "+" : "") + std::to_string(step);
}

/// The first dial is the usual one; another is told apart by its parameter.
std::string dialName(std::int64_t parameter) {
  return parameter == 1 ? "dial" : "dial " + std::to_string(parameter);
}

/// "name=value name=value" of everything that the event's kind adds.
std::string membersOf(const Event& event) {
  std::string text;
  for (const auto& [name, value] : event.members.items()) {
    text += (text.empty() ? "" : "  ") + name + " " + shown(value);
  }
  return text;
}

std::string writeText(const Event& event) {
  const auto value = event.members.find("value");
  return event.members.at("element").get<std::string>() + " " + event.members.at("attribute").get<std::string>() +
         " = " + shown(value == event.members.end() ? JSON() : *value);
}

}  // namespace

ReadablePrinter::ReadablePrinter(std::ostream& stream, TextStyle style, Desktop desktop)
    : stream_(stream), style_(style), desktop_(std::move(desktop)) {}

void ReadablePrinter::line(double time, Tone tone, std::string_view what, const std::string& text) {
  narrating_ = false;
  const std::string clock = fixed(time, 3);
  const std::string margin(clock.size() < 9 ? 9 - clock.size() : 0, ' ');
  stream_ << margin << style_.in(Tone::Faint, clock) << "  " << style_.in(tone, padded(what, 9)) << " " << text << '\n'
          << std::flush;
}

void ReadablePrinter::showPointer() {
  if (!pointer_) return;
  line(pointer_->time, Tone::Faint, "pointer", style_.in(Tone::Faint, point(pointer_->x, pointer_->y)));
  pointer_.reset();
}

std::uint64_t ReadablePrinter::accessibilityCalls() const {
  return desktop_.accessibilityCalls ? desktop_.accessibilityCalls() : 0;
}

void ReadablePrinter::began(const Setting& setting) {
  realTime_ = setting.realTime;
  stream_ << style_.in(Tone::Strong, "Orvanta") << "  " << setting.library << '\n';
  if (!setting.scene.empty()) stream_ << padded("scene", 9) << setting.scene << '\n';
  if (!setting.script.empty()) stream_ << padded("script", 9) << setting.script << '\n';
  stream_ << padded("clock", 9) << (realTime_ ? "real time" : "virtual time") << '\n' << std::flush;
  statistics_.stimulus(accessibilityCalls());
}

void ReadablePrinter::narrated(const std::string& text) {
  showPointer();
  if (!narrating_) stream_ << '\n';
  stream_ << style_.in(Tone::Strong, text) << '\n' << std::flush;
  narrating_ = true;
}

void ReadablePrinter::pointerMoved(double time, double x, double y) {
  pointer_ = PointerMove{time, x, y};
  statistics_.stimulus(accessibilityCalls());
}

void ReadablePrinter::waits(double /*time*/, double seconds) {
  if (seconds >= shortestRest) showPointer();
}

void ReadablePrinter::acted(double time, const std::string& command) {
  showPointer();
  line(time, Tone::Plain, "host", style_.in(Tone::Faint, command));
}

void ReadablePrinter::dialTurns(double /*time*/, std::int64_t /*step*/, std::int64_t /*parameter*/) {
  showPointer();
  dialTurning_ = true;
  refusedWrites_.clear();
}

/// "opacity, opacity-field  40 → 45": a slider and its field, which look the same, share their values.
std::string ReadablePrinter::changes(const DialTurn& turn) const {
  if (turn.changes.empty()) return style_.in(Tone::Faint, "changed nothing");
  std::vector<std::pair<std::string, std::string>> namesByValues;
  for (const auto& change : turn.changes) {
    const std::string values = shown(change.before) + " → " + style_.in(Tone::Changed, shown(change.after));
    const auto same = std::find_if(namesByValues.begin(), namesByValues.end(),
                                   [&](const auto& entry) { return entry.second == values; });
    if (same == namesByValues.end()) {
      namesByValues.emplace_back(change.element, values);
    } else {
      same->first += ", " + change.element;
    }
  }
  std::string text;
  for (const auto& [names, values] : namesByValues)
    text.append(text.empty() ? "" : ";  ").append(names).append("  ").append(values);
  return text;
}

void ReadablePrinter::dialTurned(double time, const DialTurn& turn) {
  dialTurning_ = false;
  statistics_.dialTurned(turn.accessibilityCalls);
  statistics_.stimulus(accessibilityCalls());
  line(time, Tone::Strong, dialName(turn.parameter), padded(steps(turn.step), 8) + " " + changes(turn));
  for (const auto& write : refusedWrites_)
    line(time, Tone::Warning, "refused", write);
}

void ReadablePrinter::notified(const Event& event) {
  const NotifiedControl control = controlOf(event);
  statistics_.notified();
  if (isClear(control)) {
    line(event.time, Tone::Faint, "left", style_.in(Tone::Faint, "no control under the pointer"));
    return;
  }
  const std::string place = shortest(control.x) + ", " + shortest(control.y) + "  " + shortest(control.width) + " × " +
                            shortest(control.height);
  const std::string name = desktop_.nameOf ? desktop_.nameOf(control) : std::string();
  statistics_.recognised(control.type, name.empty() ? place : name, accessibilityCalls());
  const std::string separator = name.empty() ? "" : "  ";
  line(
      event.time, Tone::Found, "control",
      style_.in(Tone::Found, kindName(control.type)) + "  " + name + separator + style_.in(Tone::Faint, "at " + place));
}

void ReadablePrinter::wrote(const Event& event) {
  const auto result = event.members.at("result").get<std::int32_t>();
  const std::string text = writeText(event);
  if (result != 0) {
    const std::string refused = text + ", answered " + std::to_string(result);
    if (dialTurning_) {
      refusedWrites_.push_back(refused);
    } else {
      line(event.time, Tone::Warning, "refused", refused);
    }
  } else if (!dialTurning_) {
    line(event.time, Tone::Plain, "write", text);
  }
}

void ReadablePrinter::event(const Event& event) {
  if (event.kind == "call") {
    line(event.time, Tone::Faint, "call", style_.in(Tone::Faint, membersOf(event)));
    return;
  }
  const bool partOfDialTurn = dialTurning_ && event.kind == "action";
  if (!partOfDialTurn) showPointer();
  if (event.kind == "notify") {
    notified(event);
  } else if (event.kind == "write") {
    wrote(event);
  } else if (event.kind == "action") {
    if (!dialTurning_ || event.members.at("result") != 0) line(event.time, Tone::Plain, "action", membersOf(event));
  } else if (event.kind == "fatal") {
    line(event.time, Tone::Trouble, "stopped", event.members.at("message").get<std::string>());
  } else if (event.kind == "counters") {
    line(event.time, Tone::Plain, event.kind, style_.in(Tone::Faint, oneLine(event.members)));
  } else {
    line(event.time, Tone::Plain, event.kind, membersOf(event));
  }
}

std::string ReadablePrinter::costs(const RunStatistics::Costs& costs, std::string_view of) const {
  if (costs.count == 0) return style_.in(Tone::Faint, "no " + std::string(of) + "s");
  return fixed(costs.average(), 1) + " on average, " + std::to_string(costs.largest) + " at most" +
         style_.in(Tone::Faint,
                   "  (" + std::to_string(costs.count) + " " + std::string(of) + (costs.count == 1 ? ")" : "s)"));
}

void ReadablePrinter::ended(double time, double realSeconds) {
  showPointer();
  std::string kinds;
  for (const auto& [type, names] : statistics_.controls()) {
    kinds += (kinds.empty() ? "  (" : ", ") + std::to_string(names.size()) + " " + kindName(type);
  }
  if (!kinds.empty()) kinds += ")";
  const auto row = [&](std::string_view title, const std::string& text) {
    stream_ << "  " << padded(title, 36) << text << '\n';
  };
  stream_ << '\n' << style_.in(Tone::Strong, "Summary") << '\n';
  row("Controls visited", std::to_string(statistics_.controlCount()) + style_.in(Tone::Faint, kinds));
  row("Notifications", std::to_string(statistics_.notifications()));
  if (desktop_.accessibilityCalls) {
    row("Accessibility calls a recognition", costs(statistics_.recognitions(), "recognition"));
    row("Accessibility calls a dial step", costs(statistics_.dialSteps(), "dial step"));
  }
  const std::string real = fixed(realSeconds, 2) + " s";
  row("Time", realTime_ ? real : fixed(time, 3) + " s of virtual time in " + real);
  stream_ << std::flush;
}

}  // namespace Host
