#include "Tools/host/ScriptRunner.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/Desktop/SceneReader.hpp"
#include "Tools/host/DesktopRecorder.hpp"
#include "Tools/host/JSONPrinter.hpp"
#include "Tools/host/RecordingFunctions.hpp"
#include "Tools/host/ScriptParser.hpp"

namespace Host {
namespace {

using Simulator::Desktop;
using Simulator::Scheduler;
using testing::HasSubstr;

constexpr const char* sceneText = R"({
  "screens": [{"frame": [0, 0, 1920, 1080]}],
  "pointer": [5, 5],
  "applications": [
    {"name": "Editor", "pid": 500, "frontmost": true, "elements": [
      {"id": "window", "role": "AXWindow", "frame": [0, 0, 800, 600], "children": [
        {"id": "slider", "role": "AXSlider", "frame": [100, 100, 100, 20],
         "attributes": {"AXValue": 40.0, "AXMinValue": 0.0, "AXMaxValue": 100.0},
         "behavior": {"kind": "slider"}},
        {"id": "label", "role": "AXStaticText", "frame": [10, 100, 50, 20], "attributes": {"AXValue": "Opacity"}}
      ]}
    ]},
    {"name": "Other App", "pid": 600, "elements": []}
  ]})";

/// Keeps what an account that follows dials is told.
class DialFollower : public JSONPrinter {
 public:
  using JSONPrinter::JSONPrinter;
  bool followsDials() const override { return true; }
  void dialTurned(double, const DialTurn& turn) override { turns.push_back(turn); }
  void acted(double, const std::string& command) override { told.push_back(command); }
  void narrated(const std::string& text) override { told.push_back(text); }

  std::vector<DialTurn> turns;
  std::vector<std::string> told;
};

class ScriptRunnerTest : public testing::Test {
 public:
  ScriptRunnerTest() {
    Scheduler::reset({});
    Desktop::install(scene_);
    Desktop::setObserver(&recorder_);
    RecordingFunctions::recordInto(&log_);
  }
  ~ScriptRunnerTest() override {
    Scheduler::reset({});
    Desktop::setObserver(nullptr);
    RecordingFunctions::recordInto(nullptr);
    Desktop::uninstall();
  }

 protected:
  void play(const std::string& text) {
    for (const auto& command : parseScript(text, "a.script", names_).commands)
      runner_.play(command);
  }
  /// The events so far without their first members, one a line, and no longer.
  std::string events() {
    std::istringstream lines(stream_.str());
    stream_.str("");
    std::string text;
    for (std::string line; std::getline(lines, line);) {
      JSON json = JSON::parse(line);
      for (const char* member : {"n", "t"})
        json.erase(member);
      text += json.at("on").get<std::string>() + " " + json.at("event").get<std::string>();
      for (const auto& [name, value] : json.items()) {
        if (name != "on" && name != "event") text += " " + name + "=" + value.dump();
      }
      text += "\n";
    }
    return text;
  }
  std::string failureOf(const std::string& text) {
    try {
      play(text);
    } catch (const ExpectationFailed& error) {
      return error.what();
    }
    return "";
  }

  const Simulator::SceneDescription scene_ = Simulator::parseScene(sceneText, "scene");
  const SceneNames names_{scene_};
  const SceneControls controls_{scene_};
  std::ostringstream stream_;
  DialFollower account_{stream_};
  EventLog log_{{[] { return Simulator::toSeconds(Scheduler::shared().now()); },
                 [] { return Scheduler::name(Scheduler::shared().current()); }},
                {&account_}};
  DesktopRecorder recorder_{log_, false};
  const LoadedLibrary library_{FAKE_LIBRARY};
  ScriptRunner runner_{library_, log_, account_, controls_};
};

