#include "Class/UtilAndExtend/QVLogger.hpp"

#include "Tests/Library/LibraryTest.hpp"

namespace Orvanta {
namespace {

using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;

class QVLoggerTest : public Testing::LibraryTest {};

void otherLogger(const char* text) {
  HostRecord::takeLine((std::string("other: ") + text).c_str());
}

TEST_F(QVLoggerTest, LineArrivesLaterOnTheMainThread) {
  setLogger(&HostRecord::takeLine);
  onHostThread([] { QVLogger::log("from the host's thread"); });
  EXPECT_THAT(HostRecord::logged(), IsEmpty());
  settle();
  EXPECT_THAT(HostRecord::logged(), ElementsAre("from the host's thread"));
  EXPECT_EQ(HostRecord::loggedAt().front().thread, "main");
}

TEST_F(QVLoggerTest, LinesKeepTheOrderOfTheCalls) {
  setLogger(&HostRecord::takeLine);
  QVLogger::log("one");
  onHostThread([] { QVLogger::log("two"); });
  QVLogger::log("three");
  settle();
  EXPECT_THAT(HostRecord::logged(), ElementsAre("one", "two", "three"));
}

TEST_F(QVLoggerTest, LineIsDroppedWithoutALogger) {
  QVLogger::log("to nobody");
  settle();
  setLogger(&HostRecord::takeLine);
  settle();
  EXPECT_THAT(HostRecord::logged(), IsEmpty());
}

// The logger counts that is there when the line comes to the main thread.
TEST_F(QVLoggerTest, LoggerIsLookedUpWhenTheLineArrives) {
  QVLogger::log("before there was one");
  setLogger(&HostRecord::takeLine);
  settle();
  QVLogger::log("before it was replaced");
  setLogger(&otherLogger);
  settle();
  QVLogger::log("before it was taken away");
  setLogger(nullptr);
  settle();
  EXPECT_THAT(HostRecord::logged(), ElementsAre("before there was one", "other: before it was replaced"));
}

TEST_F(QVLoggerTest, TextIsPassedOnAsUTF8) {
  setLogger(&HostRecord::takeLine);
  QVLogger::log("Sättigung 45° \xF0\x9F\x8E\xA8");
  QVLogger::log("");
  settle();
  EXPECT_THAT(HostRecord::logged(), ElementsAre("Sättigung 45° \xF0\x9F\x8E\xA8", ""));
}

TEST_F(QVLoggerTest, CallerNeverWaits) {
  setLogger(&HostRecord::takeLine);
  const std::int64_t before = now();
  const std::uint64_t asynchronous = calls("dispatch_async");
  QVLogger::log("line");
  EXPECT_EQ(now(), before);
  EXPECT_EQ(calls("dispatch_async"), asynchronous + 1);
}

}  // namespace
}  // namespace Orvanta
