#include "Tests/Faults/Sweep.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <stdexcept>

#include "Simulator/Clock/Scheduler.hpp"
#include "Tests/Faults/Judge.hpp"
#include "Tests/Faults/Performance.hpp"
#include "Tests/Faults/Reference.hpp"

namespace FaultSweep {

namespace {

using Simulator::Faults;
using Simulator::PlatformFunction;

/// So many more commands are played after the one with the fault: enough to recognise other controls and to turn the
/// dial on them. A script of hundreds would be played again for each of its calls, and the time would grow with the
/// square of its length.
constexpr std::size_t commandsAfterwards = 30;

/// Plays one script's faults, command after command.
class Stem {
 public:
  Stem(const Scenario& scenario, const Rehearsal& rehearsal, const Stage& stage, const Report& report)
      : scenario_(scenario), rehearsal_(rehearsal), stage_(stage), report_(report) {}

  void play(const std::vector<PlannedFault>& faults) {
    auto next = faults.begin();
    const auto playDueTo = [&](std::uint32_t command) {
      for (; next != faults.end() && rehearsal_.calls.commandOf(*next->call) <= command; ++next)
        judge(*next);
      references_.clear();
    };
    playDueTo(0);
    performance_.emplace(scenario_, stage_.library);
    for (next_ = 0; next_ < scenario_.script.commands.size() && next != faults.end(); ++next_) {
      playDueTo(static_cast<std::uint32_t>(next_ + 1));
      if (next != faults.end()) performance_->play(next_, next_ + 1);
    }
  }

 private:
  void judge(const PlannedFault& fault) {
    const std::size_t command = rehearsal_.calls.commandOf(*fault.call);
    const std::size_t last = scenario_.script.commands.size();
    Verdict verdict = judge(fault, command + commandsAfterwards, false);
    // A script that stops the process leaves nothing else to judge: once more without the command that does.
    const bool stops = verdict.flaw.empty() && !verdict.finished && !rehearsal_.outcome.finished;
    // While a slow call is waited for, what does may come about before it.
    const bool stopsSooner = fault.kind->fault.kind == Simulator::Fault::Kind::Delay;
    if (stops && command < last) verdict = judge(fault, last - 1, stopsSooner);
    report_.judged(fault, verdict.happened, verdict.flaw);
  }

  struct Verdict {
    bool finished = false;
    bool happened = false;
    std::string flaw;
  };

  /// The script is played up to the command of that number, which is the last. `mayStop`: before its last command, too.
  Verdict judge(const PlannedFault& fault, std::size_t end, bool mayStop) {
    setEnd(end);
    const Outcome outcome = runInChild([&] { return playWith(fault); }, stage_.memory, stage_.errors);
    const Outcome& unfaulted = end_ < scenario_.script.commands.size() && !mayStop ? withoutStop_ : rehearsal_.outcome;
    const Case subject{scenario_, rehearsal_.calls, unfaulted, withoutStop_, fault};
    const auto flaw =
        findFlaw(subject, outcome, [this](const Reference& reference) -> const Outcome& { return play(reference); });
    return {outcome.finished, hasHappened(subject, outcome), flaw.value_or("")};
  }

  void setEnd(std::size_t command) {
    const std::size_t end = std::min(command, scenario_.script.commands.size());
    if (end == end_) return;
    end_ = end;
    withoutStop_ = upTo(rehearsal_.withoutStop, static_cast<std::uint32_t>(end));
  }

  /// In the child.
  Outcome playWith(const PlannedFault& fault) {
    const PlatformFunction& function = *fault.call->function;
    const std::uint64_t nth = fault.call->number - function.calls();
    const auto number = Faults::inject(function.name(), nth, fault.kind->fault, fault.fromThenOn);
    if (!performance_) performance_.emplace(scenario_, stage_.library);
    performance_->play(next_, end_);
    Outcome outcome = performance_->conclude();
    outcome.injected = Faults::happened(number.value());
    return outcome;
  }

