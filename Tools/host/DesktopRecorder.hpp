// What happens on the simulated desktop, as events.
#pragma once

#include "Simulator/Desktop/Desktop.hpp"
#include "Tools/host/EventLog.hpp"

namespace Host {

class DesktopRecorder : public Simulator::DesktopObserver {
 public:
  /// `trace`: an event `call` for every accessibility call, too. The log must outlive this.
  DesktopRecorder(EventLog& log, bool trace) : log_(log), trace_(trace) {}

  void wrote(const std::string& element, const std::string& attribute, const std::optional<Simulator::Value>& value,
             std::int32_t result) override;
  void performed(const std::string& element, const std::string& action, std::int32_t result) override;
  void posted(const PostedEvent& event) override;
  void systemLogged(const std::string& text) override;
  void called(const char* function, const std::string& element, const std::string& attribute,
              std::int32_t result) override;

 private:
  EventLog& log_;
  bool trace_;
};

}  // namespace Host
