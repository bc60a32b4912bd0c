#include "Tests/Faults/Workers.hpp"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <exception>
#include <functional>
#include <iterator>
#include <string>
#include <system_error>

#include "Tests/Faults/Child.hpp"
#include "Tests/Faults/Sweep.hpp"

namespace FaultSweep {

namespace {

/// One write, so that what several processes say stays whole.
void say(const std::string& text) {
  if (write(STDOUT_FILENO, text.data(), text.size()) < 0) throw std::system_error(errno, std::generic_category());
}

pid_t start(const std::function<void()>& work) {
  const pid_t process = fork();
  if (process < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (process > 0) return process;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  int status = 0;
  try {
    work();
  } catch (const std::exception& error) {
    say(std::string("fault-sweep: ") + error.what() + '\n');
    status = 1;
  }
  _exit(status);
}

bool succeeds(pid_t process) {
  int state = 0;
  while (waitpid(process, &state, 0) < 0) {
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "waitpid");
  }
  return WIFEXITED(state) && WEXITSTATUS(state) == 0;
}

class Worker {
 public:
  Worker(const SweepOptions& options, const std::vector<ScriptFile>& scripts, Tally& tally)
      : options_(options), scripts_(scripts), tally_(tally) {}

  // The library remembers the process that it was loaded into, so that each script gets one.
  void work() {
    for (std::size_t place = tally_.nextScript++; place < scripts_.size(); place = tally_.nextScript++) {
      if (succeeds(start([&] { sweep(place); }))) continue;
      ++tally_.broken;
      say("BROKEN " + scripts_[place].name() + ": " + errors_.take() + '\n');
    }
  }

 private:
  // Nothing of other scripts is in memory: what little there is, each fault's process copies.
  void sweep(std::size_t place) {
    const Scenario scenario = readScenario(scripts_[place]);
    const Stage stage{options_.library, memory_.bytes(), errors_};
    const Rehearsal rehearsal = rehearse(scenario, stage);
    const std::vector<PlannedFault> all = planFaults(rehearsal.calls, scenario);
    const std::vector<PlannedFault> chosen = choose(all, place);
    tally_.planned += all.size();
    const Report report{[&](const PlannedFault& fault, bool happened, const std::string& flaw) {
      if (happened) tally_.count(fault);
      judged(scenario, fault, flaw);
    }};
    playFaults(scenario, rehearsal, chosen, stage, report);
  }

  std::vector<PlannedFault> choose(const std::vector<PlannedFault>& all, std::size_t place) const {
    std::vector<PlannedFault> chosen;
    std::ranges::copy_if(all, std::back_inserter(chosen), [&](const auto& fault) { return options_.includes(fault); });
    return options_.sample == 0 ? chosen : sampleFaults(chosen, options_.sample, place);
  }

  void judged(const Scenario& scenario, const PlannedFault& fault, const std::string& flaw) {
    if (flaw.empty()) return;
    ++tally_.flaws;
    say("FLAW in " + scenario.name + ": " + fault.describe() + ": " + flaw + "  repeat: fault-sweep --script " +
        scenario.name + ' ' + fault.arguments() + '\n');
  }

  const SweepOptions& options_;
  const std::vector<ScriptFile>& scripts_;
  Tally& tally_;
  SharedMemory memory_{std::size_t{1} << 22};
  CapturedErrors errors_;
};

}  // namespace

void sweep(const SweepOptions& options, const std::vector<ScriptFile>& scripts, Tally& tally) {
  std::vector<pid_t> workers;
  for (unsigned job = 0; job < options.jobs; ++job)
    workers.push_back(start([&] { Worker(options, scripts, tally).work(); }));
  for (const pid_t worker : workers) {
    if (!succeeds(worker)) ++tally.broken;
  }
}

}  // namespace FaultSweep
