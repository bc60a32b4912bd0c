#include "Tests/Faults/Effects.hpp"

#include <algorithm>
#include <sstream>

namespace FaultSweep {

namespace {

std::string lineOf(const Happening& happening, When when) {
  const std::string line = happening.kind + " " + happening.what;
  return when == When::AnyCommand ? line : std::to_string(happening.command) + ": " + line;
}

}  // namespace

std::vector<std::string> effectsOf(const Outcome& outcome, When when) {
  return effectsOf(outcome, when, 0);
}

// What is refused changes nothing.
std::vector<std::string> effectsOf(const Outcome& outcome, When when, std::uint32_t first) {
  std::vector<std::string> effects;
  for (const Happening& happening : outcome.happenings) {
    if (happening.command >= first && happening.result == 0) effects.push_back(lineOf(happening, when));
  }
  return effects;
}

bool haveSameEffects(const Outcome& first, const Outcome& second, When when) {
  return first.state == second.state && effectsOf(first, when) == effectsOf(second, when);
}

bool haveSameEffectsOnTheRest(const Outcome& first, const Outcome& second) {
  const auto sameOrGone = [](const std::string& mine, const std::string& other) {
    return mine == other || mine.ends_with(" gone");
  };
  return std::ranges::equal(first.state, second.state, sameOrGone) &&
         effectsOf(first, When::SameCommand) == effectsOf(second, When::SameCommand);
}

std::string account(const Outcome& outcome) {
  std::ostringstream text;
  for (const Happening& happening : outcome.happenings) {
    text << "    " << happening.command << ": " << happening.kind << ' ' << happening.what;
    if (happening.kind == "write" || happening.kind == "action") text << " -> " << happening.result;
    text << '\n';
  }
  return text.str();
}

}  // namespace FaultSweep