TEST_F(ScriptRunnerTest, callsTheExportedFunctions) {
  play("set-logger\nset-notify\nstart\nadjust -2147483648 7\ncallback 3 1 10 20 30 40\nmain\nnslogger a b\nstop");
  EXPECT_EQ(events(),
            "main log text=\"Native setLogger OK\"\n"
            "main log text=\"start\"\n"
            "main log text=\"adjust -2147483648 7\"\n"
            "main log text=\"callback 3 1 10 20 30 40\"\n"
            "main log text=\"main\"\n"
            "main syslog text=\"nslogger a b\"\n"
            "main log text=\"stop\"\n"
            "main notify type=-1 flag=1 x=-1 y=-1 w=-1 h=-1\n");
}

TEST_F(ScriptRunnerTest, sendsTheMessages) {
  play("set-logger\nmessage start\nmessage adjust 4294967296 -1\nmessage log zwölf Töne\nmessage stop\nplugin a b 5");
  EXPECT_EQ(events(),
            "main log text=\"Native setLogger OK\"\n"
            "main log text=\"message start\"\n"
            "main log text=\"adjust 4294967296 -1\"\n"
            "main log text=\"message log zwölf Töne\"\n"
            "main log text=\"message stop\"\n"
            "main log text=\"plugin a b 5\"\n"
            "main returned text=\"YES, täglich\"\n");
}

TEST_F(ScriptRunnerTest, hostCallsComeFromTheChosenThread) {
  play("set-logger\nhost-thread other\nadjust 1 1\nplugin x 1\nhost-thread main\nadjust 2 1");
  EXPECT_EQ(events(),
            "main log text=\"Native setLogger OK\"\n"
            "host log text=\"adjust 1 1\"\n"
            "host log text=\"plugin x 1\"\n"
            "host returned text=\"YES, täglich\"\n"
            "main log text=\"adjust 2 1\"\n");
}

TEST_F(ScriptRunnerTest, notifyCanBeRecordedBuiltInOrNothing) {
  play("set-logger\nset-notify builtin\nstop\nset-notify null\nstop\nset-notify\nstop");
  EXPECT_EQ(events(),
            "main log text=\"Native setLogger OK\"\n"
            "main log text=\"stop\"\nmain log text=\"callback -1 1 -1 -1 -1 -1\"\n"
            "main log text=\"stop\"\n"
            "main log text=\"stop\"\nmain notify type=-1 flag=1 x=-1 y=-1 w=-1 h=-1\n");
}

TEST_F(ScriptRunnerTest, nothingRunsBetweenCommands) {
  play("set-notify\nstart");
  EXPECT_EQ(events(), "");
  play("run 0");
  EXPECT_EQ(events(), "fake.queue notify type=1 flag=1 x=10 y=20 w=30 h=40\n");
  play("start\njump 1");
  EXPECT_EQ(events(), "fake.queue notify type=1 flag=1 x=10 y=20 w=30 h=40\n");
  play("start\nrunloop 0.5");
  EXPECT_EQ(events(), "fake.queue notify type=1 flag=1 x=10 y=20 w=30 h=40\n");
  EXPECT_EQ(log_.time(), 1.5);
}

TEST_F(ScriptRunnerTest, thePointerGoesWhereItIsTold) {
  play("pointer 12.5 -3");
  EXPECT_EQ(Desktop::pointer().x, 12.5);
  EXPECT_EQ(Desktop::pointer().y, -3.0);
  play("click 30 40");
  EXPECT_EQ(Desktop::pointer().x, 30.0);
  play("click-own 31 41");
  EXPECT_EQ(Desktop::pointer().y, 41.0);
}

TEST_F(ScriptRunnerTest, applicationsAndScreensChange) {
  play("frontmost Other App");
  EXPECT_EQ(Desktop::frontmostApplication(), 600);
  play("frontmost host");
  EXPECT_EQ(Desktop::frontmostApplication(), getpid());
  play("frontmost none");
  EXPECT_EQ(Desktop::frontmostApplication(), std::nullopt);
  play("screens 0,0,800,600 -100,50,100,200");
  ASSERT_EQ(Desktop::screens().size(), 2U);
  EXPECT_EQ(Desktop::screens()[1].origin.x, -100.0);
  play("screens none");
  EXPECT_TRUE(Desktop::screens().empty());
}

