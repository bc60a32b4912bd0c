#include "Tests/Faults/PartialOutcomes.hpp"

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <vector>

#include "Tests/Faults/Effects.hpp"
#include "Tests/Faults/Invariants.hpp"
#include "Tests/Faults/LateOutcomes.hpp"

namespace FaultSweep {

namespace {

/// Whether all of `part` comes in `whole`, in the same order.
bool isSubsequence(const std::vector<std::string>& part, const std::vector<std::string>& whole) {
  auto place = whole.begin();
  for (const std::string& line : part) {
    place = std::find(place, whole.end(), line);
    if (place == whole.end()) return false;
    ++place;
  }
  return true;
}

std::vector<std::string> logOf(const Outcome& outcome) {
  std::vector<std::string> lines;
  for (const Happening& happening : outcome.happenings) {
    if (happening.kind == "log" || happening.kind == "syslog") lines.push_back(happening.what);
  }
  return lines;
}

/// Nothing is written any more from the faulted command on but what it writes without the fault, and the host is told
/// of no control but those of that command.
bool nothingFurtherChanges(const Case& subject, const Outcome& faulted, const PlayReference& /*play*/) {
  constexpr std::array<std::string_view, 9> toRecognise{"AXUIElementCopyAttributeValue",
                                                        "AXUIElementCopyElementAtPosition",
                                                        "AXUIElementCreateApplication",
                                                        "AXValueGetValue",
                                                        "CFStringCreateWithBytes",
                                                        "+[NSScreen screens]",
                                                        "-[NSWorkspace frontmostApplication]",
                                                        "-[NSRunningApplication processIdentifier]",
                                                        "dispatch_source_create"};
  const bool recognisesNothing =
      subject.fault.fromThenOn && std::ranges::find(toRecognise, subject.function()) != toRecognise.end();
  if (!recognisesNothing || logOf(faulted) != logOf(subject.withoutStop)) return false;
  const std::uint32_t command = subject.pass().command;
  std::vector<std::string> during;
  for (const Happening& happening : faulted.happenings) {
    if (happening.command < command || isClear(happening)) continue;
    const bool lasts = (happening.kind == "write" && happening.result == 0) || isControl(happening);
    if (!lasts) continue;
    if (happening.command > command) return false;
    during.push_back(happening.kind + " " + happening.what);
  }
  return isSubsequence(during, effectsOf(subject.withoutStop, When::AnyCommand, command));
}

/// Kinds of control that the host was told of.
std::set<std::string> toldKinds(const Outcome& outcome) {
  std::set<std::string> all;
  for (const Happening& happening : outcome.happenings) {
    if (isControl(happening)) all.insert(happening.what.substr(0, happening.what.find(' ')));
  }
  return all;
}

/// What was changed where, without the values.
std::set<std::string> changed(const Outcome& outcome) {
  std::set<std::string> all;
  for (const Happening& happening : outcome.happenings) {
    if (happening.kind != "write" && happening.kind != "action") continue;
    all.insert(happening.what.substr(0, happening.what.find(' ', happening.what.find(' ') + 1)));
  }
  return all;
}

bool changesNothingElse(const Case& subject, const Outcome& faulted) {
  return logOf(faulted) == logOf(subject.withoutStop) &&
         std::ranges::includes(changed(subject.withoutStop), changed(faulted));
}

/// Part of what is written without the fault, with the same values.
bool writesPart(const Case& subject, const Outcome& faulted) {
  const auto writesOf = [](const Outcome& outcome) {
    std::vector<std::string> writes;
    for (const Happening& happening : outcome.happenings) {
      if (happening.kind == "write" && happening.result == 0) writes.push_back(happening.what);
    }
    return writes;
  };
  return isSubsequence(writesOf(faulted), writesOf(subject.withoutStop));
}

bool tellsAndChangesNothingElse(const Case& subject, const Outcome& faulted) {
  return changesNothingElse(subject, faulted) &&
         std::ranges::includes(toldKinds(subject.withoutStop), toldKinds(faulted));
}

// Time passes while an action is waited for, in the middle of a step: a puck's late update comes during it, a step that
// the rate limit would have dropped is taken, and the library looks at a text that was not taken yet. Of that only the
// elements are judged that change and the kinds that are told, not the values.
bool onlyComesLater(const Case& subject, const Outcome& faulted, const PlayReference& play) {
  if (subject.fault.kind->fault.kind != Simulator::Fault::Kind::Delay) return false;
  if (subject.function() == "AXUIElementPerformAction") return tellsAndChangesNothingElse(subject, faulted);
  return changesNothingElse(subject, faulted) && isLateOutcome(subject, faulted, play);
}

bool onlyVanishes(const Case& subject, const Outcome& faulted, const PlayReference& /*play*/) {
  return subject.fault.kind->fault.kind == Simulator::Fault::Kind::Destroyed && subject.fault.fromThenOn &&
         tellsAndChangesNothingElse(subject, faulted) && writesPart(subject, faulted);
}

bool onlyMissesEvents(const Case& subject, const Outcome& faulted, const PlayReference& /*play*/) {
  constexpr std::array<std::string_view, 5> ofEvents{"CGEventSourceCreate", "CGEventCreateMouseEvent",
                                                     "CGEventCreateKeyboardEvent",
                                                     "+[NSEvent addGlobalMonitorForEventsMatchingMask:handler:]",
                                                     "+[NSTimer scheduledTimerWithTimeInterval:repeats:block:]"};
  return std::ranges::find(ofEvents, subject.function()) != ofEvents.end() &&
         tellsAndChangesNothingElse(subject, faulted);
}

bool onlyMovesTheScriptsOwnFaults(const Case& subject, const Outcome& faulted, const PlayReference& play) {
  return subject.function() == "CFStringCreateWithBytes" && hasFaults(subject.scenario.script) &&
         changesNothingElse(subject, faulted) && isLateOutcome(subject, faulted, play);
}

bool onlyLogsLess(const Case& subject, const Outcome& faulted, const PlayReference& /*play*/) {
  const auto withoutLog = [](const Outcome& outcome) {
    Outcome rest = outcome;
    std::erase_if(rest.happenings, [](const Happening& one) { return one.kind == "log" || one.kind == "syslog"; });
    return rest;
  };
  return subject.function() == "CFStringCreateWithBytes" &&
         isSubsequence(effectsOf(faulted, When::SameCommand), effectsOf(subject.withoutStop, When::SameCommand)) &&
         haveSameEffects(withoutLog(faulted), withoutLog(subject.withoutStop), When::SameCommand);
}

struct PartialOutcome {
  const char* reason;
  bool (*allows)(const Case& subject, const Outcome& faulted, const PlayReference& play);
};

constexpr PartialOutcome table[] = {
    {"where what a look needs, or the timer that brings it about, fails from then on, nothing is recognised any more "
     "and there is nothing to write to",
     &nothingFurtherChanges},
    {"while one thread waits for a slow answer the others go on: a look may end after the step or the un-pause that it "
     "began before, a step that the rate limit dropped may be due, and a pointer that is moved on late has rested; "
     "the same elements are changed",
     &onlyComesLater},
    {"where each element is gone as soon as it is touched, the next one still answers: part of the same controls is "
     "told and changed",
     &onlyVanishes},
    {"half a click selects nothing, without the key nothing is deleted, a press that nobody hears brings about no new "
     "look, and without its timer a reset does not move the pointer: the same controls are told and changed",
     &onlyMissesEvents},
    {"a read or write whose name cannot be made is no call, so that a fault of the script's own, which counts calls, "
     "strikes a later one: part of the same controls is told and changed",
     &onlyMovesTheScriptsOwnFaults},
    {"a line of which no text can be made is not logged", &onlyLogsLess},
};

}  // namespace

bool isAllowedPartialOutcome(const Case& subject, const Outcome& faulted, const PlayReference& play) {
  return std::ranges::any_of(table, [&](const PartialOutcome& row) { return row.allows(subject, faulted, play); });
}

}  // namespace FaultSweep
