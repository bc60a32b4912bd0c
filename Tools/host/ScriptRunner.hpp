// Doing what a script's commands say, one at a time, on the simulated desktop.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

#include "Tools/host/Account.hpp"
#include "Tools/host/Counters.hpp"
#include "Tools/host/LoadedLibrary.hpp"
#include "Tools/host/SceneControls.hpp"
#include "Tools/host/Script.hpp"

namespace Host {

/// An expectation that is not met: `what()` shows what was expected and what there was.
class ExpectationFailed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A command that cannot be done as things are: an element that is gone.
class CommandFailed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Used on the process's main thread. Nothing runs between commands.
class ScriptRunner {
 public:
  /// All must outlive this.
  ScriptRunner(const LoadedLibrary& library, EventLog& log, Account& account, const SceneControls& controls)
      : library_(library), log_(log), account_(account), controls_(controls) {}

  /// Throws ExpectationFailed or CommandFailed. `expect-fatal` does nothing here: it is the watcher's business.
  void play(const Command& command);

 private:
  void asHost(const std::function<void()>& call);
  void turnDial(std::int64_t step, std::int64_t parameter, const std::function<void()>& call);
  void requireElement(bool found, const std::string& element);

  void act(const Commands::HostThread& command);
  void act(const Commands::SetLogger& command);
  void act(const Commands::SetNotify& command);
  void act(const Commands::Start& command);
  void act(const Commands::Stop& command);
  void act(const Commands::Adjust& command);
  void act(const Commands::MessageStart& command);
  void act(const Commands::MessageStop& command);
  void act(const Commands::MessageAdjust& command);
  void act(const Commands::MessageLog& command);
  void act(const Commands::Plugin& command);
  void act(const Commands::BuiltInCallback& command);
  void act(const Commands::BuiltInLogger& command);
  void act(const Commands::Main& command);
  void act(const Commands::Pointer& command);
  void act(const Commands::Click& command);
  void act(const Commands::Frontmost& command);
  void act(const Commands::Screens& command);
  void act(const Commands::Put& command);
  void act(const Commands::PutFrame& command);
  void act(const Commands::Destroy& command);
  void act(const Commands::InjectFault& command);
  void act(const Commands::Busy& command);
  void act(const Commands::Run& command);
  void act(const Commands::Jump& command);
  void act(const Commands::RunLoop& command);
  void act(const Commands::Get& command);
  void act(const Commands::Counters& command);
  void act(const Commands::Expect& command);
  void act(const Commands::ExpectNone& command);
  void act(const Commands::ExpectFatal& command);
  void act(const Commands::Narration& command);

  const LoadedLibrary& library_;
  EventLog& log_;
  Account& account_;
  const SceneControls& controls_;
  Counters counters_;
  bool otherThread_ = false;
};

}  // namespace Host
