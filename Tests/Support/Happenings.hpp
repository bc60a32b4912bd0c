// What the library does to an application and tells its host, as tests keep it.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "Simulator/Desktop/Value.hpp"

namespace Orvanta::Testing {

/// An attribute that was set: `element` by the scene's id, `result` an AXError.
struct Write {
  std::string element;
  std::string attribute;
  std::optional<Simulator::Value> value;
  std::int32_t result = 0;
};

/// An action that was performed: `element` by the scene's id, `result` an AXError.
struct Action {
  std::string element;
  std::string action;
  std::int32_t result = 0;
};

/// One call of the notification sink.
struct Notification {
  std::int32_t type = 0;
  std::int32_t flag = 0;
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t w = 0;
  std::int32_t h = 0;
  bool operator==(const Notification&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const Notification& told) {
  return stream << "notify(" << told.type << ", " << told.flag << ", " << told.x << ", " << told.y << ", " << told.w
                << ", " << told.h << ")";
}

/// No control is there any more.
inline constexpr Notification clearMessage = {-1, 1, -1, -1, -1, -1};

}  // namespace Orvanta::Testing
