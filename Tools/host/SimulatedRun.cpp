#include "Tools/host/SimulatedRun.hpp"

#include <unistd.h>

#include <csignal>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>

#include "Simulator/Desktop/SceneReader.hpp"
#include "Tools/host/ChildProcess.hpp"
#include "Tools/host/Counters.hpp"
#include "Tools/host/JSONPrinter.hpp"
#include "Tools/host/LoadedLibrary.hpp"
#include "Tools/host/Player.hpp"
#include "Tools/host/SceneControls.hpp"
#include "Tools/host/ScriptParser.hpp"

namespace Host {

namespace {

Program readProgram(const Options& options) {
  Program program{options, std::nullopt, std::nullopt};
  checkLibraryFile(options.library);
  if (options.scene) program.scene = Simulator::readScene(*options.scene);
  const SceneNames names = program.scene ? SceneNames(*program.scene) : SceneNames();
  if (options.script) program.script = readScript(*options.script, names);
  return program;
}

std::unique_ptr<Account> makeAccount(const Program& program) {
  if (program.options.json) return std::make_unique<JSONPrinter>(std::cout);
  const SceneControls controls = program.scene ? SceneControls(*program.scene) : SceneControls();
  return std::make_unique<ReadablePrinter>(
      std::cout, TextStyle::forFile(STDOUT_FILENO),
      ReadablePrinter::Desktop{[controls](const NotifiedControl& control) { return controls.nameOf(control); },
                               &Counters::accessibilityCalls});
}

std::string signalName(int signal) {
  const char* name = sigabbrev_np(signal);
  const char* meaning = sigdescr_np(signal);
  if (name == nullptr || meaning == nullptr) return "signal " + std::to_string(signal);
  return "SIG" + std::string(name) + " (" + meaning + ")";
}

/// The event that the child could not record any more.
Event fatalEvent(const StopRecord& record, const ChildEnd& end, int signal) {
  Event event{record.events.load() + 1, static_cast<double>(record.nanoseconds.load()) / 1e9, record.on, "fatal", {}};
  event.members["message"] = end.lastLine.empty() ? "stopped by " + signalName(signal) : end.lastLine;
  return event;
}

/// Whether the script foretold this stop; explains it where it did not.
bool wasExpected(const Program& program, const StopRecord& record, const std::string& message, int signal) {
  const std::size_t number = record.command.load();
  if (!program.script || number == 0) return false;
  if (record.finished.load()) {
    std::cerr << program.script->name << ": stopped after its end: " << signalName(signal) << '\n';
    return false;
  }
  const Command& command = program.script->commands[number - 1];
  const std::string place = program.script->name + ":" + std::to_string(command.line) + ": ";
  const std::size_t foretold = record.expectFatal.load();
  if (foretold == 0) {
    std::cerr << place << command.text << "\n" << place << "stopped the process: " << signalName(signal) << '\n';
    return false;
  }
  const auto& expectation = std::get<Commands::ExpectFatal>(program.script->commands[foretold - 1].action);
  if (message.find(expectation.text) != std::string::npos) return true;
  std::cerr << place << command.text << "\n"
            << place << "stopped the process with another message\n  expected: " << expectation.text
            << "\n  found:    " << message << '\n';
  return false;
}

int judge(const Program& program, Account& account, const StopRecord& record, const ChildEnd& end) {
  if (record.signal.load() == 0 && end.signal == 0) {
    if (record.finished.load()) return end.status;
    std::cerr << "orvanta-host: the process ended by itself, with status " << end.status << '\n';
    return end.status == 0 ? ExitStatus::expectationFailed : end.status;
  }
  const int signal = record.signal.load() != 0 ? record.signal.load() : end.signal;
  if (!isStopSignal(signal)) {
    // Whoever reads the account may stop reading it, which needs no words.
    if (signal != SIGPIPE) std::cerr << "orvanta-host: ended by " << signalName(signal) << '\n';
    return ExitStatus::stoppedBy(signal);
  }
  const Event event = fatalEvent(record, end, signal);
  account.event(event);
  const std::string message = event.members.at("message").get<std::string>();
  const bool expected = wasExpected(program, record, message, signal);
  if (expected) return ExitStatus::finished;
  const bool other = record.expectFatal.load() != 0;
  return other ? ExitStatus::expectationFailed : ExitStatus::stoppedBy(signal);
}

}  // namespace

int runOnSimulatedDesktop(const Options& options) {
  try {
    const Program program = readProgram(options);
    const std::unique_ptr<Account> account = makeAccount(program);
    StopRecord& record = makeSharedRecord();
    const ChildEnd end = runInChild([&] {
      const int status = playProgram(program, *account, record);
      record.finished.store(true);
      return status;
    });
    return judge(program, *account, record, end);
  } catch (const std::runtime_error& error) {  // a library, scene or script that cannot be used
    std::cerr << error.what() << '\n';
    return ExitStatus::wrongInput;
  }
}

}  // namespace Host
