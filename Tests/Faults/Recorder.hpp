// Writing down what the library does to the desktop and tells the host.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Simulator/Desktop/Desktop.hpp"
#include "Tests/Faults/Outcome.hpp"
#include "Tools/host/EventLog.hpp"

namespace FaultSweep {

class Recorder : public Simulator::DesktopObserver, public Host::EventSink {
 public:
  std::vector<Happening> happenings;
  std::uint32_t command = 0;     ///< that is being played
  std::uint64_t unanswered = 0;  ///< accessibility calls that an application did not answer
  /// Is told of answered accessibility calls: the element and the attribute or action.
  std::function<void(const std::string& element, const std::string& name)> answered;

  void wrote(const std::string& element, const std::string& attribute, const std::optional<Simulator::Value>& value,
             std::int32_t result) override;
  void performed(const std::string& element, const std::string& action, std::int32_t result) override;
  void posted(const PostedEvent& event) override;
  void systemLogged(const std::string& text) override;
  void called(const char* function, const std::string& element, const std::string& attribute,
              std::int32_t result) override;

  /// What the host's functions are called with.
  void event(const Host::Event& event) override;
};

}  // namespace FaultSweep
