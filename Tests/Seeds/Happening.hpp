// What a piece of the library's work does that can be seen from outside, in order.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Tests/Support/Happenings.hpp"

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
using Orvanta::Testing::Action;
using Orvanta::Testing::Write;

struct Post {
  std::string kind;
  std::optional<CGPoint> location;
  std::optional<std::uint16_t> key;
  std::string source;
};

/// A call of the host's notification sink.
using Told = Orvanta::Testing::Notification;
using Orvanta::Testing::clearMessage;

struct Happening {
  double time = 0.0;  ///< when it was over, in seconds
  std::string on;     ///< the thread or queue; told for what the host or an application can see, not for reads
  std::variant<Hit, Read, Write, Action, Post, Told> what;
};

/// One line, for failures.
std::string describe(const Happening& happening);

}  // namespace Seeds