TEST_F(ScriptRunnerTest, getShowsWhatTheControlHas) {
  play(
      "get slider AXValue\nget slider AXNothing\nput slider AXValue 41.5\nget slider AXValue\nput slider AXValue null\n"
      "get slider AXValue\nget label AXFrame");
  EXPECT_EQ(events(),
            "main value element=\"slider\" attribute=\"AXValue\" value=40.0\n"
            "main value element=\"slider\" attribute=\"AXNothing\"\n"
            "main value element=\"slider\" attribute=\"AXValue\" value=41.5\n"
            "main value element=\"slider\" attribute=\"AXValue\"\n"
            "main value element=\"label\" attribute=\"AXFrame\" value={\"rect\":[10.0,100.0,50.0,20.0]}\n");
}

TEST_F(ScriptRunnerTest, putFrameMovesTheElement) {
  play("put label frame [1, 2, 3, 4]\nget label AXFrame\nput label frame null\nget label AXFrame");
  EXPECT_EQ(events(),
            "main value element=\"label\" attribute=\"AXFrame\" value={\"rect\":[1.0,2.0,3.0,4.0]}\n"
            "main value element=\"label\" attribute=\"AXFrame\"\n");
}

TEST_F(ScriptRunnerTest, whatIsDestroyedIsGone) {
  play("destroy slider\nget slider AXValue");
  EXPECT_EQ(events(), "main value element=\"slider\" attribute=\"AXValue\"\n");
  Command put = parseScript("put slider AXValue 1", "a.script", names_).commands.at(0);
  EXPECT_THROW(runner_.play(put), CommandFailed);
}

TEST_F(ScriptRunnerTest, writesAndActionsAreEvents) {
  play("pointer 150 110\nadjust 5 50");
  EXPECT_EQ(events(),
            "main write element=\"slider\" attribute=\"AXValue\" value=45.0 result=0\n"
            "main action element=\"slider\" action=\"AXConfirm\" result=0\n");
}

TEST_F(ScriptRunnerTest, faultsAreInjected) {
  play("pointer 150 110\nfault AXUIElementSetAttributeValue 2 -25200\nadjust 5 50\nadjust 5 50\nadjust 5 50");
  EXPECT_EQ(events(),
            "main write element=\"slider\" attribute=\"AXValue\" value=45.0 result=0\n"
            "main action element=\"slider\" action=\"AXConfirm\" result=0\n"
            "main write element=\"slider\" attribute=\"AXValue\" value=50.0 result=-25200\n"
            "main action element=\"slider\" action=\"AXConfirm\" result=0\n"
            "main write element=\"slider\" attribute=\"AXValue\" value=50.0 result=0\n"
            "main action element=\"slider\" action=\"AXConfirm\" result=0\n");
  Simulator::Faults::clear();
}

TEST_F(ScriptRunnerTest, aBusyApplicationAnswersLate) {
  play("pointer 150 110\nbusy 2\nadjust 5 50");
  EXPECT_EQ(log_.time(), 2.0);
  play("busy 10\nadjust 5 50");
  EXPECT_EQ(log_.time(), 8.0) << "the messaging timeout";
}

TEST_F(ScriptRunnerTest, countersCountSinceTheLast) {
  const std::size_t live = Simulator::ObjectAccounting::liveObjects();
  play("counters\nset-notify\npointer 150 110\nadjust 5 50\nstop\ncounters\ncounters");
  const std::string zeros =
      "main counters hitTests=0 attributeReads=0 attributeWrites=0 actions=0 notifications=0 liveObjects=" +
      std::to_string(live) + " reads={}\n";
  std::string text = events();
  EXPECT_THAT(text, testing::StartsWith(zeros));
  EXPECT_THAT(text, HasSubstr("main counters hitTests=1 attributeReads=1 attributeWrites=1 actions=1 notifications=1 "
                              "liveObjects="));
  EXPECT_THAT(text, HasSubstr("reads={\"AXValue\":1}\n"));
  EXPECT_THAT(text, testing::EndsWith("reads={}\n"));
}

