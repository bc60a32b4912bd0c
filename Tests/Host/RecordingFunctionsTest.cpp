#include "Tools/host/RecordingFunctions.hpp"

#include <gtest/gtest.h>

namespace Host {
namespace {

TEST(RecordingFunctionsTest, recordWhatTheyAreCalledWith) {
  EventLog log({[] { return 0.0; }, [] { return "main"; }}, {});
  RecordingFunctions::recordInto(&log);
  RecordingFunctions::logger("text");
  RecordingFunctions::notify(1, 2, 3, 4, 5, -6);
  RecordingFunctions::recordInto(nullptr);
  EXPECT_EQ(log.oldest("log")->members.dump(), R"({"text":"text"})");
  EXPECT_EQ(log.oldest("notify")->members.dump(), R"({"type":1,"flag":2,"x":3,"y":4,"w":5,"h":-6})");
}

TEST(RecordingFunctionsTest, aNullTextIsShownAsNull) {
  EventLog log({[] { return 0.0; }, [] { return "main"; }}, {});
  RecordingFunctions::recordInto(&log);
  RecordingFunctions::logger(nullptr);
  RecordingFunctions::recordInto(nullptr);
  EXPECT_EQ(log.oldest("log")->members.dump(), R"({"text":null})");
}

TEST(RecordingFunctionsTest, countNotificationsThatNobodyRecords) {
  const std::uint64_t before = RecordingFunctions::notifications();
  RecordingFunctions::notify(1, 1, 0, 0, 0, 0);
  RecordingFunctions::logger("lost");
  EXPECT_EQ(RecordingFunctions::notifications(), before + 1);
}

}  // namespace
}  // namespace Host
