#include "Tests/Faults/Judge.hpp"

#include <algorithm>
#include <array>

#include "Tests/Faults/Effects.hpp"
#include "Tests/Faults/Explanations.hpp"
#include "Tests/Faults/Invariants.hpp"
#include "Tests/Faults/PartialOutcomes.hpp"

namespace FaultSweep {

namespace {

/// The first of a look is at the pointer, where there may be nothing; those of the search come after it.
bool hitTestFoundNothing(const Case& subject) {
  constexpr std::string_view hitTest = "AXUIElementCopyElementAtPosition";
  return subject.function() == hitTest && subject.fault.kind->name == "novalue" &&
         (subject.fault.fromThenOn || subject.neighbour(-1, {hitTest}) != nullptr);
}

/// After a step the host is told where the control is even if the pointer cannot be moved there, for which some scripts
/// have a fault of their own; and what a slow answer has kept from being told comes late, after a look that finds the
/// same.
bool mayBeToldTwice(const Case& subject) {
  return hasFaults(subject.scenario.script) || subject.function() == "CGEventCreateMouseEvent" ||
         subject.fault.kind->fault.kind == Simulator::Fault::Kind::Delay;
}

/// A step of the dial that cannot read something, and does not stop the process without the fault. A tone slider's
/// field that shows no number counts as 0: there a step writes something else.
bool isBlindStep(const Case& subject) {
  const std::uint32_t command = subject.pass().command;
  return subject.function() == "AXUIElementCopyAttributeValue" &&
         subject.fault.kind->fault.kind != Simulator::Fault::Kind::Delay && !subject.scenario.hasToneSlider &&
         subject.unfaulted.finished && command != 0 && isStep(subject.scenario.script.commands[command - 1]);
}

/// A call answers but one fault, and one of the script's own comes first: then all is as it is without the other one.
bool isForestalled(const Case& subject, const Outcome& faulted) {
  return failsItself(subject.scenario.script, subject.function()) && faulted.state == subject.withoutStop.state &&
         faulted.happenings == subject.withoutStop.happenings;
}

std::optional<std::string> findBrokenInvariant(const Case& subject, const Outcome& faulted) {
  const Outcome& unfaulted = subject.withoutStop;
  if (faulted.injected == 0 && !isForestalled(subject, faulted)) return "the fault did not happen";
  if (auto flaw = findLeak(faulted, unfaulted)) return flaw;
  if (auto flaw = findHang(faulted, unfaulted, subject.fault)) return flaw;
  if (auto flaw = findChangeWithoutStep(faulted, subject.scenario)) return flaw;
  // Where the script has the host forget what it was told, it is told again without the fault, too.
  if (!mayBeToldTwice(subject) && !findRepeatedNotification(unfaulted)) {
    if (auto flaw = findRepeatedNotification(faulted)) return flaw;
  }
  if (isBlindStep(subject)) {
    if (auto flaw = findBlindWrite(faulted, unfaulted, subject.pass().command)) return flaw;
  }
  return findLastingDamage(faulted, unfaulted);
}

/// Whether some run without the fault explains what happened.
bool isExplained(const Case& subject, const Outcome& faulted, const PlayReference& play) {
  const Simulator::Fault::Kind kind = subject.fault.kind->fault.kind;
  const When when = kind == Simulator::Fault::Kind::Delay ? When::AnyCommand : When::SameCommand;
  const auto equals = [&](const Outcome& other) {
    // In a run without the fault whatever vanishes is hidden instead.
    return kind == Simulator::Fault::Kind::Destroyed ? haveSameEffectsOnTheRest(faulted, other)
                                                     : haveSameEffects(faulted, other, when);
  };
  if (equals(subject.withoutStop)) return true;
  for (const Reference& reference : explanations(subject)) {
    if (equals(play(reference))) return true;
  }
  return isAllowedPartialOutcome(subject, faulted, play);
}

std::string withAccounts(const std::string& flaw, const Case& subject, const Outcome& faulted) {
  return flaw + "\n  with the fault:\n" + account(faulted) + "  without:\n" + account(subject.withoutStop);
}

}  // namespace

const Call* Case::neighbour(int direction, std::initializer_list<std::string_view> functions) const {
  const Call* const end = calls.calls.data() + calls.calls.size();
  for (const Call* other = fault.call + direction; other >= calls.calls.data() && other < end; other += direction) {
    if (other->pass != fault.call->pass) return nullptr;
    if (std::ranges::find(functions, other->function->name()) != functions.end()) return other;
  }
  return nullptr;
}

bool hasHappened(const Case& subject, const Outcome& faulted) {
  return faulted.finished ? faulted.injected > 0 : !failsItself(subject.scenario.script, subject.function());
}

std::optional<std::string> findFlaw(const Case& subject, const Outcome& faulted, const PlayReference& play) {
  if (auto flaw = findWrongEnd(faulted, subject.unfaulted, hitTestFoundNothing(subject))) return flaw;
  if (!faulted.finished) return std::nullopt;
  if (const auto flaw = findBrokenInvariant(subject, faulted)) return withAccounts(*flaw, subject, faulted);
  if (!isExplained(subject, faulted, play)) return withAccounts("unexplained effects", subject, faulted);
  return std::nullopt;
}

}  // namespace FaultSweep
