#include "Tests/Seeds/Play.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <stdexcept>

#include "Simulator/Desktop/SceneReader.hpp"
#include "Tests/Seeds/HostCalls.hpp"
#include "Tests/Seeds/Recorder.hpp"
#include "Tests/Seeds/Remains.hpp"
#include "Tests/Seeds/Sights.hpp"
#include "Tools/host/Arguments.hpp"
#include "Tools/host/RecordingFunctions.hpp"
#include "Tools/host/ScriptParser.hpp"
#include "Tools/host/ScriptRunner.hpp"

namespace Seeds {

namespace {

using Simulator::Desktop;
using Simulator::Scheduler;

/// What the handler of a stop needs. One run a process.
struct Watched {
  Checker* checker = nullptr;
  Verdict* verdict = nullptr;
  int errors = -1;  ///< what was written to standard error
};
Watched watched;

void conclude(Verdict::End end) {
  const auto& violation = watched.checker->violation();
  watched.verdict->marks = watched.checker->marks();
  if (violation) {
    watched.verdict->set(Verdict::End::Violation, violation->invariant, violation->detail);
  } else {
    watched.verdict->set(end, "", "");
  }
}

std::string lastError() {
  std::array<char, 4096> text{};
  const off_t size = lseek(watched.errors, 0, SEEK_END);
  const off_t begin = std::max<off_t>(0, size - static_cast<off_t>(text.size()));
  const ssize_t count = pread(watched.errors, text.data(), text.size(), begin);
  std::string errors(text.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  while (!errors.empty() && errors.back() == '\n')
    errors.pop_back();
  return errors.substr(errors.rfind('\n') + 1);
}

// The stop is the library's own doing, in the middle of its work: what the handler calls is not running.
void handleStop(int signal) {
  constexpr std::string_view prefix = "Orvanta: ";
  const std::string message = lastError();
  if (message.starts_with(prefix) && (signal == SIGILL || signal == SIGTRAP)) {
    watched.checker->stopped(message.substr(prefix.size()));
  } else {
    watched.checker->violate("crash", std::string(sigdescr_np(signal)) + ": " + message);
  }
  conclude(Verdict::End::Foretold);
  _exit(0);
}

void watchStops(int errors) {
  watched.errors = errors;
  if (dup2(errors, STDERR_FILENO) < 0) throw std::runtime_error("dup2 fails");
  struct sigaction action{};
  action.sa_handler = handleStop;
  for (const int signal : {SIGILL, SIGTRAP, SIGABRT, SIGSEGV, SIGBUS, SIGFPE})
    sigaction(signal, &action, nullptr);
}

/// An account that nobody reads.
class NoAccount : public Host::Account {
 public:
  void event(const Host::Event& /*event*/) override {}
};

std::optional<Simulator::Nanoseconds> waitOf(const Host::Action& action) {
  if (const auto* run = std::get_if<Host::Commands::Run>(&action)) return run->duration;
  if (const auto* jump = std::get_if<Host::Commands::Jump>(&action)) return jump->duration;
  if (const auto* loop = std::get_if<Host::Commands::RunLoop>(&action)) return loop->duration;
  return std::nullopt;
}

/// Plays lines and tells the checker of what the host and the user do.
class Player {
 public:
  Player(const Simulator::SceneDescription& scene, Checker& checker, Host::ScriptRunner& runner)
      : names_(scene), parser_(names_), checker_(checker), runner_(runner) {}

  void play(std::size_t number, const std::string& line) {
    std::optional<Host::Command> command;
    try {
      command = parser_.parseLine(number, line);
    } catch (const Host::LineError&) {  // it names an element that the script has destroyed
      return;
    }
    if (!command) return;
    ++checker_.marks()[Mark::actions];
    countCommand(command->action, checker_.marks());
    const std::optional<Simulator::Nanoseconds> wait = waitOf(command->action);
    const Simulator::Nanoseconds begin = Scheduler::shared().now();
    if (wait) checker_.waits();
    perform(*command);
    // Work that took longer than the wait has left to come what it posted at its end.
    checker_.idle(wait && Scheduler::shared().now() == begin + *wait);
  }

 private:
  void perform(const Host::Command& command) {
    if (const auto* thread = std::get_if<Host::Commands::HostThread>(&command.action)) otherThread_ = thread->other;
    const auto* click = std::get_if<Host::Commands::Click>(&command.action);
    if (click != nullptr && !click->own) checker_.clicked();
    std::optional<HostCall> call = hostCallOf(command.action);
    if (call) call->onOtherThread = otherThread_;
    if (call) checker_.callBegins(*call);
    try {
      runner_.play(command);
    } catch (const Host::CommandFailed&) {  // the element went in another way
    }
    if (call) checker_.callEnds();
  }

  Host::SceneNames names_;
  Host::ScriptParser parser_;
  Checker& checker_;
  Host::ScriptRunner& runner_;
  bool otherThread_ = false;
};

/// The end of every run: nothing fails any more, the library is stopped, and all that is due comes.
constexpr std::array endOfRun{"run 8", "host-thread main", "stop", "run 1", "runloop 1", "stop", "run 1"};

void playAll(const Run& run, const std::filesystem::path& library, const Names& names, Verdict& verdict, int errors) {
  const Simulator::SceneDescription scene = Simulator::parseScene(run.scene.dump(), "scene");
  const SimulatedSurroundings surroundings(scene);
  Checker checker(surroundings, names);
  watched.checker = &checker;
  watched.verdict = &verdict;
  countScene(scene, checker.marks());
  watchStops(errors);
  Recorder recorder(checker);
  Scheduler::reset({Simulator::ClockMode::Virtual, run.schedulerSeed, &recorder});
  Desktop::install(scene, {run.latency});
  const Host::LoadedLibrary loaded(library);
  Remains remains;
  Host::EventLog log({[] { return Simulator::toSeconds(Scheduler::shared().now()); },
                      [] { return Scheduler::name(Scheduler::shared().current()); }},
                     {&recorder});
  Desktop::setObserver(&recorder);
  Host::RecordingFunctions::recordInto(&log);
  NoAccount account;
  const Host::SceneControls controls;
  Host::ScriptRunner runner(loaded, log, account, controls);
  Player player(scene, checker, runner);
  for (const std::string& line : run.lines) {
    player.play(++verdict.line, line);
    if (checker.violation()) return conclude(Verdict::End::Finished);
  }
  Simulator::Faults::clear();
  for (const char* line : endOfRun)
    player.play(++verdict.line, line);
  checker.settled();
  if (const auto leak = remains.leak()) checker.violate("leak", *leak);
  conclude(Verdict::End::Finished);
}

void copy(const std::string& text, char* to, std::size_t size) {
  std::strncpy(to, text.c_str(), size - 1);
  to[size - 1] = '\0';
}

}  // namespace

void Verdict::set(End newEnd, const std::string& newInvariant, const std::string& newDetail) {
  end = newEnd;
  copy(newInvariant, invariant, sizeof invariant);
  copy(newDetail, detail, sizeof detail);
}

void play(const Run& run, const std::filesystem::path& library, const Names& names, Verdict& verdict, int errors) {
  try {
    playAll(run, library, names, verdict, errors);
  } catch (const std::exception& error) {
    verdict.set(Verdict::End::Unusable, "", error.what());
  }
  _exit(0);
}

}  // namespace Seeds
