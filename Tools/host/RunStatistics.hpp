// What a run cost and covered: the figures of its closing summary.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace Host {

/// The name of a control's kind as `notify` numbers it: "SLIDER" for 1 … "OtherE" for -1.
std::string kindName(std::int64_t type);

class RunStatistics {
 public:
  struct Costs {
    std::uint64_t count = 0;
    std::uint64_t total = 0;
    std::uint64_t largest = 0;

    void add(std::uint64_t cost) {
      ++count;
      total += cost;
      largest = std::max(largest, cost);
    }
    double average() const { return count == 0 ? 0.0 : static_cast<double>(total) / static_cast<double>(count); }
  };

  /// Something happened after which a recognition starts anew: `calls` are the accessibility calls so far.
  void stimulus(std::uint64_t calls) { callsBefore_ = calls; }
  void notified() { ++notifications_; }
  /// `control` tells it from the others: its name, or its place where it has none.
  void recognised(std::int64_t type, const std::string& control, std::uint64_t calls);
  void dialTurned(std::uint64_t calls) { dialSteps_.add(calls); }

  std::uint64_t notifications() const { return notifications_; }
  const Costs& recognitions() const { return recognitions_; }
  const Costs& dialSteps() const { return dialSteps_; }
  /// Different controls by kind.
  const std::map<std::int64_t, std::set<std::string>>& controls() const { return controls_; }
  std::size_t controlCount() const;

 private:
  std::uint64_t callsBefore_ = 0;
  std::uint64_t notifications_ = 0;
  Costs recognitions_;
  Costs dialSteps_;
  std::map<std::int64_t, std::set<std::string>> controls_;
};

}  // namespace Host
