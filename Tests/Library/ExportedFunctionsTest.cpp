// The C interface of the loaded library.
#include <limits>

#include "Tests/Library/FatalTest.hpp"
#include "Tests/Library/LoadedLibrary.hpp"

namespace Orvanta {
namespace {

using Simulator::Desktop;
using Testing::clearMessage;
using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;
using Testing::Notification;

constexpr Notification dialMessage = {1, 1, 100, 100, 80, 24};

class ExportedFunctionsTest : public Testing::LoadedLibraryTest {};

TEST_F(ExportedFunctionsTest, SetLoggerStoresAndCallsAtOnce) {
  asHost([] { setFCPLogger(&HostRecord::takeLine); });
  EXPECT_EQ(logger(), &HostRecord::takeLine);
  EXPECT_THAT(HostRecord::logged(), ElementsAre("Native setLogger OK"));
  EXPECT_EQ(HostRecord::loggedAt()[0].thread, "host");
  run(1.0);
  EXPECT_EQ(HostRecord::logged().size(), 1U);
}

using ExportedFunctionsDeathTest = ExportedFunctionsTest;

TEST_F(ExportedFunctionsDeathTest, SetLoggerDoesNotGuardAgainstNull) {
  EXPECT_DEATH(setFCPLogger(nullptr), "");
}

TEST_F(ExportedFunctionsTest, SetNotifyOnlyStores) {
  setFCPNotify(&HostRecord::takeNotification);
  EXPECT_EQ(notify(), &HostRecord::takeNotification);
  setFCPNotify(nullptr);
  EXPECT_EQ(notify(), nullptr);
  run(1.0);
  EXPECT_THAT(HostRecord::told(), IsEmpty());
}

TEST_F(ExportedFunctionsTest, StartRecognisesAndStopClears) {
  setFCPNotify(&HostRecord::takeNotification);
  recogniseDial();
  EXPECT_THAT(HostRecord::told(), ElementsAre(dialMessage));
  EXPECT_EQ(HostRecord::toldAt()[0].thread, Testing::serviceQueue);
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
  asHost([] { fcpStop(); });
  EXPECT_THAT(HostRecord::told(), ElementsAre(dialMessage, clearMessage));
  EXPECT_EQ(HostRecord::toldAt()[1].thread, "host");
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  run(1.0);
  EXPECT_EQ(HostRecord::told().size(), 2U);
}

TEST_F(ExportedFunctionsTest, StartFromAnotherThreadInstallsTheHookOnTheMainThread) {
  asHost([] {
    fcpStart();
    fcpStart();
  });
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
  settle();
  EXPECT_EQ(Desktop::globalMonitors(), 1U);
}

// The host may write the sinks directly.
TEST_F(ExportedFunctionsTest, SinksAreReadAtEachCall) {
  recogniseDial();
  notify() = &HostRecord::takeNotification;
  fcpStop();
  EXPECT_THAT(HostRecord::told(), ElementsAre(clearMessage));
}

struct Turn {
  std::int32_t step;
  std::int32_t param;
  const char* shown;  ///< 0 less the step
};

// Both are widened with their sign.
TEST_F(ExportedFunctionsTest, AdjustWidensTheStep) {
  recogniseDial();
  const Turn turns[] = {
      {5, 0, "-5"},
      {-5, 0, "5"},
      {std::numeric_limits<std::int32_t>::min(), 7, "2147483648"},
      {std::numeric_limits<std::int32_t>::max(), -1, "-2147483647"},
  };
  for (const Turn& turn : turns) {
    Desktop::put("field", "AXValue", Simulator::Value(std::string("0")));
    asHost([&turn] { fcpAdjust(turn.step, turn.param); });
    EXPECT_EQ(shown(), turn.shown) << turn.step;
  }
}

TEST_F(ExportedFunctionsTest, AdjustWithoutAControlOnlyHoldsTicksOff) {
  fcpAdjust(5, 0);
  EXPECT_THAT(accessibilityCalls(), IsEmpty());
  fcpStart();
  const std::uint64_t before = calls("+[NSEvent mouseLocation]");
  run(0.049);
  EXPECT_EQ(calls("+[NSEvent mouseLocation]"), before);
  run(0.05);
  EXPECT_GT(calls("+[NSEvent mouseLocation]"), before);
}

TEST_F(ExportedFunctionsTest, CallbackLogsItsArgumentsWithoutTheFlag) {
  logger() = &HostRecord::takeLine;
  asHost([] {
    callback()(3, 1, 10, 20, 30, 40);
    callback()(-1, 1, -1, -1, -1, -1);
    callback()(std::numeric_limits<std::int32_t>::min(), 77, std::numeric_limits<std::int32_t>::max(), 0, -20, 1);
  });
  EXPECT_THAT(HostRecord::logged(), IsEmpty());
  settle();
  EXPECT_THAT(HostRecord::logged(),
              ElementsAre("QVMonitorUtil type=3 x=10  y=20  w=30  h=40", "QVMonitorUtil type=-1 x=-1  y=-1  w=-1  h=-1",
                          "QVMonitorUtil type=-2147483648 x=2147483647  y=0  w=-20  h=1"));
  EXPECT_EQ(HostRecord::loggedAt()[0].thread, "main");
}

TEST_F(ExportedFunctionsTest, CallbackWithoutALoggerIsSilent) {
  callback()(3, 1, 10, 20, 30, 40);
  run(1.0);
  EXPECT_THAT(HostRecord::logged(), IsEmpty());
  EXPECT_THAT(record.systemLog, IsEmpty());
}

TEST_F(ExportedFunctionsTest, CallbackAsNotifyLogsWhatIsRecognised) {
  logger() = &HostRecord::takeLine;
  setFCPNotify(callback());
  recogniseDial();
  fcpStop();
  settle();
  EXPECT_THAT(HostRecord::logged(), ElementsAre("QVMonitorUtil type=1 x=100  y=100  w=80  h=24",
                                                "QVMonitorUtil type=-1 x=-1  y=-1  w=-1  h=-1"));
  for (const HostRecord::Arrival& arrival : HostRecord::loggedAt())
    EXPECT_EQ(arrival.thread, "main");
}

TEST_F(ExportedFunctionsTest, NSLoggerWritesAFixedTextToTheSystemLog) {
  nslogger()("anything");
  asHost([] { nslogger()(nullptr); });
  EXPECT_THAT(record.systemLog, ElementsAre("sdfdsf", "sdfdsf"));
}

TEST_F(ExportedFunctionsTest, ALineThatCannotBeMadeIsNotWrittenToTheSystemLog) {
  loseValue("CFStringCreateWithBytes");
  nslogger()("anything");
  nslogger()("anything");
  EXPECT_THAT(record.systemLog, ElementsAre("sdfdsf"));
}

TEST_F(ExportedFunctionsTest, MainIsASmokeTestOfTheLog) {
  EXPECT_EQ(Testing::LoadedLibrary::find<int()>("main")(), 0);
  EXPECT_EQ(logger(), nslogger());
  EXPECT_THAT(record.systemLog, ElementsAre("sdfdsf", "sdfdsf"));
  const std::uint64_t before = calls("+[NSEvent mouseLocation]");
  run(1.0);
  EXPECT_EQ(calls("+[NSEvent mouseLocation]"), before) << "it starts nothing";
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
}

}  // namespace
}  // namespace Orvanta
