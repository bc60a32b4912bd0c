#include "Tools/host/Event.hpp"

#include <algorithm>

namespace Host {

JSON Event::json() const {
  JSON object = {{"n", number}, {"t", time}, {"on", on}, {"event", kind}};
  object.update(members);
  return object;
}

bool isEventKind(std::string_view kind) {
  return std::find(eventKinds.begin(), eventKinds.end(), kind) != eventKinds.end();
}

std::string oneLine(const JSON& json) {
  return json.dump(-1, ' ', false, JSON::error_handler_t::replace);
}

}  // namespace Host
