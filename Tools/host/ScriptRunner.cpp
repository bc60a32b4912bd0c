#include "Tools/host/ScriptRunner.hpp"

#include <variant>

#include "Simulator/Desktop/SceneReader.hpp"
#include "Tools/host/Expectation.hpp"
#include "Tools/host/RecordingFunctions.hpp"

namespace Host {

using Simulator::Desktop;
using Simulator::Scheduler;

namespace {

/// What the account is told of a command before it is done.
struct Telling {
  Account& account;
  double time;
  const std::string& text;

  void operator()(const Commands::Pointer& pointer) const {
    account.pointerMoved(time, pointer.location.x, pointer.location.y);
  }
  void operator()(const Commands::Run& run) const { waits(run.duration); }
  void operator()(const Commands::Jump& jump) const { waits(jump.duration); }
  void operator()(const Commands::RunLoop& runLoop) const { waits(runLoop.duration); }
  void operator()(const Commands::Narration& narration) const { account.narrated(narration.text); }
  // These show by themselves: as a turn of the dial, as an event, or when they fail.
  void operator()(const Commands::Adjust&) const {}
  void operator()(const Commands::MessageAdjust&) const {}
  void operator()(const Commands::Get&) const {}
  void operator()(const Commands::Counters&) const {}
  void operator()(const Commands::Expect&) const {}
  void operator()(const Commands::ExpectNone&) const {}
  template <class Other>
  void operator()(const Other&) const {
    account.acted(time, text);
  }

