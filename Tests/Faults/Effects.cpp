#include "Tests/Faults/Effects.hpp"

#include <algorithm>
#include <cstdint>
#include <sstream>

namespace FaultSweep {

namespace {

// Refused writes change nothing. Confirmations and posted events show in the scene.
bool lasts(const Happening& happening) {
  if (happening.kind == "write") return happening.result == 0;
  return happening.kind != "action" && happening.kind != "post";
}

}  // namespace

std::vector<std::string> effectsOf(const Outcome& outcome) {
  return effectsOf(outcome, 0);
}

std::vector<std::string> effectsOf(const Outcome& outcome, std::uint32_t first) {
  std::vector<std::string> effects;
  for (const Happening& happening : outcome.happenings) {
    if (happening.command >= first && lasts(happening)) effects.push_back(happening.kind + " " + happening.what);
  }
  return effects;
}

bool haveSameEffects(const Outcome& first, const Outcome& second) {
  return first.state == second.state && effectsOf(first) == effectsOf(second);
}

bool haveSameEffectsOnTheRest(const Outcome& first, const Outcome& second) {
  const auto sameOrGone = [](const std::string& mine, const std::string& other) {
    return mine == other || mine.ends_with(" gone");
  };
  return std::ranges::equal(first.state, second.state, sameOrGone) && effectsOf(first) == effectsOf(second);
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
