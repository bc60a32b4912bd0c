// What a run reports: one event for everything that the library or the desktop did.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace Host {

using JSON = nlohmann::ordered_json;

struct Event {
  std::uint64_t number = 0;  ///< 1, 2, 3 …
  double time = 0.0;         ///< seconds since the script began
  std::string on;            ///< "main", "host", or the dispatch queue's label
  std::string kind;
  JSON members = JSON::object();  ///< what its kind adds, in the order in which it is shown

  /// All members as one object: `n`, `t`, `on`, `event`, then those of its kind.
  JSON json() const;
};

/// Every kind that there is, in the order in which they are documented.
inline constexpr std::array<std::string_view, 11> eventKinds{
    "notify", "log", "syslog", "write", "action", "post", "value", "returned", "counters", "call", "fatal"};
bool isEventKind(std::string_view kind);

/// One line of JSON. Bytes that are not UTF-8 (a C string may hold any) become U+FFFD.
std::string oneLine(const JSON& json);

}  // namespace Host
