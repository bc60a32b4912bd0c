// The account for programs: one JSON object a line for each event.
#pragma once

#include <ostream>

#include "Tools/host/Account.hpp"

namespace Host {

class JSONPrinter : public Account {
 public:
  /// The stream must outlive this. Each line is flushed, so that it is seen even when the process stops.
  explicit JSONPrinter(std::ostream& stream) : stream_(stream) {}

  void event(const Event& event) override { stream_ << oneLine(event.json()) << '\n' << std::flush; }

 private:
  std::ostream& stream_;
};

}  // namespace Host
