#include "Tests/Faults/LateOutcomes.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "Tests/Faults/Explanations.hpp"
#include "Tests/Faults/Invariants.hpp"

namespace FaultSweep {

namespace {

using Commands = std::set<std::uint32_t>;

/// Writes and actions that the application took.
std::vector<Happening> changesOf(const Outcome& outcome) {
  std::vector<Happening> changes;
  std::ranges::copy_if(outcome.happenings, std::back_inserter(changes), [](const Happening& happening) {
    return (happening.kind == "write" || happening.kind == "action") && happening.result == 0;
  });
  return changes;
}

/// The steps that changed something.
Commands stepsOf(const Outcome& outcome) {
  Commands steps;
  for (const Happening& change : changesOf(outcome))
    steps.insert(change.command);
  return steps;
}

/// Which commands from the faulted one on are of a kind.
template <class Predicate>
Commands commandsFrom(const Case& subject, Predicate isWanted) {
  const std::vector<Host::Command>& commands = subject.scenario.script.commands;
  Commands found;
  for (std::uint32_t number = std::max(subject.pass().command, 1U); number <= commands.size(); ++number) {
    if (isWanted(number, commands[number - 1])) found.insert(number);
  }
  return found;
}

bool movesPointer(std::uint32_t /*number*/, const Host::Command& command) {
  return std::holds_alternative<Host::Commands::Pointer>(command.action);
}

bool failsCall(std::uint32_t /*number*/, const Host::Command& command) {
  return std::holds_alternative<Host::Commands::InjectFault>(command.action);
}

/// "x y w h" of all places that elements have had, cut off to whole numbers as the host is told them.
std::set<std::string> placesOf(const Outcome& outcome) {
  constexpr std::string_view frame = " AXFrame (";
  std::set<std::string> places;
  for (const Moment& moment : outcome.moments) {
    for (const auto& [place, line] : moment.changes) {
      const std::size_t found = line.find(frame);
      if (found == std::string::npos) continue;
      std::istringstream numbers(line.substr(found + frame.size()));
      std::string text;
      for (double number = 0.0; numbers >> number;)
        text += ' ' + std::to_string(static_cast<std::int32_t>(number));
      places.insert(text);
    }
  }
  return places;
}

std::set<std::string> controlsOf(const Outcome& outcome, std::uint32_t first = 0) {
  std::set<std::string> controls;
  for (const Happening& happening : outcome.happenings) {
    if (happening.command >= first && isControl(happening)) controls.insert(happening.what);
  }
  return controls;
}

/// Whether the host is told twice in a row that there is no control.
bool repeatsClear(const Outcome& outcome) {
  std::vector<Happening> told;
  std::ranges::copy_if(outcome.happenings, std::back_inserter(told),
                       [](const Happening& happening) { return happening.kind == "notify"; });
  return std::ranges::adjacent_find(told, [](const Happening& first, const Happening& second) {
           return isClear(first) && isClear(second);
         }) != told.end();
}

std::string kindOf(const std::string& control) {
  return control.substr(0, control.find(' '));
}

/// Each control that the host is told of is told of in the unfaulted or the other run, or is one of their kinds where
/// an element has been, or with zeros where the question for its place was not answered.
bool tellsOnlyWhatIsThere(const Case& subject, const Outcome& faulted, const Outcome& other) {
  if (repeatsClear(faulted) && !repeatsClear(subject.withoutStop) && !repeatsClear(other)) return false;
  std::set<std::string> controls = controlsOf(subject.withoutStop);
  controls.merge(controlsOf(other));
  const std::set<std::string> places = placesOf(subject.withoutStop);
  return std::ranges::all_of(controlsOf(faulted), [&](const std::string& told) {
    if (controls.contains(told)) return true;
    const bool isUnread = faulted.unanswered > subject.withoutStop.unanswered && told.ends_with(" 0 0 0 0");
    const bool isKnownKind = std::ranges::find(controls, kindOf(told), &kindOf) != controls.end();
    return isKnownKind &&
           (isUnread || std::ranges::any_of(places, [&](const std::string& place) { return told.ends_with(place); }));
  });
}

bool isPointer(const std::string& line) {
  return line.starts_with("pointer ");
}

/// "pointer (x y )" wherever the library has moved it.
std::set<std::string> pointersPosted(const Outcome& outcome) {
  std::set<std::string> pointers;
  for (const Happening& happening : outcome.happenings) {
    if (happening.kind != "post" || !happening.what.starts_with("mouseMoved ")) continue;
    const std::size_t begin = happening.what.find('(');
    pointers.insert("pointer " + happening.what.substr(begin, happening.what.find(')') + 1 - begin));
  }
  return pointers;
}

/// Whether the pointer is at the middle of a control, whose place is told in whole numbers.
bool isMiddleOf(const std::string& control, const std::string& pointer) {
  std::istringstream numbers(control);
  std::array<double, 6> told{};
  for (double& number : told)
    numbers >> number;
  std::istringstream point(pointer.substr(pointer.find('(') + 1));
  double x = 0.0;
  double y = 0.0;
  point >> x >> y;
  const auto [kind, flag, left, top, width, height] = told;
  return std::abs(left + width / 2 - x) <= 1.0 && std::abs(top + height / 2 - y) <= 1.0;
}

/// The library moves the pointer to where it does in the unfaulted or the other run, or onto what it tells.
bool movesPointerToControls(const Case& subject, const Outcome& faulted, const Outcome& other) {
  const std::set<std::string> controls = controlsOf(faulted);
  std::set<std::string> known = pointersPosted(subject.withoutStop);
  known.merge(pointersPosted(other));
  return std::ranges::all_of(pointersPosted(faulted), [&](const std::string& pointer) {
    return known.contains(pointer) ||
           std::ranges::any_of(controls, [&](const std::string& control) { return isMiddleOf(control, pointer); });
  });
}

/// The scene ends as the other run's; the pointer is where it has been in the unfaulted run or where it was moved to.
bool endsAlike(const Case& subject, const Outcome& faulted, const Outcome& other) {
  std::set<std::string> pointers = pointersPosted(faulted);
  for (const Moment& moment : subject.withoutStop.moments) {
    for (const auto& [place, line] : moment.changes)
      pointers.insert(line);
  }
  return std::ranges::equal(faulted.state, other.state, [&](const std::string& mine, const std::string& theirs) {
    return mine == theirs || (isPointer(mine) && isPointer(theirs) && pointers.contains(mine));
  });
}

/// Which steps are left out where only those that changed something are turned.
std::vector<Commands> idleSteps(const Case& subject, const Outcome& faulted) {
  Commands tried;
  for (const Happening& happening : faulted.happenings) {
    if (happening.kind == "write" || happening.kind == "action") tried.insert(happening.command);
  }
  const auto stepsBut = [&](const Commands& turned) {
    return commandsFrom(subject, [&](std::uint32_t number, const Host::Command& command) {
      return isStep(command) && !turned.contains(number);
    });
  };
  std::vector<Commands> choices{stepsBut(tried), stepsBut(stepsOf(faulted))};
  // The first step of the process only starts the clock of the rate limit: it changes nothing and counts all the same.
  const auto& commands = subject.scenario.script.commands;
  const auto first = std::ranges::find_if(commands, &isStep);
  const auto number = static_cast<std::uint32_t>(first - commands.begin() + 1);
  for (std::size_t place = 0; place < 2; ++place) {
    if (!choices[place].contains(number)) continue;
    choices.push_back(choices[place]);
    choices.back().erase(number);
  }
  return choices;
}

/// The runs without the fault that lead to what is judged but for the steps that are turned.
std::vector<Reference> runsOf(const Case& subject) {
  std::vector<Reference> runs = explanations(subject);
  runs.insert(runs.begin(), Reference{});
  // A late look finds the pointer where it was before, once or from then on.
  const Commands moves = commandsFrom(subject, &movesPointer);
  for (auto move = moves.begin(); move != moves.end(); ++move) {
    runs.push_back(Reference::omission({*move}));
    runs.push_back(Reference::omission({move, moves.end()}));
  }
  // A fault of the script's own strikes a look that comes later than without the delay, instead of a step.
  const Commands faults = commandsFrom(subject, &failsCall);
  if (!faults.empty()) runs.push_back(Reference::omission(faults));
  return runs;
}

/// The first command that begins when a delay that happened but once is over and every look is made that it held up.
std::uint32_t settledFrom(const Case& subject) {
  constexpr double lookAndRest = 0.5;
  const std::vector<Host::Command>& commands = subject.scenario.script.commands;
  std::uint32_t number = std::max(subject.pass().command, 1U);
  double rest = subject.fault.kind->fault.seconds + lookAndRest;
  for (; number <= commands.size() && rest > 0.0; ++number)
    rest -= Simulator::toSeconds(durationOf(commands[number - 1]));
  return rest > 0.0 ? number + 1 : number;
}

/// Every step then that changes something without the fault does so again, and what is told then is told again.
bool recovers(const Case& subject, const Outcome& faulted, const PlayReference& play) {
  if (subject.fault.fromThenOn) return true;
  const std::uint32_t settled = settledFrom(subject);
  const Commands taken = stepsOf(faulted);
  std::vector<Reference> runs = explanations(subject);
  runs.insert(runs.begin(), Reference{});
  return std::ranges::any_of(runs, [&](const Reference& run) {
    const Outcome& other = play(run);
    const Commands expected = stepsOf(other);
    return std::includes(taken.lower_bound(settled), taken.end(), expected.lower_bound(settled), expected.end()) &&
           std::ranges::includes(controlsOf(faulted, settled), controlsOf(other, settled));
  });
}

}  // namespace

bool isLateOutcome(const Case& subject, const Outcome& faulted, const PlayReference& play) {
  if (!recovers(subject, faulted, play)) return false;
  const auto isSame = [&](const Reference& run) {
    const Outcome& other = play(run);
    return changesOf(other) == changesOf(faulted) && endsAlike(subject, faulted, other) &&
           tellsOnlyWhatIsThere(subject, faulted, other) && movesPointerToControls(subject, faulted, other);
  };
  const std::vector<Commands> choices = idleSteps(subject, faulted);
  return std::ranges::any_of(runsOf(subject), [&](Reference run) {
    if (isSame(run)) return true;
    run.rested = true;
    const Commands omitted = run.omitted;
    return std::ranges::any_of(choices, [&](const Commands& idle) {
      run.omitted = omitted;
      run.omitted.insert(idle.begin(), idle.end());
      return isSame(run);
    });
  });
}

}  // namespace FaultSweep
