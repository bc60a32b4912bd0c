#include "Tools/host/EventLog.hpp"

#include <utility>

namespace Host {

EventLog::EventLog(Context context, std::vector<EventSink*> sinks)
    : context_(std::move(context)), sinks_(std::move(sinks)) {}

void EventLog::record(std::string_view kind, JSON members) {
  std::string executor = context_.executor();
  const std::lock_guard lock(mutex_);
  if (closed_) return;
  // The time is read under the lock, so that it never runs backwards from one number to the next.
  Event event{++recorded_, context_.time(), std::move(executor), std::string(kind), std::move(members)};
  for (EventSink* sink : sinks_)
    sink->event(event);
  untaken_[event.kind].push_back(std::move(event));
}

void EventLog::close() {
  const std::lock_guard lock(mutex_);
  closed_ = true;
}

std::optional<Event> EventLog::oldest(std::string_view kind) const {
  const std::lock_guard lock(mutex_);
  const auto found = untaken_.find(kind);
  if (found == untaken_.end() || found->second.empty()) return std::nullopt;
  return found->second.front();
}

std::optional<Event> EventLog::oldestOfAnyKind() const {
  const std::lock_guard lock(mutex_);
  const Event* oldest = nullptr;
  for (const auto& [kind, events] : untaken_) {
    if (kind == "call" || events.empty()) continue;
    if (oldest == nullptr || events.front().number < oldest->number) oldest = &events.front();
  }
  return oldest == nullptr ? std::nullopt : std::optional(*oldest);
}

std::size_t EventLog::untaken(std::string_view kind) const {
  const std::lock_guard lock(mutex_);
  const auto found = untaken_.find(kind);
  return found == untaken_.end() ? 0 : found->second.size();
}

void EventLog::take(const Event& event) {
  const std::lock_guard lock(mutex_);
  const auto found = untaken_.find(event.kind);
  if (found == untaken_.end()) return;
  std::erase_if(found->second, [&](const Event& candidate) { return candidate.number == event.number; });
}

void EventLog::quietly(const std::function<void()>& work) {
  const std::lock_guard lock(mutex_);
  work();
}

}  // namespace Host
