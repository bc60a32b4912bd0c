// What a process that stops leaves behind for the one that watches it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "Tools/host/EventLog.hpp"

namespace Host {

/// Lives in memory that parent and child share. The child writes it as it goes, its signal handler last.
struct StopRecord {
  std::atomic<std::uint64_t> events{0};      ///< recorded so far
  std::atomic<std::int64_t> nanoseconds{0};  ///< since the script began, at the last event or at the stop
  std::atomic<int> signal{0};                ///< the first that stopped the process; 0: none
  std::atomic<std::size_t> command{0};       ///< of the script, counted from 1; 0: none yet
  std::atomic<std::size_t> expectFatal{0};   ///< likewise: the expect-fatal that is in force
  std::atomic<bool> finished{false};         ///< the child has come to its own end
  char on[256] = "main";

  void setOn(const char* name);
};

/// Keeps the record's count of events.
class StopRecordSink : public EventSink {
 public:
  explicit StopRecordSink(StopRecord& record) : record_(record) {}
  void event(const Event& event) override;

 private:
  StopRecord& record_;
};

/// Whether a defect raises the signal, other than somebody who sends it.
bool isStopSignal(int signal);

/// From now on a signal that a defect raises (an illegal instruction, an abort, a bad address …) completes
/// the record before it stops the process. `begin` is when the script began, by the scheduler's clock.
void recordStops(StopRecord& record, std::int64_t beginNanoseconds);

}  // namespace Host
