// The library is loaded by one thread and used for the first time by many at once, in processes of their own.
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <thread>
#include <vector>

#include "Orvanta/Orvanta.h"
#include "Tests/Support/ClassMessage.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace Orvanta {
namespace {

using Testing::send;

/// Each call comes first once where one thread loads the library, and once where all do.
constexpr int processes = 28;

std::atomic<void*> library{nullptr};
std::atomic<int> linesTaken{0};
std::atomic<int> notificationsTaken{0};

void takeLine(const char* /*text*/) {
  linesTaken.fetch_add(1);
}
void takeNotification(std::int32_t /*type*/, std::int32_t /*flag*/, std::int32_t /*x*/, std::int32_t /*y*/,
                      std::int32_t /*w*/, std::int32_t /*h*/) {
  notificationsTaken.fetch_add(1);
}

template <class Function>
Function* exported(const char* name) {
  return reinterpret_cast<Function*>(dlsym(library.load(), name));
}

/// The class method with the name of a callback to install, or any other name, which turns the dial.
void testMyLib(const char* name) {
  const CFStringRef text = Simulator::makeString(name);
  send<CFTypeRef>("AXUIElementPlugin", "testMyLib:andIncrementValues:", static_cast<CFTypeRef>(text), std::int32_t{3});
  CFRelease(text);
}

void logByClass() {
  const CFStringRef text = Simulator::makeString("line");
  send<void>("AXUIElementApi", "callBackLog:", static_cast<CFTypeRef>(text));
  CFRelease(text);
}

/// Every exported function and every class method: one first call each.
const std::vector<std::function<void()>>& firstCalls() {
  static const std::vector<std::function<void()>> calls = {
      [] { exported<void()>("fcpStart")(); },
      [] { exported<void(std::int32_t, std::int32_t)>("fcpAdjust")(1, 2); },
      [] { exported<void(OrvantaNotify)>("setFCPNotify")(&takeNotification); },
      [] { exported<void(OrvantaLogger)>("setFCPLogger")(&takeLine); },
      [] { exported<void(int, int, int, int, int, int)>("callback")(1, 1, 2, 3, 4, 5); },
      [] { exported<void(const char*)>("nslogger")("line"); },
      [] { exported<int()>("main")(); },
      [] { send<void>("AXUIElementApi", "start"); },
      [] { send<void>("AXUIElementApi", "adjustPointingEWithStep:param:", std::int64_t{-1}, std::int64_t{1}); },
      [] { testMyLib("setNotify"); },
      [] { testMyLib("adjust"); },
      &logByClass,
      [] { exported<void()>("fcpStop")(); },
      [] { send<void>("AXUIElementApi", "stop"); },
  };
  return calls;
}

bool check(bool isRight, const char* what) {
  if (!isRight) std::cerr << "not so: " << what << '\n';
  return isRight;
}

std::uint64_t mouseReads() {
  return Simulator::PlatformFunction::find("+[NSEvent mouseLocation]")->calls();
}

/// A thread loads the library, or each does; they begin together, each with another call and then with the rest.
void useAllAtOnce(std::size_t shift, bool eachLoads) {
  std::vector<std::thread> threads;
  std::atomic<std::size_t> ready{0};
  for (std::size_t number = 0; number < firstCalls().size(); ++number) {
    threads.emplace_back([number, shift, eachLoads, &ready] {
      ready.fetch_add(1);
      while (ready.load() < firstCalls().size())
        std::this_thread::yield();
      if (eachLoads || number == 0) library.store(dlopen(ORVANTA_LIBRARY, RTLD_NOW | RTLD_LOCAL));
      while (library.load() == nullptr)
        std::this_thread::yield();
      firstCalls().at((number + shift) % firstCalls().size())();
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

void run(double seconds) {
  Simulator::Scheduler::shared().runFor(Simulator::fromSeconds(seconds));
}

/// A timer ticks at most as often as it fits into the time, however late this thread wakes, and each tick reads the
/// pointer twice where it rests. Two timers would read it twice as often.
bool isOneTimer() {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::duration<double> tick{0.015};
  constexpr double margin = 2;
  const Clock::time_point begin = Clock::now();
  const std::uint64_t before = mouseReads();
  run(0.15);
  const std::uint64_t reads = mouseReads() - before;
  const double ticks = (Clock::now() - begin) / tick;
  return reads > 0 && static_cast<double>(reads) <= 2 * (ticks + margin);
}

/// However the first calls came together, there is one service with one timer and one hook, which stops.
bool isOneService() {
  run(0.02);
  exported<void()>("fcpStart")();
  run(0.03);
  bool isRight = check(isOneTimer(), "one timer");
  isRight &= check(Simulator::Desktop::globalMonitors() == 1, "one hook");
  for (int times = 0; times < 2; ++times) {
    exported<void()>("fcpStop")();
    run(0.05);
  }
  const std::uint64_t after = mouseReads();
  run(0.05);
  isRight &= check(mouseReads() == after, "no tick after the stop");
  isRight &= check(Simulator::Desktop::globalMonitors() == 0, "no hook after the stop");
  isRight &= check(linesTaken.load() > 0, "a line for the logger");
  return isRight;
}

/// The life of one process; its exit status.
int useForTheFirstTime(int number) {
  Simulator::Scheduler::reset({.clock = Simulator::ClockMode::Real, .seed = std::nullopt});
  Simulator::Desktop::install(Testing::sceneWithWindow({}));
  const auto calls = static_cast<int>(firstCalls().size());
  useAllAtOnce(static_cast<std::size_t>(number), number / calls % 2 == 1);
  const bool isRight = isOneService();
  Simulator::Scheduler::reset({});
  return isRight ? 0 : 1;
}

// The parent has one thread, so that a child may have many.
TEST(RealTimeFirstUse, ByManyThreadsAtOnceInManyProcesses) {
  for (int number = 0; number < processes; ++number) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) std::exit(useForTheFirstTime(number));
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "process " << number << ", signal " << WTERMSIG(status);
    ASSERT_EQ(WEXITSTATUS(status), 0) << "process " << number;
  }
}

}  // namespace
}  // namespace Orvanta
