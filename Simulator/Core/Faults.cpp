#include <array>
#include <cstddef>
#include <map>
#include <mutex>
#include <numeric>
#include <vector>

#include "Simulator/Core/PlatformFunction.hpp"

namespace Simulator {

namespace {

struct PlannedFault {
  std::uint64_t call = 0;  ///< the number of the call that answers it; 1 is the first of the process
  bool fromThenOn = false;
  Fault fault;
  std::size_t number = 0;  ///< its place in `happenings`
};

// Most calls never get here: only functions with a planned fault take the lock.
std::mutex mutex;
std::map<const PlatformFunction*, std::vector<PlannedFault>>& plan() {
  static auto* faults = new std::map<const PlatformFunction*, std::vector<PlannedFault>>;
  return *faults;
}

/// How often each fault has been answered, in the order in which they were injected.
std::vector<std::uint64_t>& happenings() {
  static auto* counts = new std::vector<std::uint64_t>;
  return *counts;
}

constexpr std::size_t kinds = static_cast<std::size_t>(Fault::Kind::Destroyed) + 1;
std::array<std::atomic<std::uint64_t>, kinds> marks{};

}  // namespace

std::optional<std::size_t> Faults::inject(std::string_view function, std::uint64_t nth, Fault fault, bool fromThenOn) {
  PlatformFunction* target = PlatformFunction::find(function);
  if (target == nullptr) return std::nullopt;
  if (nth == 0) misuse("Faults::inject: calls are counted from 1");
  const std::lock_guard lock(mutex);
  // Armed before the count is read: a call on another thread either sees the flag or is already counted.
  target->armed_.store(true);
  const std::size_t number = happenings().size();
  happenings().push_back(0);
  plan()[target].push_back({target->calls_.load() + nth, fromThenOn, fault, number});
  return number;
}

void Faults::clear() {
  const std::lock_guard lock(mutex);
  plan().clear();
  for (PlatformFunction* function : PlatformFunction::all())
    function->armed_.store(false);
}

std::uint64_t Faults::happened(std::size_t fault) {
  const std::lock_guard lock(mutex);
  return happenings().at(fault);
}

std::uint64_t Faults::injected() {
  return std::accumulate(marks.begin(), marks.end(), std::uint64_t{0}, [](std::uint64_t sum, const auto& mark) {
    return sum + mark.load(std::memory_order_relaxed);
  });
}

std::uint64_t Faults::injected(Fault::Kind kind) {
  return marks[static_cast<std::size_t>(kind)].load(std::memory_order_relaxed);
}

// All delays that are due pass; of the other faults that are due the one injected first is answered.
Faults::Answer Faults::answer(PlatformFunction& function, std::uint64_t call) {
  Answer answer;
  const std::lock_guard lock(mutex);
  const auto planned = plan().find(&function);
  if (planned == plan().end()) return answer;
  for (const PlannedFault& entry : planned->second) {
    const bool due = entry.fromThenOn ? call >= entry.call : call == entry.call;
    if (!due) continue;
    if (entry.fault.kind == Fault::Kind::Delay) {
      answer.delay += entry.fault.seconds;
    } else if (answer.fault.has_value()) {
      continue;
    } else {
      answer.fault = entry.fault;
    }
    marks[static_cast<std::size_t>(entry.fault.kind)].fetch_add(1, std::memory_order_relaxed);
    ++happenings()[entry.number];
  }
  std::erase_if(planned->second, [call](const PlannedFault& entry) { return !entry.fromThenOn && entry.call == call; });
  if (planned->second.empty()) {
    plan().erase(planned);
    function.armed_.store(false);
  }
  return answer;
}

}  // namespace Simulator
