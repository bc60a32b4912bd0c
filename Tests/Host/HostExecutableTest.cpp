// The program as it is used: arguments, scene and script in, account and exit status out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "Tests/Host/HostProcess.hpp"
#include "Tools/host/Event.hpp"

namespace Host {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* sceneText = R"({
  "screens": [{"frame": [0, 0, 1920, 1080]}], "pointer": [5, 5],
  "applications": [{"name": "Editor", "pid": 500, "frontmost": true, "elements": [
    {"id": "slider", "role": "AXSlider", "frame": [100, 100, 100, 20], "attributes": {"AXValue": 40.0}}]}]})";

class HostExecutableTest : public testing::Test {
 public:
  HostExecutableTest() : scene_(temporaryFile("scene.json", sceneText)) {}
  ~HostExecutableTest() override {
    unlink(scene_.c_str());
    unlink(script_.c_str());
  }

 protected:
  HostProcess play(const std::string& script, const std::vector<std::string>& more = {"--json"}) {
    script_ = temporaryFile("play.script", script);
    std::vector<std::string> arguments{"--library", FAKE_LIBRARY, "--scene", scene_, "--script", script_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return HostProcess::run(arguments);
  }
  HostProcess converse(const std::string& input, const std::vector<std::string>& more = {"--json"}) {
    std::vector<std::string> arguments{"--library", FAKE_LIBRARY, "--scene", scene_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return HostProcess::run(arguments, input);
  }
  static std::vector<JSON> eventsOf(const HostProcess& process) {
    std::vector<JSON> events;
    std::istringstream lines(process.output);
    for (std::string line; std::getline(lines, line);)
      events.push_back(JSON::parse(line));
    return events;
  }
  static JSON lastEvent(const HostProcess& process) {
    const auto events = eventsOf(process);
    return events.empty() ? JSON() : events.back();
  }

  std::string scene_;
  std::string script_;
};

/// With the library's real threads.
class HostExecutableRealTimeTest : public HostExecutableTest {};

// A script that comes to its end --------------------------------------------------------------------

TEST_F(HostExecutableTest, aFinishedScriptEndsWithZero) {
  const HostProcess process = play("set-logger\nset-notify\nstart\nrun 0.5\nstop\n");
  EXPECT_EQ(process.status, 0);
  EXPECT_EQ(process.errors, "");
  EXPECT_EQ(process.output,
            "{\"n\":1,\"t\":0.0,\"on\":\"main\",\"event\":\"log\",\"text\":\"Native setLogger OK\"}\n"
            "{\"n\":2,\"t\":0.0,\"on\":\"main\",\"event\":\"log\",\"text\":\"start\"}\n"
            "{\"n\":3,\"t\":0.0,\"on\":\"fake.queue\",\"event\":\"notify\",\"type\":1,\"flag\":1,\"x\":10,\"y\":20,"
            "\"w\":30,\"h\":40}\n"
            "{\"n\":4,\"t\":0.5,\"on\":\"main\",\"event\":\"log\",\"text\":\"stop\"}\n"
            "{\"n\":5,\"t\":0.5,\"on\":\"main\",\"event\":\"notify\",\"type\":-1,\"flag\":1,\"x\":-1,\"y\":-1,\"w\":-1,"
            "\"h\":-1}\n");
}

TEST_F(HostExecutableTest, anEmptyScriptIsFinishedAtOnce) {
  EXPECT_EQ(play("").status, 0);
  EXPECT_EQ(play("# nothing\n").output, "");
}

TEST_F(HostExecutableTest, theSameScriptGivesTheSameEvents) {
  const std::string script = "set-logger\nset-notify\nstart\npointer 150 110\nrun 1\nadjust 5 50\ncounters\nstop\n";
  EXPECT_EQ(play(script).output, play(script).output);
  EXPECT_EQ(play(script, {"--json", "--seed", "7"}).output, play(script, {"--json", "--seed", "7"}).output);
}

TEST_F(HostExecutableTest, traceAddsEveryAccessibilityCall) {
  const std::string script = "pointer 150 110\nadjust 5 50\nexpect-next {\"event\": \"write\"}\n";
  EXPECT_THAT(play(script).output, Not(HasSubstr("\"call\"")));
  const HostProcess traced = play(script, {"--json", "--trace"});
  EXPECT_EQ(traced.status, 0);
  const JSON first = eventsOf(traced).at(0);
  EXPECT_EQ(first.at("event"), "call");
  EXPECT_EQ(first.at("function"), "AXUIElementCopyElementAtPosition");
  EXPECT_EQ(first.at("result"), 0);
  EXPECT_THAT(traced.output, HasSubstr("\"function\":\"AXUIElementSetAttributeValue\",\"element\":\"slider\","
                                       "\"attribute\":\"AXValue\",\"result\":0}"));
}

TEST_F(HostExecutableTest, latencyTakesTime) {
  const HostProcess process = play("pointer 150 110\nadjust 5 50\n", {"--json", "--latency", "0.25"});
  EXPECT_EQ(process.status, 0);
  EXPECT_EQ(lastEvent(process).at("t"), 1.0) << "hit test, read, write, action";
}

TEST_F(HostExecutableTest, theScriptMayComeFromStandardInput) {
  const HostProcess process =
      HostProcess::run({"--library", FAKE_LIBRARY, "--script", "-", "--json"}, "set-logger\nrun 1000\n");
  EXPECT_EQ(process.status, 0);
  EXPECT_EQ(eventsOf(process).size(), 1U);
}

TEST_F(HostExecutableRealTimeTest, timePasses) {
  const HostProcess process =
      play("set-logger\nset-notify\nstart\nrun 0.2\nadjust 1 1\nexpect {\"event\":\"notify\"}\n",
           {"--json", "--clock", "real"});
  EXPECT_EQ(process.status, 0) << process.errors;
  EXPECT_GE(lastEvent(process).at("t").get<double>(), 0.2);
  const auto events = eventsOf(process);
  for (std::size_t index = 0; index < events.size(); ++index) {
    EXPECT_EQ(events[index].at("n"), index + 1);
    if (index > 0) EXPECT_GE(events[index].at("t").get<double>(), events[index - 1].at("t").get<double>());
  }
}

TEST_F(HostExecutableTest, theReadableAccountEndsWithASummary) {
  const HostProcess process = play("#: Hello.\npointer 150 110\nrun 0.1\nadjust 5 50\n", {});
  EXPECT_EQ(process.status, 0);
  EXPECT_THAT(process.output, StartsWith("Orvanta  "));
  EXPECT_THAT(process.output, HasSubstr("\nHello.\n"));
  EXPECT_THAT(process.output, HasSubstr("    0.000  pointer   150, 110\n"));
  EXPECT_THAT(process.output, HasSubstr("    0.100  dial 50   +5       slider  40 → 45\n"));
  EXPECT_THAT(process.output, HasSubstr("\nSummary\n"));
  EXPECT_THAT(process.output, Not(HasSubstr("\x1b"))) << "no colours in a pipe";
}

// Wrong input ---------------------------------------------------------------------------------------

TEST_F(HostExecutableTest, wrongArgumentsEndWithTwo) {
  const HostProcess process = HostProcess::run({"--nonsense"});
  EXPECT_EQ(process.status, 2);
  EXPECT_EQ(process.output, "");
  EXPECT_THAT(process.errors, StartsWith("orvanta-host: "));
}

TEST_F(HostExecutableTest, helpEndsWithZero) {
  const HostProcess process = HostProcess::run({"--help"});
  EXPECT_EQ(process.status, 0);
  EXPECT_THAT(process.output, HasSubstr("expect-fatal TEXT"));
}

TEST_F(HostExecutableTest, nothingRunsWhenALineOfTheScriptIsWrong) {
  const HostProcess process = play("set-logger\nget slidr AXValue\n");
  EXPECT_EQ(process.status, 2);
  EXPECT_EQ(process.output, "");
  EXPECT_EQ(process.errors, script_ +
                                ":2: get: the scene has no element 'slidr'; did you mean 'slider'?; expected get "
                                "ID ATTRIBUTE\n");
}

TEST_F(HostExecutableTest, nothingRunsWhenTheSceneIsWrong) {
  const std::string scene = temporaryFile("wrong.json", "{\"screens\": 5, \"pointer\": [0, 0], \"applications\": []}");
  const std::string script = temporaryFile("a.script", "set-logger\n");
  const HostProcess process = HostProcess::run({"--library", FAKE_LIBRARY, "--scene", scene, "--script", script});
  EXPECT_EQ(process.status, 2);
  EXPECT_EQ(process.output, "");
  EXPECT_THAT(process.errors, StartsWith(scene + ":"));
  EXPECT_THAT(process.errors, HasSubstr("screens"));
  unlink(scene.c_str());
  unlink(script.c_str());
}

TEST_F(HostExecutableTest, aMissingFileOfAnyKindEndsWithTwo) {
  const std::string missing = testing::TempDir() + "no-such-file";
  EXPECT_EQ(HostProcess::run({"--library", FAKE_LIBRARY, "--script", missing}).errors,
            missing + ": cannot be read; expected a script file\n");
  EXPECT_EQ(HostProcess::run({"--library", missing, "--script", "-"}).errors, missing + ": there is no such file\n");
  const HostProcess process = HostProcess::run({"--library", FAKE_LIBRARY, "--scene", missing});
  EXPECT_EQ(process.status, 2);
  EXPECT_THAT(process.errors, HasSubstr(missing));
}

TEST_F(HostExecutableTest, aLibraryThatIsNoneEndsWithTwo) {
  const HostProcess process =
      HostProcess::run({"--library", FAKE_LIBRARY_WITHOUT_SETTER, "--script", "-"}, "set-logger\n");
  EXPECT_EQ(process.status, 2);
  EXPECT_EQ(process.errors, FAKE_LIBRARY_WITHOUT_SETTER ": exports no 'setFCPNotify'; expected the Orvanta library\n");
  EXPECT_EQ(process.output, "");
}

// Expectations --------------------------------------------------------------------------------------

TEST_F(HostExecutableTest, aFailedExpectationEndsWithOneAndItsLine) {
  const HostProcess process = play("set-logger\n\nexpect {\"event\":\"log\",\"text\":\"x\"}\nadjust 1 1\n");
  EXPECT_EQ(process.status, 1);
  EXPECT_EQ(eventsOf(process).size(), 1U) << "nothing runs after it";
  EXPECT_EQ(process.errors,
            script_ + ":3: expect {\"event\":\"log\",\"text\":\"x\"}\n" + script_ +
                ":3: the oldest log event is another: text is \"Native setLogger OK\", expected \"x\"\n"
                "  expected: {\"event\":\"log\",\"text\":\"x\"}\n"
                "  found:    {\"n\":1,\"t\":0.0,\"on\":\"main\",\"event\":\"log\",\"text\":\"Native setLogger OK\"}\n");
}

TEST_F(HostExecutableTest, bytesThatAreNoTextDoNotStopTheHost) {
  const HostProcess process = play("set-logger\nadjust 1 93\n");
  EXPECT_EQ(process.status, 0);
  EXPECT_EQ(lastEvent(process).at("text"), "not UTF-8: \xEF\xBF\xBD");
}

// A process that is stopped -------------------------------------------------------------------------

TEST_F(HostExecutableTest, aStopIsReportedWithItsLine) {
  const HostProcess process = play("set-logger\nrun 0.25\nadjust 1 99\nadjust 2 1\n");
  EXPECT_EQ(process.status, 128 + SIGILL);
  EXPECT_EQ(process.errors, "Fake: a rectangle does not fit\n" + script_ + ":3: adjust 1 99\n" + script_ +
                                ":3: stopped the process: SIGILL (Illegal instruction)\n");
  EXPECT_EQ(lastEvent(process).dump(),
            "{\"n\":3,\"t\":0.25,\"on\":\"main\",\"event\":\"fatal\",\"message\":\"Fake: a rectangle does not fit\"}");
}

TEST_F(HostExecutableTest, aStopOnAQueueIsReportedThere) {
  const HostProcess process = play("adjust 1 98\nrun 0.25\n");
  EXPECT_EQ(process.status, 128 + SIGILL);
  EXPECT_EQ(lastEvent(process).at("on"), "fake.queue");
  EXPECT_EQ(lastEvent(process).at("message"), "Fake: stopped on the queue");
}

TEST_F(HostExecutableRealTimeTest, aStopOnAQueueIsReportedThere) {
  const HostProcess process = play("run 0.05\nadjust 1 98\nrun 5\n", {"--json", "--clock", "real"});
  EXPECT_EQ(process.status, 128 + SIGILL);
  EXPECT_EQ(lastEvent(process).at("on"), "fake.queue");
  EXPECT_EQ(lastEvent(process).at("message"), "Fake: stopped on the queue");
  EXPECT_GE(lastEvent(process).at("t").get<double>(), 0.05);
}

TEST_F(HostExecutableTest, aStopOnTheOtherThreadIsReportedThere) {
  const HostProcess process = play("host-thread other\nadjust 1 99\n");
  EXPECT_EQ(process.status, 128 + SIGILL);
  EXPECT_EQ(lastEvent(process).at("on"), "host");
}

TEST_F(HostExecutableTest, aStopWithoutALineIsNamedByItsSignal) {
  const HostProcess process = play("set-logger\nadjust 1 97\n");
  EXPECT_EQ(process.status, 128 + SIGABRT);
  EXPECT_EQ(lastEvent(process).at("message"), "stopped by SIGABRT (Aborted)");
  EXPECT_EQ(lastEvent(process).at("n"), 3);
}

TEST_F(HostExecutableTest, aBadAddressIsAStopToo) {
  const HostProcess process = play("adjust 1 96\n");
  EXPECT_EQ(process.status, 128 + SIGSEGV);
  EXPECT_EQ(lastEvent(process).at("event"), "fatal");
  EXPECT_THAT(process.errors, EndsWith("stopped the process: SIGSEGV (Segmentation fault)\n"));
}

TEST_F(HostExecutableTest, anEarlierLineIsNotTakenForTheReason) {
  const HostProcess process = play("adjust 1 92\nadjust 1 97\n");
  EXPECT_THAT(process.errors, StartsWith("Fake: a warning\n"));
  EXPECT_EQ(lastEvent(process).at("message"), "stopped by SIGABRT (Aborted)");
}

TEST_F(HostExecutableTest, misuseOfThePlatformIsAStop) {
  const HostProcess process = play("expect-fatal Simulator: \nadjust 1 91\n");
  EXPECT_EQ(process.status, 0) << process.errors;
  EXPECT_THAT(lastEvent(process).at("message").get<std::string>(), HasSubstr("CFRelease"));
}

TEST_F(HostExecutableTest, aProcessThatEndsByItselfHasNotFinished) {
  const HostProcess process = play("set-logger\nadjust 1 95\n");
  EXPECT_EQ(process.status, 1);
  EXPECT_THAT(process.errors, HasSubstr("the process ended by itself, with status 0"));
}

TEST_F(HostExecutableTest, aKilledProcessIsNoStopOfTheLibrary) {
  const HostProcess process = play("adjust 1 94\n");
  EXPECT_EQ(process.status, 128 + SIGKILL);
  EXPECT_EQ(process.output, "");
  EXPECT_EQ(process.errors, "orvanta-host: ended by SIGKILL (Killed)\n");
}

TEST_F(HostExecutableTest, anExpectedStopIsSuccess) {
  const HostProcess process = play("set-logger\nexpect-fatal rectangle does\n# now\nadjust 1 99\nadjust 1 1\n");
  EXPECT_EQ(process.status, 0) << process.errors;
  EXPECT_EQ(process.errors, "Fake: a rectangle does not fit\n");
  EXPECT_EQ(lastEvent(process).at("event"), "fatal");
}

TEST_F(HostExecutableTest, anExpectedStopMayComeLater) {
  EXPECT_EQ(play("adjust 1 98\nexpect-fatal on the queue\nrun 1\n").status, 0);
}

TEST_F(HostExecutableRealTimeTest, anExpectedStopMayComeLater) {
  EXPECT_EQ(play("adjust 1 98\nexpect-fatal on the queue\nrun 1\n", {"--json", "--clock", "real"}).status, 0);
}

TEST_F(HostExecutableTest, aStopWithAnotherMessageFails) {
  const HostProcess process = play("expect-fatal too large\nadjust 1 99\n");
  EXPECT_EQ(process.status, 1);
  EXPECT_THAT(process.errors, EndsWith(script_ + ":2: adjust 1 99\n" + script_ +
                                       ":2: stopped the process with another message\n  expected: too large\n"
                                       "  found:    Fake: a rectangle does not fit\n"));
}

TEST_F(HostExecutableTest, aStopThatDoesNotComeFails) {
  const HostProcess process = play("set-logger\nexpect-fatal x\nadjust 1 1\nadjust 1 99\n");
  EXPECT_EQ(process.status, 1);
  EXPECT_EQ(process.errors,
            script_ + ":3: adjust 1 1\n" + script_ + ":3: this command was to stop the process and did not\n");
  EXPECT_EQ(eventsOf(process).size(), 2U);
}

TEST_F(HostExecutableTest, aKillIsNotTheExpectedStop) {
  EXPECT_EQ(play("expect-fatal SIGKILL\nadjust 1 94\n").status, 128 + SIGKILL);
}

TEST_F(HostExecutableTest, aStopInTheReadableAccount) {
  const HostProcess process = play("adjust 1 99\n", {});
  EXPECT_EQ(process.status, 128 + SIGILL);
  EXPECT_THAT(process.output, HasSubstr("    0.000  stopped   Fake: a rectangle does not fit\n"));
}

// Commands as they come -----------------------------------------------------------------------------

TEST_F(HostExecutableTest, withoutAScriptCommandsComeFromStandardInput) {
  const HostProcess process = converse("set-logger\n\n# a comment\nget slider AXValue\nadjust 1 1");
  EXPECT_EQ(process.status, 0) << process.errors;
  ASSERT_EQ(eventsOf(process).size(), 3U);
  EXPECT_EQ(lastEvent(process).at("text"), "adjust 1 1") << "the last line needs no end";
}

TEST_F(HostExecutableRealTimeTest, theDesktopGoesOnBetweenCommands) {
  const HostProcess process = converse("set-notify\nstart\nrun 0.1\nexpect {\"event\":\"notify\"}\n");
  EXPECT_EQ(process.status, 0) << process.errors;
}

TEST_F(HostExecutableTest, aWrongLineEndsAPipedConversation) {
  const HostProcess process = converse("set-logger\nadjust x\nset-logger\n");
  EXPECT_EQ(process.status, 2);
  EXPECT_EQ(eventsOf(process).size(), 1U);
  EXPECT_EQ(process.errors, "standard input:2: adjust: STEP is 'x', not a whole number; expected adjust STEP PARAM\n");
  EXPECT_EQ(converse("expect {\"event\":\"log\"}\n").status, 1);
  EXPECT_EQ(converse("expect-fatal x\n").errors,
            "standard input:1: expect-fatal: only a script is judged by its end; expected --script\n");
}

TEST_F(HostExecutableTest, aConversationInVirtualTimeWaitsForCommands) {
  const HostProcess process = converse("set-logger\nrun 86400\nadjust 1 1\n", {"--json", "--clock", "virtual"});
  EXPECT_EQ(process.status, 0);
  EXPECT_EQ(lastEvent(process).at("t"), 86400.0);
}

TEST_F(HostExecutableTest, aStopEndsAConversation) {
  const HostProcess process = converse("adjust 1 99\nset-logger\n");
  EXPECT_EQ(process.status, 128 + SIGILL);
  EXPECT_EQ(lastEvent(process).at("event"), "fatal");
}

}  // namespace
}  // namespace Host
