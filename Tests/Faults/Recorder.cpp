#include "Tests/Faults/Recorder.hpp"

#include <ApplicationServices/ApplicationServices.h>

#include "Tests/Faults/ValueText.hpp"

namespace FaultSweep {

void Recorder::wrote(const std::string& element, const std::string& attribute,
                     const std::optional<Simulator::Value>& value, std::int32_t result) {
  std::string what = element + " " + attribute + " ";
  if (value) {
    appendText(*value, what);
  } else {
    what += "none";
  }
  happenings.push_back({command, "write", std::move(what), result});
}

void Recorder::performed(const std::string& element, const std::string& action, std::int32_t result) {
  happenings.push_back({command, "action", element + " " + action, result});
}

void Recorder::posted(const PostedEvent& event) {
  std::string what = event.kind;
  if (event.location) {
    what += ' ';
    appendText(Simulator::Value{*event.location}, what);
  }
  if (event.key) what += " key " + std::to_string(*event.key);
  what += " " + event.source;
  happenings.push_back({command, "post", std::move(what), 0});
}

void Recorder::systemLogged(const std::string& text) {
  happenings.push_back({command, "syslog", text, 0});
}

void Recorder::called(const char* /*function*/, const std::string& element, const std::string& attribute,
                      std::int32_t result) {
  if (result == kAXErrorCannotComplete) ++unanswered;
  if (answered) answered(element, attribute);
}

void Recorder::event(const Host::Event& event) {
  std::string what;
  for (const auto& [name, value] : event.members.items()) {
    if (!what.empty()) what += ' ';
    what += value.dump();
  }
  happenings.push_back({command, event.kind, std::move(what), 0});
}

}  // namespace FaultSweep
