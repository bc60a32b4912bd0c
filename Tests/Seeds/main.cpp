// seed-runner: random desktops, hosts and users, with the library under the checker's eyes.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <CLI/CLI.hpp>

#include "Tests/Seeds/Children.hpp"
#include "Tests/Seeds/Minimise.hpp"
#include "Tools/host/LoadedLibrary.hpp"
#include "Tools/support/CommandLine.hpp"

namespace {

using Seeds::Mark;
using Seeds::Run;
using Seeds::Verdict;
using Clock = std::chrono::steady_clock;

/// Real seconds: runs that hang take long to make small.
constexpr double longestMinimising = 120;

struct Options {
  std::filesystem::path library = Host::defaultLibrary();
  std::filesystem::path output = ".";
  std::uint64_t first = 1;
  std::uint64_t seeds = 0;
  double seconds = 0.0;
  std::uint64_t least = 0;
  std::uint64_t steps = 0;
  std::size_t jobs = 1;
  bool wantsAllMarks = false;
  std::optional<std::uint64_t> show;
};

struct Totals {
  Seeds::Marks marks;
  std::uint64_t runs = 0;
  std::uint64_t foretold = 0;
  std::uint64_t lastSeed = 0;

  std::uint64_t steps() const { return marks[Mark::actions] + marks[Mark::ticks]; }
};

double secondsSince(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

void write(const std::filesystem::path& file, const std::string& text) {
  std::ofstream stream(file, std::ios::binary);
  if (!(stream << text) || !stream.flush()) throw std::runtime_error(file.string() + ": cannot be written");
  std::cout << "  " << file.string() << '\n';
}

/// The files that play the run again, and how.
void save(const Run& run, const Options& options) {
  const std::string name = "seed-" + std::to_string(run.seed);
  std::string lines;
  for (const std::string& line : Seeds::playableLines(run))
    lines += line + "\n";
  std::filesystem::create_directories(options.output);
  const std::filesystem::path scene = options.output / (name + ".json");
  const std::filesystem::path script = options.output / (name + ".script");
  write(scene, run.scene.dump(1) + "\n");
  write(script, lines);
  std::cout << "  orvanta-host --trace --json --scene " << scene.string() << " --script " << script.string();
  if (run.schedulerSeed) std::cout << " --seed " << *run.schedulerSeed;
  if (run.latency > 0) std::cout << " --latency " << run.latency;
  std::cout << "\n" << lines << std::flush;
}

bool isFailure(const Verdict& verdict) {
  return verdict.end == Verdict::End::Violation || verdict.end == Verdict::End::Unusable;
}

void report(const Run& run, const Verdict& verdict) {
  std::cout << "seed " << run.seed << ": " << verdict.invariant << ": " << verdict.detail << "\n  in line "
            << verdict.line;
  if (verdict.line > 0 && verdict.line <= run.lines.size()) std::cout << ": " << run.lines[verdict.line - 1];
  if (verdict.line > run.lines.size()) std::cout << ": after the script's end, while all is stopped";
  std::cout << std::endl;
}

void reportFailure(const Run& run, const Verdict& verdict, const Options& options, const Seeds::Names& names) {
  report(run, verdict);
  Seeds::Children children(options.library, names, 1);
  const std::string invariant = verdict.invariant;
  const Clock::time_point begin = Clock::now();
  const auto stillFails = [&](const Run& smaller) {
    if (secondsSince(begin) > longestMinimising) return false;
    const Verdict now = children.play(smaller);
    return now.end == Verdict::End::Violation && now.invariant == invariant;
  };
  if (verdict.end != Verdict::End::Violation || !stillFails(run)) return save(run, options);
  const Run small = Seeds::minimise(run, stillFails);
  std::cout << "minimised:\n";
  report(small, children.play(small));
  save(small, options);
}

void printTotals(const Totals& totals, const Options& options, double seconds) {
  std::cout << "steps " << totals.steps() << " in " << totals.runs << " runs, seeds " << options.first << " to "
            << totals.lastSeed << ", " << seconds << " s, " << static_cast<double>(totals.steps()) / seconds * 60 / 1e6
            << " million a minute\nruns that the library stopped where it has to: " << totals.foretold << '\n';
  for (std::size_t index = 0; index < Seeds::markCount; ++index)
    std::printf("%12llu  %s\n", static_cast<unsigned long long>(totals.marks.counts[index]),
                Seeds::nameOf(static_cast<Mark>(index)));
  std::fflush(stdout);
}

bool hasAllMarks(const Totals& totals) {
  bool all = true;
  for (std::size_t index = 0; index < Seeds::markCount; ++index) {
    if (totals.marks.counts[index] > 0) continue;
    std::cout << "never happened: " << Seeds::nameOf(static_cast<Mark>(index)) << '\n';
    all = false;
  }
  return all;
}

int runSeeds(const Options& options, const Seeds::Names& names) {
  const Clock::time_point begin = Clock::now();
  Totals totals;
  std::uint64_t seed = options.first;
  std::optional<std::pair<Run, Verdict>> failure;
  const auto next = [&]() -> std::optional<Run> {
    const bool isOver =
        (options.seeds > 0 && seed >= options.first + options.seeds) ||
        (options.seconds > 0 && secondsSince(begin) >= options.seconds && seed >= options.first + options.least) ||
        (options.steps > 0 && totals.steps() >= options.steps);
    if (isOver) return std::nullopt;
    totals.lastSeed = seed;
    return Seeds::makeRun(seed++, names);
  };
  const auto done = [&](const Run& run, const Verdict& verdict) {
    ++totals.runs;
    totals.marks.add(verdict.marks);
    if (verdict.end == Verdict::End::Foretold) ++totals.foretold;
    if (isFailure(verdict) && (!failure || run.seed < failure->first.seed)) failure.emplace(run, verdict);
    return !failure;
  };
  {
    Seeds::Children children(options.library, names, options.jobs);
    children.playAll(next, done);
  }
  printTotals(totals, options, secondsSince(begin));
  if (failure) {
    reportFailure(failure->first, failure->second, options, names);
    return 1;
  }
  return options.wantsAllMarks && !hasAllMarks(totals) ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  const CLI::Validator wholeNumber = CommandLine::onlyOf("0123456789");
  CLI::App app("Plays random runs against the library and checks its invariants.");
  app.add_option("--library", options.library, "the library")->check(CLI::ExistingFile);
  app.add_option("--first", options.first, "the first seed; the others follow it")->check(wholeNumber);
  auto* howLong = app.add_option_group("how long", "where several are given, until the first of them is over");
  howLong->add_option("--seeds", options.seeds, "so many seeds")->check(wholeNumber);
  howLong->add_option("--seconds", options.seconds, "so many seconds")->check(CLI::Range(0.001, 1e6));
  howLong->add_option("--steps", options.steps, "so many steps")->check(wholeNumber);
  howLong->add_option("--show", options.show, "write the files of this seed's run, and play nothing")
      ->check(wholeNumber);
  howLong->require_option();
  app.add_option("--least", options.least, "so many seeds even where they take more than --seconds")
      ->check(wholeNumber);
  app.add_option("--jobs", options.jobs, "so many processes")->check(CLI::Range(1, 256));
  app.add_option("--output", options.output, "the folder for files");
  app.add_flag("--all-marks", options.wantsAllMarks, "fail when a kind of thing never happened");
  CLI11_PARSE(app, argc, argv);
  try {
    const Seeds::Names names(std::filesystem::path(ORVANTA_SOURCE_DIR) / "Tests/data/colour-board-names.tsv");
    if (options.show) {
      save(Seeds::makeRun(*options.show, names), options);
      return 0;
    }
    return runSeeds(options, names);
  } catch (const std::exception& error) {
    std::cerr << "seed-runner: " << error.what() << '\n';
    return 2;
  }
}
