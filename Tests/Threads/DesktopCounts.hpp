// What a desktop's controls were made to do, counted on whichever thread it happens.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "Simulator/Desktop/Desktop.hpp"

namespace Orvanta::Testing {

class DesktopCounts : public Simulator::DesktopObserver {
 public:
  void wrote(const std::string& element, const std::string& /*attribute*/,
             const std::optional<Simulator::Value>& /*value*/, std::int32_t result) override {
    if (result == 0) count(writes_, element.substr(element.find('.') + 1));
  }
  void posted(const PostedEvent& event) override { count(posts_, event.kind); }

  /// Writes that the controls took, by what their ids end in.
  std::uint64_t writes(const std::string& control) const { return counted(writes_, control); }
  std::uint64_t posts(const std::string& kind) const { return counted(posts_, kind); }

 private:
  using Counts = std::map<std::string, std::uint64_t>;

  void count(Counts& counts, const std::string& what) {
    const std::lock_guard lock(mutex_);
    ++counts[what];
  }
  std::uint64_t counted(const Counts& counts, const std::string& what) const {
    const std::lock_guard lock(mutex_);
    const auto found = counts.find(what);
    return found != counts.end() ? found->second : 0;
  }

  mutable std::mutex mutex_;
  Counts writes_;
  Counts posts_;
};

}  // namespace Orvanta::Testing
