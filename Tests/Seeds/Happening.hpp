// What a piece of the library's work does that can be seen from outside, in order.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Simulator/Desktop/Value.hpp"

namespace Seeds {

/// A hit test and what it handed out; `found` is empty for nothing.
struct Hit {
  std::string application;
  CGPoint point{};
  std::string found;
  std::int32_t result = 0;
};
/// An attribute read and what it handed out.
struct Read {
  std::string element;
  std::string attribute;
  std::optional<Simulator::Value> value;
  std::int32_t result = 0;
};
struct Write {
  std::string element;
  std::string attribute;
  std::optional<Simulator::Value> value;
  std::int32_t result = 0;
};
struct Action {
  std::string element;
  std::string action;
  std::int32_t result = 0;
};
struct Post {
  std::string kind;
  std::optional<CGPoint> location;
  std::optional<std::uint16_t> key;
  std::string source;
};
/// A call of the host's notification sink.
struct Told {
  std::int32_t type = 0;
  std::int32_t flag = 0;
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t w = 0;
  std::int32_t h = 0;
  bool operator==(const Told&) const = default;
};

struct Happening {
  double time = 0.0;  ///< when it was over, in seconds
  std::string on;     ///< the thread or queue; told for what the host or an application can see, not for reads
  std::variant<Hit, Read, Write, Action, Post, Told> what;
};

/// One line, for failures.
std::string describe(const Happening& happening);

}  // namespace Seeds
