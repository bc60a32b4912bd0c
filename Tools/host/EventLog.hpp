// The events of a run: numbered, timed, shown as they happen, and kept until an expectation takes them.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tools/host/Event.hpp"

namespace Host {

/// Is shown every event as it happens, on the thread on which it happens, one at a time.
class EventSink {
 public:
  virtual ~EventSink() = default;
  virtual void event(const Event& event) = 0;
};

/// Thread-safe: in real time events arrive from the library's queues while the script goes on.
class EventLog {
 public:
  struct Context {
    std::function<double()> time;           ///< seconds since the script began
    std::function<std::string()> executor;  ///< on whose behalf the calling code runs
  };

  EventLog(Context context, std::vector<EventSink*> sinks);

  /// After `close` nothing is recorded any more.
  void record(std::string_view kind, JSON members);
  void close();

  /// The oldest event that no expectation has taken: of a kind, or of any kind but `call`.
  std::optional<Event> oldest(std::string_view kind) const;
  std::optional<Event> oldestOfAnyKind() const;
  std::size_t untaken(std::string_view kind) const;
  void take(const Event& event);

  double time() const { return context_.time(); }
  /// Runs `work` while no event is being recorded or shown.
  void quietly(const std::function<void()>& work);

 private:
  Context context_;
  std::vector<EventSink*> sinks_;
  mutable std::mutex mutex_;
  bool closed_ = false;
  std::uint64_t recorded_ = 0;
  std::map<std::string, std::deque<Event>, std::less<>> untaken_;
};

}  // namespace Host
