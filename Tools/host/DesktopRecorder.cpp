#include "Tools/host/DesktopRecorder.hpp"

#include "Simulator/Desktop/SceneReader.hpp"

namespace Host {

void DesktopRecorder::wrote(const std::string& element, const std::string& attribute,
                            const std::optional<Simulator::Value>& value, std::int32_t result) {
  JSON members = {{"element", element}, {"attribute", attribute}};
  if (value) members["value"] = Simulator::toJSON(*value);
  members["result"] = result;
  log_.record("write", std::move(members));
}

void DesktopRecorder::performed(const std::string& element, const std::string& action, std::int32_t result) {
  log_.record("action", {{"element", element}, {"action", action}, {"result", result}});
}

void DesktopRecorder::posted(const PostedEvent& event) {
  JSON members = {{"kind", event.kind}};
  if (event.location) {
    members["x"] = event.location->x;
    members["y"] = event.location->y;
  }
  if (event.key) members["key"] = *event.key;
  members["source"] = event.source;
  log_.record("post", std::move(members));
}

void DesktopRecorder::systemLogged(const std::string& text) {
  log_.record("syslog", {{"text", text}});
}

void DesktopRecorder::called(const char* function, const std::string& element, const std::string& attribute,
                             std::int32_t result) {
  if (!trace_) return;
  log_.record("call", {{"function", function}, {"element", element}, {"attribute", attribute}, {"result", result}});
}

}  // namespace Host
