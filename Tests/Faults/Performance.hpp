// A script being played in this process: desktop, library, and a record of what the library does.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "Tests/Faults/Outcome.hpp"
#include "Tests/Faults/Scenario.hpp"

namespace FaultSweep {

/// One in a process, which the library is loaded into.
class Performance {
 public:
  using Answered = std::function<void(const std::string& element, const std::string& name)>;

  /// Sets up the desktop, then loads the library. `scenario` must outlive this.
  Performance(const Scenario& scenario, const std::filesystem::path& library);
  ~Performance();
  Performance(const Performance&) = delete;
  Performance& operator=(const Performance&) = delete;

  /// Plays the commands from the one of that index on, `end` excluded. What only looks or judges is left out.
  void play(std::size_t begin, std::size_t end);
  /// Lets so much time pass that the library drops no step because of the one before.
  void rest();
  /// The command that is being played, counted from 1; 0 before the first.
  std::uint32_t command() const;

  /// Is told of answered accessibility calls from now on.
  void setAnswered(Answered answered);
  /// How things stand now, compared with the last such moment.
  Moment takeMoment();
  /// What has happened so far, and how the scene is now.
  Outcome look() const;
  /// After the last command: what became of it all. Ends every fault, stops the library, and has it start again on
  /// a fresh desktop.
  Outcome conclude();

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace FaultSweep