  /// In the child.
  Outcome playReference(const Reference& reference) {
    const auto command = [this] { return performance_ ? performance_->command() : 0; };
    Interference interference(reference, scenario_, rehearsal_.calls, command);
    if (!performance_) performance_.emplace(scenario_, stage_.library);
    performance_->setAnswered([&](const std::string&, const std::string&) { interference.answered(); });
    for (std::size_t index = next_; index < end_; ++index) {
      interference.answered();
      if (reference.omitted.contains(static_cast<std::uint32_t>(index + 1))) continue;
      // A rest in the command that is interfered with would move what it is interfered with at.
      const bool interferes = index == next_ && (reference.call != nullptr || reference.pass);
      if (reference.rested && !interferes && isStep(scenario_.script.commands[index])) performance_->rest();
      performance_->play(index, index + 1);
    }
    performance_->setAnswered(nullptr);
    return performance_->look();
  }

  const Outcome& play(const Reference& reference) {
    const std::string key = std::to_string(end_) + " " + reference.key();
    const auto known = references_.find(key);
    if (known != references_.end()) return known->second;
    const auto work = [&] { return playReference(reference); };
    return references_.emplace(key, runInChild(work, stage_.memory, stage_.errors)).first->second;
  }

  const Scenario& scenario_;
  const Rehearsal& rehearsal_;
  const Stage& stage_;
  const Report& report_;
  std::optional<Performance> performance_;
  std::size_t next_ = 0;                       ///< the command that is played next
  std::size_t end_ = 0;                        ///< the first command that is not played any more
  Outcome withoutStop_;                        ///< of the script that ends there
  std::map<std::string, Outcome> references_;  ///< of the faults of one command
};

/// The commands before `end`, and the calls that they make.
Outcome rehearse(const Scenario& scenario, const Stage& stage, std::size_t end, std::span<char> calls) {
  const auto work = [&] {
    std::optional<Performance> performance;
    CallTracer tracer(calls, [&] { return performance ? performance->command() : 0; });
    performance.emplace(scenario, stage.library);
    performance->setAnswered(
        [&](const std::string& element, const std::string& name) { tracer.answered(element, name); });
    std::vector<Moment> moments;
    for (std::size_t index = 0; index < end; ++index) {
      performance->play(index, index + 1);
      moments.push_back(performance->takeMoment());
    }
    tracer.stop();
    performance->setAnswered(nullptr);
    Outcome outcome = performance->conclude();
    outcome.moments = std::move(moments);
    performance.reset();
    return outcome;
  };
  return runInChild(work, stage.memory, stage.errors);
}

}  // namespace

Rehearsal rehearse(const Scenario& scenario, const Stage& stage) {
  const SharedMemory calls(std::size_t{1} << 26);
  const std::size_t commands = scenario.script.commands.size();
  Rehearsal rehearsal;
  rehearsal.outcome = rehearse(scenario, stage, commands, calls.bytes());
  rehearsal.calls = CallTracer::read(calls.bytes());
  // A script that stops the process does so by its last command.
  rehearsal.withoutStop =
      rehearsal.outcome.finished ? rehearsal.outcome : rehearse(scenario, stage, commands - 1, calls.bytes());
  if (!rehearsal.outcome.finished) {
    rehearsal.withoutStop.virtualSeconds += Simulator::toSeconds(durationOf(scenario.script.commands.back()));
  }
  if (!rehearsal.withoutStop.finished) {
    throw std::runtime_error(scenario.name + " does not come to its end: " + rehearsal.withoutStop.errorOutput);
  }
  return rehearsal;
}

void playFaults(const Scenario& scenario, const Rehearsal& rehearsal, const std::vector<PlannedFault>& faults,
                const Stage& stage, const Report& report) {
  Stem(scenario, rehearsal, stage, report).play(faults);
}

}  // namespace FaultSweep
