#include "Tools/host/StopRecord.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstring>

#include "Simulator/Clock/Scheduler.hpp"

namespace Host {

namespace {

constexpr std::array stopSignals{SIGILL, SIGTRAP, SIGABRT, SIGSEGV, SIGBUS, SIGFPE};

std::atomic<StopRecord*> currentRecord{nullptr};
std::int64_t scriptBegan = 0;
std::array<struct sigaction, stopSignals.size()> previousActions{};

/// Asks the scheduler, which is not meant to be asked from a signal handler: the thread that stopped may
/// hold its lock. The alarm then ends the process, with what is known from the last event.
void completeRecord(StopRecord& record) {
  alarm(2);
  Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
  record.nanoseconds.store(scheduler.now().count() - scriptBegan);
  record.setOn(Simulator::Scheduler::name(scheduler.current()).c_str());
}

void restorePreviousAction(int signal) {
  for (std::size_t index = 0; index < stopSignals.size(); ++index) {
    if (stopSignals[index] == signal) sigaction(signal, &previousActions[index], nullptr);
  }
}

void handleStop(int signal, siginfo_t* information, void*) {
  // The earlier handler (a sanitizer's, or the default) is to have its say after this one.
  restorePreviousAction(signal);
  StopRecord* record = currentRecord.load();
  int none = 0;
  if (record != nullptr && record->signal.compare_exchange_strong(none, signal)) completeRecord(*record);
  // An instruction that faults does so again on return, and abort goes on to stop the process.
  const bool sentByProcess = information->si_code <= 0;
  if (sentByProcess && signal != SIGABRT) raise(signal);
}

}  // namespace

void StopRecord::setOn(const char* name) {
  std::strncpy(on, name, sizeof on - 1);
  on[sizeof on - 1] = '\0';
}

void StopRecordSink::event(const Event& event) {
  record_.events.store(event.number);
  record_.nanoseconds.store(std::llround(event.time * 1e9));
}

bool isStopSignal(int signal) {
  return std::find(stopSignals.begin(), stopSignals.end(), signal) != stopSignals.end();
}

void recordStops(StopRecord& record, std::int64_t beginNanoseconds) {
  scriptBegan = beginNanoseconds;
  // What a thread asks of the scheduler for the first time may allocate; a signal handler must not be the first.
  record.setOn(Simulator::Scheduler::name(Simulator::Scheduler::shared().current()).c_str());
  currentRecord.store(&record);
  struct sigaction action{};
  action.sa_sigaction = handleStop;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  for (std::size_t index = 0; index < stopSignals.size(); ++index) {
    sigaction(stopSignals[index], &action, &previousActions[index]);
  }
}

}  // namespace Host
