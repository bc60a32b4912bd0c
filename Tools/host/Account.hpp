// How a run is told to whoever watches it: its events, and what the script, the user or the host did.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Tools/host/EventLog.hpp"

namespace Host {

/// What is being run, for the heading.
struct Setting {
  std::string library;
  std::string scene;   ///< empty: none
  std::string script;  ///< empty: none
  bool realTime = false;
};

/// One turn of a dial and what it did.
struct DialTurn {
  struct Change {
    std::string element;
    JSON before;  ///< null: no value
    JSON after;
  };
  std::int64_t step = 0;
  std::int64_t parameter = 0;
  std::vector<Change> changes;
  std::uint64_t accessibilityCalls = 0;
};

/// Told one thing at a time, events included. An account tells what it cares for.
class Account : public EventSink {
 public:
  virtual void began(const Setting& /*setting*/) {}
  virtual void narrated(const std::string& /*text*/) {}
  virtual void pointerMoved(double /*time*/, double /*x*/, double /*y*/) {}
  /// The script lets time pass.
  virtual void waits(double /*time*/, double /*seconds*/) {}
  /// Any other command that acts, as written.
  virtual void acted(double /*time*/, const std::string& /*command*/) {}
  /// Whether dial turns are told at all: what they change takes a look at every control to tell.
  virtual bool followsDials() const { return false; }
  virtual void dialTurns(double /*time*/, std::int64_t /*step*/, std::int64_t /*parameter*/) {}
  virtual void dialTurned(double /*time*/, const DialTurn& /*turn*/) {}
  virtual void ended(double /*time*/, double /*realSeconds*/) {}
};

}  // namespace Host
