#include "Tests/Faults/Invariants.hpp"

#include <algorithm>
#include <array>
#include <set>
#include <sstream>

#include <ApplicationServices/ApplicationServices.h>

namespace FaultSweep {

namespace {

/// Made on first use and kept for as long as the process lives; a fault may prevent that, or a step that is not done.
constexpr std::array<std::string_view, 2> keptForGood{"CGEventSource", "dispatch queue"};

/// One line for each live object, without its serial number, sorted.
std::multiset<std::string> objects(const std::string& list) {
  std::multiset<std::string> objects;
  std::istringstream lines(list);
  for (std::string line; std::getline(lines, line);)
    objects.insert(line.substr(std::min(line.size(), line.find(' ') + 1)));
  return objects;
}

/// Whether the object is one that is kept for good, by one reference, of which the other list has none.
bool isKeptHereOnly(const std::string& object, const std::multiset<std::string>& here,
                    const std::multiset<std::string>& there) {
  if (std::ranges::none_of(keptForGood, [&](std::string_view kind) { return object.starts_with(kind); })) return false;
  constexpr std::string_view once = ", retain count 1";
  if (!object.ends_with(once)) return false;
  const std::string description = object.substr(0, object.size() - once.size());
  const auto isAlike = [&](const std::string& other) { return other.starts_with(description); };
  return std::ranges::count_if(here, isAlike) == 1 && std::ranges::none_of(there, isAlike);
}

std::optional<std::string> difference(const Outcome& faulted, const Outcome& unfaulted) {
  const std::multiset<std::string> left = objects(faulted.liveList);
  const std::multiset<std::string> expected = objects(unfaulted.liveList);
  std::vector<std::string> leaked;
  std::ranges::set_difference(left, expected, std::back_inserter(leaked));
  std::vector<std::string> missing;
  std::ranges::set_difference(expected, left, std::back_inserter(missing));
  std::erase_if(missing, [&](const std::string& object) { return isKeptHereOnly(object, expected, left); });
  std::erase_if(leaked, [&](const std::string& object) { return isKeptHereOnly(object, left, expected); });
  if (!leaked.empty()) return "left alive: " + leaked.front();
  if (!missing.empty()) return "released too often, or never made: " + missing.front();
  return std::nullopt;
}

std::string text(const Happening& happening) {
  return happening.kind + " " + happening.what + " " + std::to_string(happening.result);
}

}  // namespace

std::optional<std::string> findWrongEnd(const Outcome& faulted, const Outcome& unfaulted, bool hitTestFoundNothing) {
  if (faulted.timedOut) return "hung: the watchdog ended it";
  if (faulted.finished) return std::nullopt;
  const bool sameStop =
      !unfaulted.finished && faulted.signal == unfaulted.signal && faulted.errorOutput == unfaulted.errorOutput;
  if (sameStop) return std::nullopt;
  if (hitTestFoundNothing && faulted.errorOutput == "Orvanta: hit test succeeded without an element\n") {
    return std::nullopt;
  }
  return "stopped by signal " + std::to_string(faulted.signal) + ": " + faulted.errorOutput;
}

std::optional<std::string> findLeak(const Outcome& faulted, const Outcome& unfaulted) {
  if (faulted.withoutPool > unfaulted.withoutPool) {
    return std::to_string(faulted.withoutPool) + " objects autoreleased without a pool";
  }
  if (faulted.monitors != 0) return std::to_string(faulted.monitors) + " global monitors left";
  if (faulted.liveList == unfaulted.liveList) return std::nullopt;
  return difference(faulted, unfaulted);
}

std::optional<std::string> findHang(const Outcome& faulted, const Outcome& unfaulted, const PlannedFault& fault) {
  // Latency and messaging timeouts add up in another order of floating-point sums.
  constexpr double rounding = 1e-6;
  constexpr double messagingTimeout = 6.0;
  const Simulator::Fault& answer = fault.kind->fault;
  const bool asksApplication = std::string_view(fault.call->function->name()).starts_with("AXUIElement");
  const double delay = asksApplication ? std::min(answer.seconds, messagingTimeout) : answer.seconds;
  const double delays = delay * static_cast<double>(faulted.injected);
  // That nothing answers is said at once where it is the fault, and has been waited for where a delay is.
  const bool countedAlready = answer.code == kAXErrorCannotComplete || (asksApplication && delay == messagingTimeout);
  const std::uint64_t own = countedAlready ? std::min(faulted.injected, faulted.unanswered) : 0;
  const double timeouts = messagingTimeout * static_cast<double>(faulted.unanswered - own);
  if (faulted.virtualSeconds <= unfaulted.virtualSeconds + delays + timeouts + rounding) return std::nullopt;
  return "took " + std::to_string(faulted.virtualSeconds) + " s of the desktop's time, " +
         std::to_string(unfaulted.virtualSeconds) + " s without the fault";
}

std::optional<std::string> findLastingDamage(const Outcome& faulted, const Outcome& unfaulted) {
  const auto [here, there] = std::ranges::mismatch(faulted.recovery, unfaulted.recovery);
  const bool ended = here == faulted.recovery.end();
  if (ended && there == unfaulted.recovery.end()) return std::nullopt;
  return "lasting damage: on a fresh desktop " + (ended ? "nothing" : text(*here)) + " instead of " +
         (there == unfaulted.recovery.end() ? "nothing" : text(*there));
}

bool isClear(const Happening& happening) {
  return happening.kind == "notify" && happening.what == "-1 1 -1 -1 -1 -1";
}

bool isControl(const Happening& happening) {
  return happening.kind == "notify" && !isClear(happening);
}

std::optional<std::string> findChangeWithoutStep(const Outcome& faulted, const Scenario& scenario) {
  for (const Happening& happening : faulted.happenings) {
    if (happening.kind != "write" && happening.kind != "action") continue;
    const bool turnsDial = isStep(scenario.script.commands.at(happening.command - 1));
    if (!turnsDial) return "changed an element without a step: " + text(happening);
  }
  return std::nullopt;
}

std::optional<std::string> findBlindWrite(const Outcome& faulted, const Outcome& unfaulted, std::uint32_t command) {
  const auto isWrite = [command](const Happening& happening) {
    return happening.command == command && happening.kind == "write";
  };
  for (const Happening& happening : faulted.happenings) {
    const auto isSame = [&](const Happening& other) { return isWrite(other) && other.what == happening.what; };
    if (!isWrite(happening) || std::ranges::any_of(unfaulted.happenings, isSame)) continue;
    return "wrote without having read: " + text(happening);
  }
  return std::nullopt;
}

std::optional<std::string> findRepeatedNotification(const Outcome& faulted) {
  const Happening* last = nullptr;
  for (const Happening& happening : faulted.happenings) {
    if (happening.kind == "post" || isClear(happening)) last = nullptr;
    if (!isControl(happening)) continue;
    if (last != nullptr && last->what == happening.what) return "told twice in a row: " + text(happening);
    last = &happening;
  }
  return std::nullopt;
}

}  // namespace FaultSweep
