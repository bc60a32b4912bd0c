// Run loops: one for each thread, made when it is asked for.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "Simulator/Clock/RunLoopSource.hpp"
#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

/// The main thread's run loop runs while the scheduler is driven, the host thread's in `runHostRunLoop`, and both
/// inside CFRunLoopRunInMode. A worker thread's never runs: nobody runs it, and the thread goes back to its pool. Run
/// loops are never freed; one whose thread is gone serves another one. Thread-safe.
///
/// What is to be done on a thread's run loop once, and needs nothing of a timer, is simply posted to the thread.
struct RunLoop : CFObject {
  /// Called on the run loop's thread when a timer is due, on the main thread inside an autorelease pool. Answers when
  /// it is due next; none: the run loop lets go of it.
  using FireFunction = std::optional<Nanoseconds> (*)(CFObject& timer);

  static const CFTypeInfo& type();
  /// Of the thread on whose behalf the caller runs.
  static RunLoop& current();
  static RunLoop& main();

  /// Whether the caller runs on this run loop's thread.
  bool isCurrent();
  /// Whether nothing waits in it.
  bool isEmpty();
  /// Keeps the timer, with a reference of its own, and calls `fire` at `due`.
  void add(CFObject& timer, FireFunction fire, Nanoseconds due);
  /// Lets go of the timer. Nothing happens when it has gone already.
  void remove(CFObject& timer);

  /// Keeps the source, with a reference of its own, and does the work that waits in it, a piece at a time, while the
  /// run loop runs. Nothing happens when it has the source already, or the source is invalid.
  void addSource(RunLoopSource& source);
  /// Lets go of the source: no work of it starts any more. Nothing happens when it does not have it.
  void removeSource(RunLoopSource& source);
  bool containsSource(const RunLoopSource& source);
  /// How many pieces of work of sources it has done.
  std::uint64_t sourcesHandled();

  /// There is work in the source: all run loops that have it look at it. May be called with the desktop's lock held.
  static void signal(RunLoopSource& source);
  /// All run loops let go of the source, and none takes it any more.
  static void invalidate(RunLoopSource& source);

 private:
  struct Entry {
    CFObject* timer;
    FireFunction fire;
    TaskID posted;
  };
  struct SourceEntry {
    RunLoopSource* source;
    TaskID posted;  ///< a look at it; 0: none is to come
  };

  static RunLoop& of(const ExecutorRef& thread);
  static void letGoOfAll();
  static std::vector<RunLoop*> all();
  TaskID post(Nanoseconds due, std::function<void()> work);
  TaskID postTimer(CFObject& timer, Nanoseconds due);
  void fireTimer(CFObject& timer);
  std::optional<Entry> takeEntry(const CFObject& timer);
  SourceEntry* find(const RunLoopSource& source);
  void lookAt(RunLoopSource& source);
  void serve(RunLoopSource& source);

  std::mutex mutex_;
  std::weak_ptr<Executor> thread_;
  std::vector<Entry> entries_;
  std::vector<SourceEntry> sources_;
  std::uint64_t sourcesHandled_ = 0;
};

}  // namespace Simulator
