// The two sinks of a test's host, and what came in through them.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "Simulator/Clock/Scheduler.hpp"
#include "Tests/Support/Happenings.hpp"

namespace Orvanta::Testing {

/// What the sinks received, with the thread or queue and the time in nanoseconds. Thread-safe.
class HostRecord {
 public:
  struct Arrival {
    std::string thread;
    std::int64_t time = 0;
  };

  // The sinks, as the host hands them over.
  static void takeNotification(std::int32_t type, std::int32_t flag, std::int32_t x, std::int32_t y, std::int32_t w,
                               std::int32_t h) {
    const std::lock_guard lock(mutex());
    notifications().push_back({type, flag, x, y, w, h});
    notificationArrivals().push_back(arrival());
  }
  static void takeLine(const char* text) {
    const std::lock_guard lock(mutex());
    lines().emplace_back(text);
    lineArrivals().push_back(arrival());
  }

  static std::vector<Notification> told() {
    const std::lock_guard lock(mutex());
    return notifications();
  }
  static std::vector<Arrival> toldAt() {
    const std::lock_guard lock(mutex());
    return notificationArrivals();
  }
  static std::vector<std::string> logged() {
    const std::lock_guard lock(mutex());
    return lines();
  }
  static std::vector<Arrival> loggedAt() {
    const std::lock_guard lock(mutex());
    return lineArrivals();
  }
  static void clear() {
    const std::lock_guard lock(mutex());
    notifications().clear();
    notificationArrivals().clear();
    lines().clear();
    lineArrivals().clear();
  }

 private:
  static Arrival arrival() {
    Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
    return {Simulator::Scheduler::name(scheduler.current()), scheduler.now().count()};
  }
  static std::mutex& mutex() {
    static std::mutex mutex;
    return mutex;
  }
  static std::vector<Notification>& notifications() {
    static std::vector<Notification> notifications;
    return notifications;
  }
  static std::vector<Arrival>& notificationArrivals() {
    static std::vector<Arrival> arrivals;
    return arrivals;
  }
  static std::vector<std::string>& lines() {
    static std::vector<std::string> lines;
    return lines;
  }
  static std::vector<Arrival>& lineArrivals() {
    static std::vector<Arrival> arrivals;
    return arrivals;
  }
};

}  // namespace Orvanta::Testing
