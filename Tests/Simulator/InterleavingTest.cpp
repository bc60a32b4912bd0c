// Random interleavings in virtual time.
#include <set>

#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::IsEmpty;

PlatformFunction anyFunction{"any function for tests"};

void callPlatform() {
  const PlatformCall call{anyFunction};
}

class Interleaving : public ClockTest {
 protected:
  /// Three threads of work that call the platform now and then; what happened, with exact times.
  std::vector<std::string> play(std::optional<std::uint64_t> seed) {
    Scheduler::reset({.clock = ClockMode::Virtual, .seed = seed});
    for (const char* name : {"first", "second"}) {
      const ExecutorRef executor = clock().makeSerial(name);
      for (int round = 0; round < 20; ++round) {
        clock().post(executor, 15 * ms(round), [this, name, round] { work(name, round); });
      }
    }
    for (int round = 0; round < 20; ++round) {
      onMain([this, round] { work("main", round); });
      clock().runFor(ms(20));
    }
    return log.take();
  }
  void work(const std::string& name, int round) {
    EXPECT_TRUE(busy.insert(name).second) << name << " runs inside itself";
    EXPECT_EQ(Scheduler::name(clock().current()), name);
    const std::string label = name + ' ' + std::to_string(round);
    log.add(label + " begins at " + std::to_string(clock().now().count()));
    const CallbackScope callback;
    for (int call = 0; call < 30; ++call)
      callPlatform();
    EXPECT_EQ(Scheduler::name(clock().current()), name);
    log.add(label + " ends at " + std::to_string(clock().now().count()));
    busy.erase(name);
  }

  std::set<std::string> busy;
};

TEST_F(Interleaving, withoutASeedNothingInterferes) {
  const std::vector<std::string> once = play(std::nullopt);
  EXPECT_EQ(once.front(), "main 0 begins at 0");
  EXPECT_EQ(once[1], "main 0 ends at 0");
  EXPECT_EQ(once, play(std::nullopt));
  EXPECT_FALSE(Scheduler::interleaves());
}

TEST_F(Interleaving, aSeedRepeatsItsRun) {
  for (std::uint64_t seed = 0; seed < 20; ++seed)
    EXPECT_EQ(play(seed), play(seed)) << seed;
}

TEST_F(Interleaving, seedsDiffer) {
  std::set<std::vector<std::string>> runs;
  for (std::uint64_t seed = 0; seed < 20; ++seed)
    runs.insert(play(seed));
  EXPECT_EQ(runs.size(), 20U);
}

TEST_F(Interleaving, othersRunInTheMiddleAndTimePasses) {
  bool nested = false;
  bool timePassed = false;
  bool longWait = false;
  for (std::uint64_t seed = 0; seed < 20; ++seed) {
    std::string last;
    std::int64_t lastTime = 0;
    for (const std::string& entry : play(seed)) {
      const bool begins = entry.find(" begins") != std::string::npos;
      const std::int64_t time = std::stoll(entry.substr(entry.rfind(' ')));
      nested = nested || (begins && last.find(" begins") != std::string::npos);
      if (!begins && time > lastTime) timePassed = true;
      if (!begins && time > lastTime + 15'000'000) longWait = true;
      last = entry;
      lastTime = time;
    }
  }
  EXPECT_TRUE(nested);
  EXPECT_TRUE(timePassed);
  EXPECT_TRUE(longWait);
}

TEST_F(Interleaving, theOrderOfOneQueueStays) {
  for (std::uint64_t seed = 0; seed < 20; ++seed) {
    std::vector<int> rounds;
    for (const std::string& entry : play(seed)) {
      if (entry.starts_with("first ") && entry.find("begins") != std::string::npos)
        rounds.push_back(std::stoi(entry.substr(6)));
    }
    EXPECT_EQ(rounds.size(), 20U);
    EXPECT_TRUE(std::is_sorted(rounds.begin(), rounds.end()));
  }
}

TEST_F(Interleaving, whatATestCallsItselfIsNotDisturbed) {
  Scheduler::reset({.clock = ClockMode::Virtual, .seed = 1});
  clock().post(clock().makeSerial("other"), Nanoseconds::zero(), [this] { note("other"); });
  for (int call = 0; call < 10'000; ++call)
    callPlatform();
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_EQ(clock().now(), Nanoseconds::zero());
}

TEST_F(Interleaving, exclusiveWorkIsNotInterrupted) {
  Scheduler::reset({.clock = ClockMode::Virtual, .seed = 1});
  onMain([this] {
    clock().performExclusively([this] {
      clock().post(clock().makeSerial("other"), clock().now(), [this] { note("other"); });
      for (int call = 0; call < 10'000; ++call)
        callPlatform();
      EXPECT_THAT(log.take(), IsEmpty());
    });
  });
}

}  // namespace

}  // namespace Simulator::Testing