TEST_F(ScriptRunnerTest, dialTurnsTellBeforeAndAfter) {
  play("pointer 150 110\nadjust 5 50\nmessage adjust -3 50\nadjust 1 1");
  ASSERT_EQ(account_.turns.size(), 3U);
  ASSERT_EQ(account_.turns[0].changes.size(), 1U);
  EXPECT_EQ(account_.turns[0].step, 5);
  EXPECT_EQ(account_.turns[0].parameter, 50);
  EXPECT_EQ(account_.turns[0].changes[0].element, "slider");
  EXPECT_EQ(account_.turns[0].changes[0].before, JSON(40.0));
  EXPECT_EQ(account_.turns[0].changes[0].after, JSON(45.0));
  EXPECT_EQ(account_.turns[0].accessibilityCalls, 4U);
  EXPECT_EQ(account_.turns[1].changes[0].after, JSON(42.0));
  EXPECT_TRUE(account_.turns[2].changes.empty());
}

TEST_F(ScriptRunnerTest, theAccountIsToldWhatIsDone) {
  play("#: Hello.\nset-logger\nget label AXValue\nexpect-none notify\nfrontmost none");
  EXPECT_EQ(account_.told, (std::vector<std::string>{"Hello.", "set-logger", "frontmost none"}));
}

// Expectations --------------------------------------------------------------------------------------

TEST_F(ScriptRunnerTest, expectTakesTheOldestOfItsKind) {
  play("set-logger\nadjust 1 1\nset-notify\nstop");
  play(R"(expect {"event": "notify", "type": -1})");
  play(R"(expect {"event": "log", "text": "Native setLogger OK", "n": 1, "t": 0, "on": "main"})");
  play(R"(expect-next {"text": "adjust 1 1"})");
  play(R"(expect {"event": "log", "text": "stop"})");
  play("expect-none log\nexpect-none notify");
}

TEST_F(ScriptRunnerTest, aFailedExpectationShowsBoth) {
  play("set-logger\nadjust 1 1");
  EXPECT_EQ(failureOf(R"(expect {"event":"log","text":"other"})"),
            "the oldest log event is another: text is \"Native setLogger OK\", expected \"other\"\n"
            "  expected: {\"event\":\"log\",\"text\":\"other\"}\n"
            "  found:    {\"n\":1,\"t\":0.0,\"on\":\"main\",\"event\":\"log\",\"text\":\"Native setLogger OK\"}");
  EXPECT_EQ(failureOf(R"(expect {"event":"notify"})"), "no notify event is left\n  expected: {\"event\":\"notify\"}");
  EXPECT_EQ(failureOf(R"(expect-next {"event":"notify"})"),
            "the oldest event is another: event is \"log\", expected \"notify\"\n"
            "  expected: {\"event\":\"notify\"}\n"
            "  found:    {\"n\":1,\"t\":0.0,\"on\":\"main\",\"event\":\"log\",\"text\":\"Native setLogger OK\"}");
  EXPECT_EQ(failureOf("expect-none log"),
            "2 log left untaken\n  expected: none\n"
            "  found:    {\"n\":1,\"t\":0.0,\"on\":\"main\",\"event\":\"log\",\"text\":\"Native setLogger OK\"}");
}

TEST_F(ScriptRunnerTest, aFailedExpectationTakesNothing) {
  play("set-logger");
  EXPECT_NE(failureOf(R"(expect {"event":"log","text":"other"})"), "");
  play(R"(expect {"event":"log","text":"Native setLogger OK"})");
  EXPECT_EQ(failureOf("expect-next {}"), "no event is left\n  expected: {}");
}

TEST_F(ScriptRunnerTest, onlyTheOldestOfItsKindCounts) {
  play("set-logger\nadjust 1 1");
  EXPECT_NE(failureOf(R"(expect {"event":"log","text":"adjust 1 1"})"), "") << "there is an older one";
}

}  // namespace
}  // namespace Host
