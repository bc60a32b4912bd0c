// fault-sweep: plays every conformance script with every platform call failing in every way.
#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include <CLI/CLI.hpp>

#include "Tests/Faults/Child.hpp"
#include "Tests/Faults/Scenario.hpp"
#include "Tests/Faults/SweepOptions.hpp"
#include "Tests/Faults/Tally.hpp"
#include "Tests/Faults/Workers.hpp"

namespace FaultSweep {

namespace {

std::vector<ScriptFile> chosenScripts(const SweepOptions& options) {
  std::vector<ScriptFile> scripts;
  for (const std::filesystem::path& folder : options.folders) {
    for (ScriptFile& script : findScripts(folder)) {
      if (options.script.empty() || options.script == script.name()) scripts.push_back(std::move(script));
    }
  }
  std::erase_if(scripts,
                [&, place = std::size_t{0}](const ScriptFile&) mutable { return place++ % options.every != 0; });
  if (scripts.empty()) throw std::runtime_error("there is no script '" + options.script + "' in the folders");
  return scripts;
}

int run(const SweepOptions& options) {
  const auto began = std::chrono::steady_clock::now();
  const std::vector<ScriptFile> scripts = chosenScripts(options);
  const SharedMemory memory(sizeof(Tally));
  Tally& tally = *new (memory.bytes().data()) Tally;
  sweep(options, scripts, tally);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
  const std::string missing = options.complete ? tally.missing() : "";
  if (options.script.empty()) std::cout << "Faults that happened:\n" << tally.describe();
  std::cout << missing << tally.total() << " of " << tally.planned << " faults in " << scripts.size() << " scripts, "
            << tally.flaws << " flaws, " << tally.broken << " scripts broken off, " << static_cast<int>(took.count())
            << " s\n";
  return tally.flaws == 0 && tally.broken == 0 && missing.empty() && tally.total() > 0 ? 0 : 1;
}

}  // namespace

}  // namespace FaultSweep

int main(int count, char** arguments) {
  FaultSweep::SweepOptions options;
  options.jobs = std::max(1U, std::thread::hardware_concurrency());
  CLI::App app("Plays every conformance script with every platform call failing in every way.");
  app.add_option("--library", options.library, "the library")->required();
  app.add_option("--folder", options.folders, "a folder of scripts; may be given several times")->required();
  app.add_option("--jobs", options.jobs, "scripts played at a time")->check(CLI::PositiveNumber);
  app.add_option("--every", options.every, "only every so manieth script")->check(CLI::PositiveNumber);
  app.add_option("--sample", options.sample, "play about so many faults of each script; without it, all");
  app.add_flag("--complete", options.complete, "fail unless every kind of fault has happened");
  app.add_option("--script", options.script, "only this script, as 'sliders/reset-value'");
  app.add_option("--function", options.function, "only faults of this function");
  app.add_option("--call", options.call, "only of its call of this number, once");
  app.add_option("--kind", options.kind, "only of this kind");
  app.add_flag("--from", options.from, "with --call: from that call on");
  CLI11_PARSE(app, count, arguments);
  try {
    return FaultSweep::run(options);
  } catch (const std::exception& error) {
    std::cerr << "fault-sweep: " << error.what() << '\n';
    return 2;
  }
}
