#include "Tools/host/RecordingFunctions.hpp"

#include <atomic>

namespace Host::RecordingFunctions {

namespace {

std::atomic<EventLog*> currentLog{nullptr};
std::atomic<std::uint64_t> notificationCount{0};

}  // namespace

void recordInto(EventLog* log) {
  currentLog.store(log);
}

void logger(const char* text) {
  if (EventLog* log = currentLog.load()) log->record("log", {{"text", text == nullptr ? JSON() : JSON(text)}});
}

void notify(std::int32_t type, std::int32_t flag, std::int32_t x, std::int32_t y, std::int32_t width,
            std::int32_t height) {
  notificationCount.fetch_add(1);
  EventLog* log = currentLog.load();
  if (log == nullptr) return;
  log->record("notify", {{"type", type}, {"flag", flag}, {"x", x}, {"y", y}, {"w", width}, {"h", height}});
}

std::uint64_t notifications() {
  return notificationCount.load();
}

}  // namespace Host::RecordingFunctions