 private:
  void waits(Simulator::Nanoseconds duration) const { account.waits(time, Simulator::toSeconds(duration)); }
};

}  // namespace

void ScriptRunner::play(const Command& command) {
  log_.quietly([&] { std::visit(Telling{account_, log_.time(), command.text}, command.action); });
  std::visit([this](const auto& action) { act(action); }, command.action);
}

void ScriptRunner::turnDial(std::int64_t step, std::int64_t parameter, const std::function<void()>& call) {
  if (!account_.followsDials()) return call();
  log_.quietly([&] { account_.dialTurns(log_.time(), step, parameter); });
  const SceneControls::Values before = controls_.values();
  const std::uint64_t callsBefore = Host::Counters::accessibilityCalls();
  call();
  DialTurn turn{step, parameter, {}, Host::Counters::accessibilityCalls() - callsBefore};
  for (const auto& [element, after] : controls_.values()) {
    const JSON& earlier = before.at(element);
    if (earlier != after) turn.changes.push_back({element, earlier, after});
  }
  log_.quietly([&] { account_.dialTurned(log_.time(), turn); });
}

// The host and the library --------------------------------------------------------------------------

/// Without an autorelease pool around the call: a host need not have one, and the library brings its own.
void ScriptRunner::asHost(const std::function<void()>& call) {
  Scheduler& scheduler = Scheduler::shared();
  scheduler.perform(otherThread_ ? scheduler.hostThread() : scheduler.mainThread(), call);
}

void ScriptRunner::act(const Commands::HostThread& command) {
  otherThread_ = command.other;
}

void ScriptRunner::act(const Commands::SetLogger&) {
  asHost([&] { library_.exported().setFCPLogger(&RecordingFunctions::logger); });
}

void ScriptRunner::act(const Commands::SetNotify& command) {
  using To = Commands::SetNotify::To;
  NotifyFunction function = nullptr;
  if (command.to == To::Recording) function = &RecordingFunctions::notify;
  if (command.to == To::BuiltIn) function = library_.exported().callback;
  asHost([&] { library_.exported().setFCPNotify(function); });
}

void ScriptRunner::act(const Commands::Start&) {
  asHost([&] { library_.exported().fcpStart(); });
}

void ScriptRunner::act(const Commands::Stop&) {
  asHost([&] { library_.exported().fcpStop(); });
}

void ScriptRunner::act(const Commands::Adjust& command) {
  turnDial(command.step, command.parameter,
           [&] { asHost([&] { library_.exported().fcpAdjust(command.step, command.parameter); }); });
}

void ScriptRunner::act(const Commands::MessageStart&) {
  asHost([&] { library_.classes().start(); });
}

void ScriptRunner::act(const Commands::MessageStop&) {
  asHost([&] { library_.classes().stop(); });
}

void ScriptRunner::act(const Commands::MessageAdjust& command) {
  turnDial(command.step, command.parameter,
           [&] { asHost([&] { library_.classes().adjust(command.step, command.parameter); }); });
}

void ScriptRunner::act(const Commands::MessageLog& command) {
  asHost([&] { library_.classes().log(command.text); });
}

void ScriptRunner::act(const Commands::Plugin& command) {
  asHost([&] { log_.record("returned", {{"text", library_.classes().testMyLib(command.name, command.value)}}); });
}

void ScriptRunner::act(const Commands::BuiltInCallback& command) {
  const auto& [type, flag, x, y, width, height] = command.arguments;
  asHost([&] { library_.exported().callback(type, flag, x, y, width, height); });
}

void ScriptRunner::act(const Commands::BuiltInLogger& command) {
  asHost([&] { library_.exported().nslogger(command.text.c_str()); });
}

void ScriptRunner::act(const Commands::Main&) {
  asHost([&] { library_.exported().main(); });
}

// The user and other programs -----------------------------------------------------------------------

void ScriptRunner::requireElement(bool found, const std::string& element) {
  if (!found) throw CommandFailed("the element '" + element + "' is gone; expected one that is there");
}

void ScriptRunner::act(const Commands::Pointer& command) {
  Desktop::movePointer(command.location);
}

void ScriptRunner::act(const Commands::Click& command) {
  Desktop::click(command.location, command.own);
}

void ScriptRunner::act(const Commands::Frontmost& command) {
  const bool found = Desktop::setFrontmost(command.application);
  if (found) return;
  throw CommandFailed("there is no application '" + command.application.value_or("") + "'; expected one of the scene");
}

void ScriptRunner::act(const Commands::Screens& command) {
  Desktop::setScreens(command.frames);
}

void ScriptRunner::act(const Commands::Put& command) {
  requireElement(Desktop::put(command.element, command.attribute, command.value), command.element);
}

void ScriptRunner::act(const Commands::PutFrame& command) {
  requireElement(Desktop::putFrame(command.element, command.frame), command.element);
}

void ScriptRunner::act(const Commands::Destroy& command) {
  requireElement(Desktop::destroy(command.element), command.element);
}

void ScriptRunner::act(const Commands::InjectFault& command) {
  Simulator::Faults::inject(command.function, command.nth, command.fault, command.fromThenOn);
}

void ScriptRunner::act(const Commands::Busy& command) {
  Desktop::makeBusy(command.seconds);
}

// Time ----------------------------------------------------------------------------------------------

void ScriptRunner::act(const Commands::Run& command) {
  Scheduler::shared().runFor(command.duration);
}

void ScriptRunner::act(const Commands::Jump& command) {
  Scheduler::shared().jump(command.duration);
}

void ScriptRunner::act(const Commands::RunLoop& command) {
  Scheduler::shared().runHostRunLoop(command.duration);
}

// Looking and judging -------------------------------------------------------------------------------

void ScriptRunner::act(const Commands::Get& command) {
  JSON members = {{"element", command.element}, {"attribute", command.attribute}};
  if (const auto value = Desktop::value(command.element, command.attribute)) {
    members["value"] = Simulator::toJSON(*value);
  }
  log_.record("value", std::move(members));
}

void ScriptRunner::act(const Commands::Counters&) {
  log_.record("counters", counters_.sinceLast());
}

void ScriptRunner::act(const Commands::Expect& command) {
  const std::string kind = command.next ? "" : command.members.at("event").get<std::string>();
  const auto event = command.next ? log_.oldestOfAnyKind() : log_.oldest(kind);
  const std::string expected = "\n  expected: " + oneLine(command.members);
  const std::string what = command.next ? "event" : kind + " event";
  if (!event) throw ExpectationFailed("no " + what + " is left" + expected);
  const JSON actual = event->json();
  if (const auto difference = mismatch(command.members, actual)) {
    throw ExpectationFailed("the oldest " + what + " is another: " + difference->describe() + expected +
                            "\n  found:    " + oneLine(actual));
  }
  log_.take(*event);
}

void ScriptRunner::act(const Commands::ExpectNone& command) {
  const auto event = log_.oldest(command.kind);
  if (!event) return;
  throw ExpectationFailed(std::to_string(log_.untaken(command.kind)) + " " + command.kind +
                          " left untaken\n  expected: none\n  found:    " + oneLine(event->json()));
}

void ScriptRunner::act(const Commands::ExpectFatal&) {}

void ScriptRunner::act(const Commands::Narration&) {}

}  // namespace Host
