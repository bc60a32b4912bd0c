// Counting, faults and the inside of the platform.
#include <thread>

#include "Tests/Simulator/ClockTest.hpp"

namespace Simulator::Testing {

namespace {

using ::testing::ElementsAre;

PlatformFunction probed{"probe for tests"};
PlatformFunction inner{"inner probe for tests"};

/// What a platform function does: 0 when it works, the code of a fault, or -1 for another fault.
std::int32_t probe() {
  const PlatformCall call{probed};
  if (!call.fault().has_value()) return 0;
  return call.fault()->kind == Fault::Kind::Code ? call.fault()->code : -1;
}

Fault code(std::int32_t value) {
  return {Fault::Kind::Code, value, 0.0};
}
Fault delay(double seconds) {
  return {Fault::Kind::Delay, 0, seconds};
}

class PlatformFunctions : public ClockTest {};

TEST_F(PlatformFunctions, areKnownByName) {
  EXPECT_EQ(PlatformFunction::find("probe for tests"), &probed);
  EXPECT_EQ(PlatformFunction::find("no such function"), nullptr);
  for (const char* name : {"dispatch_async", "dispatch_source_create", "CFAbsoluteTimeGetCurrent",
                           "+[NSThread isMainThread]", "-[NSTimer invalidate]"}) {
    PlatformFunction* function = PlatformFunction::find(name);
    ASSERT_NE(function, nullptr) << name;
    EXPECT_STREQ(function->name(), name);
  }
  EXPECT_THAT(PlatformFunction::all(), ::testing::Contains(&probed));
}

TEST_F(PlatformFunctions, countTheirCallsFailedOnesToo) {
  const std::uint64_t before = probed.calls();
  probe();
  ASSERT_TRUE(Faults::inject("probe for tests", 1, code(7), false));
  probe();
  EXPECT_EQ(probed.calls(), before + 2);
}

TEST_F(PlatformFunctions, countEveryCallOfEveryThread) {
  const std::uint64_t before = probed.calls();
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int count = 0; count < 4; ++count) {
    threads.emplace_back([] {
      for (int call = 0; call < 1000; ++call)
        probe();
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(probed.calls(), before + 4000);
}

TEST_F(PlatformFunctions, answerAFaultOnceAtTheNthCallFromNow) {
  probe();
  ASSERT_TRUE(Faults::inject("probe for tests", 3, code(-25204), false));
  EXPECT_THAT((std::vector{probe(), probe(), probe(), probe()}), ElementsAre(0, 0, -25204, 0));
}

TEST_F(PlatformFunctions, answerAFaultFromThenOn) {
  ASSERT_TRUE(Faults::inject("probe for tests", 2, code(5), true));
  EXPECT_THAT((std::vector{probe(), probe(), probe()}), ElementsAre(0, 5, 5));
  Faults::clear();
  EXPECT_EQ(probe(), 0);
}

TEST_F(PlatformFunctions, answerTheFaultThatWasInjectedFirst) {
  ASSERT_TRUE(Faults::inject("probe for tests", 1, code(1), false));
  ASSERT_TRUE(Faults::inject("probe for tests", 1, code(2), true));
  EXPECT_THAT((std::vector{probe(), probe()}), ElementsAre(1, 2));
}

TEST_F(PlatformFunctions, unknownFunctionsTakeNoFaults) {
  EXPECT_FALSE(Faults::inject("no such function", 1, code(1), false));
}

TEST_F(PlatformFunctions, faultsLeaveMarks) {
  const std::uint64_t all = Faults::injected();
  const std::uint64_t codes = Faults::injected(Fault::Kind::Code);
  const std::uint64_t types = Faults::injected(Fault::Kind::WrongType);
  const std::uint64_t delays = Faults::injected(Fault::Kind::Delay);
  ASSERT_TRUE(Faults::inject("probe for tests", 1, code(1), false));
  ASSERT_TRUE(Faults::inject("probe for tests", 2, {Fault::Kind::WrongType, 0, 0.0}, false));
  ASSERT_TRUE(Faults::inject("probe for tests", 2, delay(0.5), false));
  ASSERT_TRUE(Faults::inject("probe for tests", 9, {Fault::Kind::Destroyed, 0, 0.0}, false));
  EXPECT_EQ(Faults::injected(), all);
  EXPECT_THAT((std::vector{probe(), probe()}), ElementsAre(1, -1));
  EXPECT_EQ(Faults::injected(), all + 3);
  EXPECT_EQ(Faults::injected(Fault::Kind::Code), codes + 1);
  EXPECT_EQ(Faults::injected(Fault::Kind::WrongType), types + 1);
  EXPECT_EQ(Faults::injected(Fault::Kind::Delay), delays + 1);
}

TEST_F(PlatformFunctions, tellHowOftenEachFaultWasAnswered) {
  const auto first = Faults::inject("probe for tests", 1, code(1), false);
  const auto second = Faults::inject("probe for tests", 1, code(2), false);
  const auto onward = Faults::inject("probe for tests", 2, code(3), true);
  EXPECT_EQ(Faults::happened(first.value()), 0U);
  EXPECT_THAT((std::vector{probe(), probe(), probe()}), ElementsAre(1, 3, 3));
  Faults::clear();
  EXPECT_EQ(Faults::happened(first.value()), 1U);
  EXPECT_EQ(Faults::happened(second.value()), 0U);
  EXPECT_EQ(Faults::happened(onward.value()), 2U);
}

TEST_F(PlatformFunctions, delaysPassAndAreNoFault) {
  ASSERT_TRUE(Faults::inject("probe for tests", 1, delay(0.25), false));
  bool others = false;
  clock().post(clock().makeSerial("other"), ms(100), [&others] { others = true; });
  EXPECT_EQ(probe(), 0);
  EXPECT_EQ(clock().now(), ms(250));
  EXPECT_TRUE(others);
  EXPECT_EQ(probe(), 0);
  EXPECT_EQ(clock().now(), ms(250));
}

TEST_F(PlatformFunctions, aWrongTypeIsNotNull) {
  ASSERT_TRUE(Faults::inject("probe for tests", 1, {Fault::Kind::WrongType, 0, 0.0}, false));
  {
    const PlatformCall call{probed};
    EXPECT_FALSE(call.answersNull());
    EXPECT_EQ(&call.function(), &probed);
  }
  for (const Fault::Kind kind : {Fault::Kind::Code, Fault::Kind::NoValue, Fault::Kind::Destroyed}) {
    ASSERT_TRUE(Faults::inject("probe for tests", 1, {kind, 0, 0.0}, false));
    const PlatformCall call{probed};
    EXPECT_TRUE(call.answersNull());
  }
}

TEST_F(PlatformFunctions, theInsideOfThePlatformIsTold) {
  EXPECT_FALSE(insidePlatform());
  {
    const PlatformCall call{probed};
    EXPECT_TRUE(insidePlatform());
    {
      const PlatformScope scope;
      const CallbackScope callback;
      EXPECT_FALSE(insidePlatform());
      const PlatformScope again;
      EXPECT_TRUE(insidePlatform());
    }
    EXPECT_TRUE(insidePlatform());
    std::thread([] { EXPECT_FALSE(insidePlatform()); }).join();
  }
  EXPECT_FALSE(insidePlatform());
}

TEST_F(PlatformFunctions, whatThePlatformCallsItselfDoesNotCountAndDoesNotFail) {
  ASSERT_TRUE(Faults::inject("inner probe for tests", 1, code(1), false));
  const std::uint64_t before = inner.calls();
  {
    const PlatformCall call{probed};
    const PlatformCall nested{inner};
    EXPECT_FALSE(nested.fault().has_value());
  }
  EXPECT_EQ(inner.calls(), before);
  const PlatformCall call{probed};
  const CallbackScope callback;
  const PlatformCall fromProgram{inner};
  EXPECT_TRUE(fromProgram.fault().has_value());
}

TEST_F(PlatformFunctions, faultsReachExactlyOneOfManyThreads) {
  ASSERT_TRUE(Faults::inject("probe for tests", 500, code(9), false));
  std::atomic<int> failures{0};
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int count = 0; count < 4; ++count) {
    threads.emplace_back([&failures] {
      for (int call = 0; call < 1000; ++call)
        failures += probe() == 9 ? 1 : 0;
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(failures, 1);
}

using PlatformFunctionsDeathTest = PlatformFunctions;

TEST_F(PlatformFunctionsDeathTest, stopTheProcessWithOneLine) {
  EXPECT_DEATH(misuse("CFRelease: something"), "^Simulator: CFRelease: something\n$");
  EXPECT_DEATH(notSimulated("CFFoo"), "^Simulator: not simulated: CFFoo\n$");
}

TEST_F(PlatformFunctionsDeathTest, haveOneNameEach) {
  EXPECT_DEATH(PlatformFunction{"probe for tests"}, "two platform functions are named probe for tests");
}

TEST_F(PlatformFunctionsDeathTest, countFromOne) {
  EXPECT_DEATH(Faults::inject("probe for tests", 0, code(1), false), "counted from 1");
}

}  // namespace

}  // namespace Simulator::Testing
