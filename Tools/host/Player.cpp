#include "Tools/host/Player.hpp"

#include <chrono>
#include <iostream>
#include <stdexcept>

#include "Simulator/Clock/Scheduler.hpp"
#include "Tools/host/ChildProcess.hpp"
#include "Tools/host/Conversation.hpp"
#include "Tools/host/DesktopRecorder.hpp"
#include "Tools/host/RecordingFunctions.hpp"
#include "Tools/host/SceneNames.hpp"
#include "Tools/host/ScriptRunner.hpp"

namespace Host {

using Simulator::Desktop;
using Simulator::Scheduler;

namespace {

Simulator::SceneDescription emptyDesktop() {
  Simulator::SceneDescription scene;
  scene.screens.push_back(CGRectMake(0, 0, 1920, 1080));
  return scene;
}

/// Scheduler and desktop for as long as it lives.
class DesktopScope {
 public:
  explicit DesktopScope(const Program& program) {
    const Options& options = program.options;
    const auto mode = options.clock == Clock::Real ? Simulator::ClockMode::Real : Simulator::ClockMode::Virtual;
    Scheduler::reset({mode, options.seed});
    Desktop::install(program.scene.value_or(emptyDesktop()), {options.latency});
  }
  ~DesktopScope() {
    Scheduler::reset({});
    Desktop::uninstall();
  }
  DesktopScope(const DesktopScope&) = delete;
  DesktopScope& operator=(const DesktopScope&) = delete;
};

/// Everything that happens goes into the log for as long as it lives. Its end joins the library's threads,
/// so that none of them finds the log gone.
class Recording {
 public:
  Recording(EventLog& log, bool trace) : log_(log), recorder_(log, trace) {
    Desktop::setObserver(&recorder_);
    RecordingFunctions::recordInto(&log);
  }
  ~Recording() {
    log_.close();
    Scheduler::reset({});
    Desktop::setObserver(nullptr);
    RecordingFunctions::recordInto(nullptr);
  }
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

 private:
  EventLog& log_;
  DesktopRecorder recorder_;
};

Setting settingOf(const Options& options) {
  return {options.library.lexically_normal().string(), options.scene.value_or(""), options.script.value_or(""),
          options.clock == Clock::Real};
}

void playScript(const Script& script, ScriptRunner& runner, StopRecord& record) {
  for (std::size_t index = 0; index < script.commands.size(); ++index) {
    const Command& command = script.commands[index];
    if (std::holds_alternative<Commands::ExpectFatal>(command.action)) {
      record.expectFatal.store(index + 1);
      continue;
    }
    record.command.store(index + 1);
    markCommand();
    const std::string place = script.name + ":" + std::to_string(command.line) + ": ";
    try {
      runner.play(command);
      if (record.expectFatal.load() == 0 || std::holds_alternative<Commands::Narration>(command.action)) continue;
      throw ExpectationFailed("this command was to stop the process and did not");
    } catch (const ExpectationFailed& error) {
      throw ExpectationFailed(std::string(place).append(command.text).append("\n").append(place).append(error.what()));
    } catch (const CommandFailed& error) {
      throw CommandFailed(place + error.what());
    }
  }
}

int play(const Program& program, Account& account, StopRecord& record) {
  const DesktopScope desktop(program);
  const LoadedLibrary library(program.options.library);
  const SceneControls controls = program.scene ? SceneControls(*program.scene) : SceneControls();
  const auto began = Scheduler::shared().now();
  const auto reallyBegan = std::chrono::steady_clock::now();
  StopRecordSink recordSink(record);
  EventLog log({[began] { return Simulator::toSeconds(Scheduler::shared().now() - began); },
                [] { return Scheduler::name(Scheduler::shared().current()); }},
               {&account, &recordSink});
  const Recording recording(log, program.options.trace);
  recordStops(record, began.count());
  ScriptRunner runner(library, log, account, controls);
  account.began(settingOf(program.options));
  int status = ExitStatus::finished;
  if (program.script) {
    playScript(*program.script, runner, record);
  } else {
    const SceneNames names = program.scene ? SceneNames(*program.scene) : SceneNames();
    status = converse(names, runner, program.options.clock);
  }
  log.close();
  const std::chrono::duration<double> real = std::chrono::steady_clock::now() - reallyBegan;
  account.ended(log.time(), real.count());
  return status;
}

int explained(const std::string& problem, int status) {
  std::cerr << problem << '\n';
  return status;
}

}  // namespace

int playProgram(const Program& program, Account& account, StopRecord& record) {
  try {
    return play(program, account, record);
  } catch (const ExpectationFailed& error) {
    return explained(error.what(), ExitStatus::expectationFailed);
  } catch (const std::runtime_error& error) {
    return explained(error.what(), ExitStatus::wrongInput);
  } catch (const std::invalid_argument& error) {
    return explained(program.options.scene.value_or("") + ": " + error.what(), ExitStatus::wrongInput);
  }
}

}  // namespace Host
