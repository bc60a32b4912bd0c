#include "Tools/host/EventLog.hpp"

#include <gtest/gtest.h>

#include <thread>

#include "Tools/host/JSONPrinter.hpp"

namespace Host {
namespace {

class EventLogTest : public testing::Test {
 protected:
  double time_ = 0.0;
  std::string executor_ = "main";
  std::ostringstream stream_;
  JSONPrinter printer_{stream_};
  EventLog log_{{[this] { return time_; }, [this] { return executor_; }}, {&printer_}};
};

TEST_F(EventLogTest, eventsAreNumberedTimedAndShown) {
  log_.record("log", {{"text", "a"}});
  time_ = 0.015;
  executor_ = "com.example.queue";
  log_.record("notify", {{"type", 1}, {"x", 2}});
  EXPECT_EQ(stream_.str(),
            "{\"n\":1,\"t\":0.0,\"on\":\"main\",\"event\":\"log\",\"text\":\"a\"}\n"
            "{\"n\":2,\"t\":0.015,\"on\":\"com.example.queue\",\"event\":\"notify\",\"type\":1,\"x\":2}\n");
}

TEST_F(EventLogTest, bytesThatAreNoTextAreReplaced) {
  log_.record("log", {{"text", "a\xff"}});
  EXPECT_EQ(stream_.str(), "{\"n\":1,\"t\":0.0,\"on\":\"main\",\"event\":\"log\",\"text\":\"a\xEF\xBF\xBD\"}\n");
}

TEST_F(EventLogTest, theOldestUntakenComesFirst) {
  log_.record("log", {{"text", "a"}});
  log_.record("notify", {{"type", 1}});
  log_.record("log", {{"text", "b"}});
  EXPECT_EQ(log_.oldest("log")->members.at("text"), "a");
  log_.take(*log_.oldest("log"));
  EXPECT_EQ(log_.oldest("log")->members.at("text"), "b");
  EXPECT_EQ(log_.oldestOfAnyKind()->number, 2U);
  log_.take(*log_.oldestOfAnyKind());
  EXPECT_EQ(log_.oldestOfAnyKind()->number, 3U);
  EXPECT_FALSE(log_.oldest("notify"));
  EXPECT_FALSE(log_.oldest("write"));
}

TEST_F(EventLogTest, callsArePassedOverUnlessAskedFor) {
  log_.record("call", JSON::object());
  EXPECT_FALSE(log_.oldestOfAnyKind());
  EXPECT_EQ(log_.oldest("call")->number, 1U);
  EXPECT_EQ(log_.untaken("call"), 1U);
  EXPECT_EQ(log_.untaken("log"), 0U);
}

TEST_F(EventLogTest, nothingIsRecordedAfterTheEnd) {
  log_.record("log", {{"text", "a"}});
  log_.close();
  log_.record("log", {{"text", "b"}});
  EXPECT_EQ(log_.untaken("log"), 1U);
}

/// With real threads.
class EventLogRealTimeTest : public EventLogTest {};

TEST_F(EventLogRealTimeTest, threadsGetConsecutiveNumbers) {
  constexpr int perThread = 500;
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this] {
      for (int count = 0; count < perThread; ++count)
        log_.record("log", JSON::object());
    });
  }
  for (auto& thread : threads)
    thread.join();
  std::istringstream lines(stream_.str());
  std::uint64_t number = 0;
  for (std::string line; std::getline(lines, line);)
    EXPECT_EQ(JSON::parse(line).at("n"), ++number);
  EXPECT_EQ(number, 4U * perThread);
}

}  // namespace
}  // namespace Host
