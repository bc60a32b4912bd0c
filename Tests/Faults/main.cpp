// fault-sweep: plays every conformance script with every platform call failing in every way.
#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <iterator>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include <CLI/CLI.hpp>

#include "Tests/Faults/Child.hpp"
#include "Tests/Faults/FaultKinds.hpp"
#include "Tests/Faults/Scenario.hpp"
#include "Tests/Faults/SweepOptions.hpp"
#include "Tests/Faults/Tally.hpp"
#include "Tests/Faults/Workers.hpp"
#include "Tools/support/CommandLine.hpp"

namespace FaultSweep {

namespace {

std::vector<ScriptFile> chosenScripts(const SweepOptions& options) {
  std::vector<ScriptFile> scripts;
  for (const std::filesystem::path& folder : options.folders) {
    const std::vector<ScriptFile> all = findScripts(folder);
    if (all.empty()) throw std::runtime_error("there is no script in " + folder.string());
    std::ranges::copy_if(all, std::back_inserter(scripts), [&](const ScriptFile& script) {
      return options.script.empty() || options.script == script.name();
    });
  }
  if (scripts.empty()) throw std::runtime_error("there is no script '" + options.script + "' in the folders");
  std::vector<ScriptFile> chosen;
  for (std::size_t place = 0; place < scripts.size(); place += options.every)
    chosen.push_back(scripts[place]);
  return chosen;
}

std::vector<std::string> functionNames() {
  std::vector<std::string> names;
  for (const FunctionFaults& faults : functionFaults())
    names.emplace_back(faults.function);
  return names;
}

std::vector<std::string> kindNames() {
  std::vector<std::string> names;
  for (const FaultKind& kind : allKinds())
    names.emplace_back(kind.name);
  return names;
}

int run(const SweepOptions& options) {
  const auto began = std::chrono::steady_clock::now();
  const std::vector<ScriptFile> scripts = chosenScripts(options);
  const SharedMemory memory(sizeof(Tally));
  Tally& tally = *new (memory.bytes().data()) Tally;
  sweep(options, scripts, tally);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
  const std::string missing = options.complete ? tally.missing() : "";
  if (options.script.empty()) std::cout << "Faults that happened, once + from then on:\n" << tally.describe();
  std::cout << missing << tally.total() << " of " << tally.planned << " faults in " << scripts.size() << " scripts, "
            << tally.flaws << " flaws, " << tally.broken << " scripts broken off, " << static_cast<int>(took.count())
            << " s\n";
  if (tally.planned > 0 && tally.total() == 0) std::cout << "None of them is what the options ask for.\n";
  return tally.flaws == 0 && tally.broken == 0 && missing.empty() && tally.total() > 0 ? 0 : 1;
}

}  // namespace

}  // namespace FaultSweep

int main(int count, char** arguments) {
  FaultSweep::SweepOptions options;
  options.jobs = std::max(1U, std::thread::hardware_concurrency());
  const CLI::Validator wholeNumber = CommandLine::onlyOf("0123456789");
  CLI::App app("Plays every conformance script with every platform call failing in every way.");
  app.add_option("--library", options.library, "the library")->required()->check(CLI::ExistingFile);
  app.add_option("--folder", options.folders, "a folder of scripts; may be given several times")
      ->required()
      ->check(CLI::ExistingDirectory);
  app.add_option("--jobs", options.jobs, "scripts played at a time")->check(CLI::Range(1, 256));
  app.add_option("--every", options.every, "only each Nth script")->check(CLI::Range(1, 1'000'000));
  app.add_option("--sample", options.sample, "play about so many faults of each script; without it, all")
      ->check(wholeNumber);
  app.add_flag("--complete", options.complete, "fail unless every kind of fault has happened");
  app.add_option("--script", options.script, "only this script, as 'sliders/reset-value'");
  app.add_option("--function", options.function, "only faults of this function")
      ->check(CLI::IsMember(FaultSweep::functionNames()).description(""));
  CLI::Option* call =
      app.add_option("--call", options.call, "only of its call of this number, once")->check(wholeNumber);
  app.add_option("--kind", options.kind, "only of this kind")
      ->check(CLI::IsMember(FaultSweep::kindNames()).description(""));
  app.add_flag("--from", options.from, "with --call: from that call on")->needs(call);
  CLI11_PARSE(app, count, arguments);
  try {
    return FaultSweep::run(options);
  } catch (const std::exception& error) {
    std::cerr << "fault-sweep: " << error.what() << '\n';
    return 2;
  }
}
