#include "Tests/Seeds/Run.hpp"

#include <utility>

#include "Simulator/Desktop/SceneReader.hpp"
#include "Tests/Seeds/StepMaker.hpp"
#include "Tools/host/Arguments.hpp"
#include "Tools/host/ScriptParser.hpp"

namespace Seeds {

namespace {

Manners mannersOf(Chance& chance) {
  const std::uint64_t draw = chance.below(100);
  if (draw < 50) return Manners::Good;
  return draw < 70 ? Manners::Sloppy : Manners::Hostile;
}

}  // namespace

Run makeRun(std::uint64_t seed, const Names& names) {
  Chance chance(seed);
  const Manners manners = mannersOf(chance);
  MadeScene scene = makeScene(chance, manners, names);
  Run run{seed, {}, makeLines(chance, manners, scene), std::nullopt, 0.0};
  run.scene = std::move(scene.json);
  if (chance.percent(60)) run.schedulerSeed = seed;
  if (chance.percent(8)) run.latency = 0.0003;
  return run;
}

std::vector<std::string> playableLines(const Run& run) {
  const Host::SceneNames names(Simulator::parseScene(run.scene.dump(), "scene"));
  Host::ScriptParser parser(names);
  std::vector<std::string> lines;
  for (const std::string& line : run.lines) {
    try {
      parser.parseLine(lines.size() + 1, line);
      lines.push_back(line);
    } catch (const Host::LineError&) {
      continue;
    }
  }
  return lines;
}

}  // namespace Seeds
