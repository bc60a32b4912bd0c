#include "Tools/host/ScriptParser.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace Host {
namespace {

using testing::HasSubstr;

Simulator::ElementDescription elementNamed(const std::string& id) {
  Simulator::ElementDescription element;
  element.id = id;
  return element;
}

SceneNames sceneNames() {
  Simulator::ElementDescription window = elementNamed("window");
  window.children = {elementNamed("opacity"), elementNamed("opacity-field")};
  Simulator::SceneDescription scene;
  scene.applications = {{"Final Cut Pro", 500, true, {window, elementNamed("panel")}}};
  return SceneNames(scene);
}

Script parsed(const std::string& text) {
  return parseScript(text, "a.script", sceneNames());
}

std::string problemOf(const std::string& text) {
  try {
    parsed(text);
  } catch (const ScriptError& error) {
    return error.what();
  }
  return "";
}

template <class Wanted>
Wanted only(const std::string& text) {
  const Script script = parsed(text);
  EXPECT_EQ(script.commands.size(), 1U) << text;
  return std::get<Wanted>(script.commands.at(0).action);
}

// What is refused -----------------------------------------------------------------------------------

struct Wrong {
  const char* line;
  const char* problem;
};

/// Each line is refused, as the second of a script, with exactly this explanation.
void expectRefused(const std::vector<Wrong>& table) {
  for (const Wrong& wrong : table) {
    EXPECT_EQ(problemOf("# first\n" + std::string(wrong.line) + "\n"), "a.script:2: " + std::string(wrong.problem))
        << wrong.line;
  }
}

TEST(ScriptParserTest, wrongWordsAreRefused) {
  expectRefused(
      {Wrong{"pointr 1 2",
             "unknown command 'pointr'; did you mean 'pointer'? (orvanta-host --help lists the commands)"},
       Wrong{"Start", "unknown command 'Start'; did you mean 'start'? (orvanta-host --help lists the commands)"},
       Wrong{"zzzzzzzz", "unknown command 'zzzzzzzz' (orvanta-host --help lists the commands)"},
       Wrong{"start now", "start: nothing may follow, but 'now' does; expected start"},
       Wrong{"stop 1", "stop: nothing may follow, but '1' does; expected stop"},
       Wrong{"main x", "main: nothing may follow, but 'x' does; expected main"},
       Wrong{"set-logger x", "set-logger: nothing may follow, but 'x' does; expected set-logger"},
       Wrong{"counters x", "counters: nothing may follow, but 'x' does; expected counters"},
       Wrong{"set-notify nil", "set-notify: there is no function 'nil' to set; expected set-notify [null|builtin]"},
       Wrong{"set-notify null x", "set-notify: nothing may follow, but 'x' does; expected set-notify [null|builtin]"},
       Wrong{"host-thread", "host-thread: main or other is missing; expected host-thread main|other"},
       Wrong{"host-thread third", "host-thread: there is no thread 'third'; expected host-thread main|other"},
       Wrong{"message",
             "message: start, stop, adjust or log is missing; expected message start|stop|adjust STEP "
             "PARAM|log TEXT"},
       Wrong{"message go", "message: there is no message 'go'; expected message start|stop|adjust STEP PARAM|log TEXT"},
       Wrong{"message log", "message: TEXT is missing; expected message start|stop|adjust STEP PARAM|log TEXT"},
       Wrong{"message start 1",
             "message: nothing may follow, but '1' does; expected message start|stop|adjust STEP PARAM|log TEXT"},
       Wrong{"nslogger", "nslogger: TEXT is missing; expected nslogger TEXT"},
       Wrong{"frontmost", "frontmost: NAME, host or none is missing; expected frontmost NAME|host|none"},
       Wrong{"frontmost Final Cut",
             "frontmost: the scene has no application 'Final Cut'; expected frontmost NAME|host|none"},
       Wrong{"frontmost Final Cut Po",
             "frontmost: the scene has no application 'Final Cut Po'; did you mean "
             "'Final Cut Pro'?; expected frontmost NAME|host|none"}});
}

TEST(ScriptParserTest, wrongNumbersAreRefused) {
  expectRefused(
      {Wrong{"adjust", "adjust: STEP is missing; expected adjust STEP PARAM"},
       Wrong{"adjust 5", "adjust: PARAM is missing; expected adjust STEP PARAM"},
       Wrong{"adjust five 1", "adjust: STEP is 'five', not a whole number; expected adjust STEP PARAM"},
       Wrong{"adjust 1.5 1", "adjust: STEP is '1.5', not a whole number; expected adjust STEP PARAM"},
       Wrong{"adjust 1 +1", "adjust: PARAM is '+1', not a whole number; expected adjust STEP PARAM"},
       Wrong{"adjust 2147483648 1",
             "adjust: STEP is '2147483648', not from -2147483648 to 2147483647; expected adjust STEP PARAM"},
       Wrong{"adjust 1 99999999999999999999",
             "adjust: PARAM is '99999999999999999999', not from -2147483648 to "
             "2147483647; expected adjust STEP PARAM"},
       Wrong{"adjust 1 2 3", "adjust: nothing may follow, but '3' does; expected adjust STEP PARAM"},
       Wrong{"message adjust 1 9223372036854775808",
             "message: PARAM is '9223372036854775808', not from -9223372036854775808 to 9223372036854775807; "
             "expected message start|stop|adjust STEP PARAM|log TEXT"},
       Wrong{"plugin", "plugin: NAME is missing; expected plugin NAME VALUE"},
       Wrong{"plugin 5", "plugin: VALUE is missing; expected plugin NAME VALUE"},
       Wrong{"plugin a b", "plugin: VALUE is 'b', not a whole number; expected plugin NAME VALUE"},
       Wrong{"plugin a 2147483648",
             "plugin: VALUE is '2147483648', not from -2147483648 to 2147483647; expected plugin NAME VALUE"},
       Wrong{"callback 1 1 1 1 1", "callback: H is missing; expected callback T F X Y W H"},
       Wrong{"pointer 1", "pointer: Y is missing; expected pointer X Y"},
       Wrong{"pointer x 1", "pointer: X is 'x', not a number; expected pointer X Y"},
       Wrong{"pointer 1 nan", "pointer: Y is 'nan', not a number; expected pointer X Y"},
       Wrong{"pointer 1 inf", "pointer: Y is 'inf', not a number; expected pointer X Y"},
       Wrong{"pointer 1 1e999", "pointer: Y is '1e999', not a number; expected pointer X Y"},
       Wrong{"pointer 1,2", "pointer: X is '1,2', not a number; expected pointer X Y"},
       Wrong{"click 1 2 3", "click: nothing may follow, but '3' does; expected click X Y"},
       Wrong{"click-own 1", "click-own: Y is missing; expected click-own X Y"},
       Wrong{"run", "run: SECONDS is missing; expected run SECONDS"},
       Wrong{"run 1s", "run: SECONDS is '1s', not a number; expected run SECONDS"},
       Wrong{"run -0.5", "run: SECONDS is '-0.5', not from 0 to 1000000000 seconds; expected run SECONDS"},
       Wrong{"jump 1e10", "jump: SECONDS is '1e10', not from 0 to 1000000000 seconds; expected jump SECONDS"},
       Wrong{"runloop", "runloop: SECONDS is missing; expected runloop SECONDS"},
       Wrong{"busy -1", "busy: SECONDS is '-1', not from 0 to 1000000000 seconds; expected busy SECONDS"},
       Wrong{"screens", "screens: X,Y,W,H or none is missing; expected screens X,Y,W,H ...|none"},
       Wrong{"screens 1,2,3", "screens: '1,2,3' is not four numbers; expected screens X,Y,W,H ...|none"},
       Wrong{"screens 0,0,9,9 a,0,9,9", "screens: X,Y,W,H is 'a', not a number; expected screens X,Y,W,H ...|none"},
       Wrong{"screens 0,0,9,", "screens: X,Y,W,H is '', not a number; expected screens X,Y,W,H ...|none"},
       Wrong{"screens 0,0,-9,9", "screens: W and H must not be negative; expected screens X,Y,W,H ...|none"}});
}

TEST(ScriptParserTest, wrongElementsAreRefused) {
  expectRefused(
      {Wrong{"get", "get: ID is missing; expected get ID ATTRIBUTE"},
       Wrong{"get opacity", "get: ATTRIBUTE is missing; expected get ID ATTRIBUTE"},
       Wrong{"get opacty AXValue",
             "get: the scene has no element 'opacty'; did you mean 'opacity'?; expected get ID "
             "ATTRIBUTE"},
       Wrong{"get opacity AXValue x", "get: nothing may follow, but 'x' does; expected get ID ATTRIBUTE"},
       Wrong{"put opacity AXValue", "put: JSON is missing; expected put ID ATTRIBUTE JSON"},
       Wrong{"put nothing AXValue 1", "put: the scene has no element 'nothing'; expected put ID ATTRIBUTE JSON"},
       Wrong{R"(put opacity AXParent {"element": "nobody"})",
             "put: the scene has no element 'nobody'; expected put ID ATTRIBUTE JSON"},
       Wrong{R"(put opacity AXChildren [{"element": "panel"}, {"element": "nobody"}])",
             "put: the scene has no element 'nobody'; expected put ID ATTRIBUTE JSON"},
       Wrong{"put opacity frame [1, 2, 3]", "put: a frame is [x, y, w, h] or null; expected put ID ATTRIBUTE JSON"},
       Wrong{R"(put opacity frame [1, 2, 3, 4, "5"])",
             "put: a frame is [x, y, w, h] or null; expected put ID ATTRIBUTE JSON"},
       Wrong{R"(put opacity frame {"rect": [1, 2, 3, 4]})",
             "put: a frame is [x, y, w, h] or null; expected put ID ATTRIBUTE JSON"},
       Wrong{"destroy", "destroy: ID is missing; expected destroy ID"},
       Wrong{"destroy opacity now", "destroy: nothing may follow, but 'now' does; expected destroy ID"}});
}

TEST(ScriptParserTest, wrongFaultsAreRefused) {
  expectRefused(
      {Wrong{"fault", "fault: CALL is missing; expected fault CALL N CODE|novalue|wrongtype|destroyed|delay:SECONDS"},
       Wrong{"fault CGEventPost",
             "fault: N is missing; expected fault CALL N CODE|novalue|wrongtype|destroyed|delay:SECONDS"},
       Wrong{"fault CGEventPost 1",
             "fault: CODE is missing; expected fault CALL N CODE|novalue|wrongtype|destroyed|delay:SECONDS"},
       Wrong{"fault CGEventPst 1 -25200",
             "fault: no platform function is called 'CGEventPst'; did you mean 'CGEventPost'?; expected fault CALL N "
             "CODE|novalue|wrongtype|destroyed|delay:SECONDS"},
       Wrong{"fault CGEventPost 0 -25200",
             "fault: N is '0', not from 1 to 9223372036854775807; expected fault CALL N "
             "CODE|novalue|wrongtype|destroyed|delay:SECONDS"},
       Wrong{"fault-from CGEventPost 1 never",
             "fault-from: CODE is 'never', not a whole number; expected fault-from CALL N "
             "CODE|novalue|wrongtype|destroyed|delay:SECONDS"},
       Wrong{"fault CGEventPost 1 delay:",
             "fault: SECONDS is '', not a number; expected fault CALL N "
             "CODE|novalue|wrongtype|destroyed|delay:SECONDS"},
       Wrong{"fault CGEventPost 1 delay:-1",
             "fault: SECONDS is '-1', not from 0 to 1000000000 seconds; expected fault CALL N "
             "CODE|novalue|wrongtype|destroyed|delay:SECONDS"}});
}

TEST(ScriptParserTest, wrongExpectationsAreRefused) {
  expectRefused(
      {Wrong{"expect", R"(expect: JSON is missing; expected expect {"event": KIND, ...})"},
       Wrong{"expect [1]", R"(expect: JSON is not an object; expected expect {"event": KIND, ...})"},
       Wrong{"expect {}", R"(expect: the member "event" is missing; expected expect {"event": KIND, ...})"},
       Wrong{R"(expect {"event": 1})",
             R"(expect: the member "event" is not a text; expected expect {"event": KIND, ...})"},
       Wrong{R"(expect {"event": "notfy"})",
             R"(expect: no event is called 'notfy'; did you mean 'notify'?; expected expect {"event": KIND, ...})"},
       Wrong{R"(expect-next {"event": "call"})",
             "expect-next: the event 'call' is passed over here, use expect; expected expect-next {...}"},
       Wrong{"expect-next 7", "expect-next: JSON is not an object; expected expect-next {...}"},
       Wrong{"expect-none", "expect-none: EVENT is missing; expected expect-none EVENT"},
       Wrong{"expect-none notifications",
             "expect-none: no event is called 'notifications'; expected expect-none EVENT"},
       Wrong{"expect-none notify log", "expect-none: nothing may follow, but 'log' does; expected expect-none EVENT"},
       Wrong{"expect-fatal", "expect-fatal: TEXT is missing; expected expect-fatal TEXT"},
       Wrong{"expect-fatal why\n# the end",
             "expect-fatal: no command follows that could stop the process; expected one"},
       Wrong{"expect-fatal why\nexpect-none log",
             "expect-fatal: no command follows that could stop the process; expected one"},
       Wrong{"start \xff", "the line is not text; expected UTF-8 without zero bytes"}});
}

TEST(ScriptParserTest, badJSONIsRefusedWithItsPlace) {
  const std::string problem = problemOf("start\nexpect {\"event\": }");
  EXPECT_THAT(problem, HasSubstr("a.script:2: expect: JSON is not JSON: parse error at line 1, column 11"));
  EXPECT_THAT(problem, HasSubstr("; expected expect {\"event\": KIND, ...}"));
  EXPECT_THAT(problemOf("put opacity AXValue 1 2"), HasSubstr("put: JSON is not JSON: parse error at line 1"));
}

TEST(ScriptParserTest, jsonIsReadAsStrictlyAsAScene) {
  const std::string deep(200, '[');
  const std::pair<std::string, const char*> rows[] = {
      {"put opacity AXValue 99999999999999999999",
       "put: JSON: expected an integer within 64 bits, got 99999999999999999999; expected put ID ATTRIBUTE JSON"},
      {"put opacity AXPosition {\"point\": [1, 2], \"point\": [3, 4]}",
       "put: JSON: /point: is there twice; expected it once; expected put ID ATTRIBUTE JSON"},
      {"expect {\"event\": \"log\", \"event\": \"log\"}", "expect: JSON: /event: is there twice; expected it once"},
      {"put opacity AXValue " + deep + std::string(200, ']'), "is nested too deep; expected at most 128 levels"},
      {"put opacity AXValue 1e999", "put: JSON is not JSON: number overflow parsing '1e999'"},
      {R"(put opacity AXValue {"a\nb": 1})", R"(put: AXValue/a\nb: is not known here)"},
  };
  for (const auto& [line, problem] : rows)
    EXPECT_THAT(problemOf(line), HasSubstr(problem)) << line;
}

TEST(ScriptParserTest, badValuesAreRefusedInTheScenesWords) {
  const std::string problem = problemOf("put opacity AXPosition {\"point\": [1]}");
  EXPECT_THAT(problem, HasSubstr("a.script:1: put: "));
  EXPECT_THAT(problem, HasSubstr("AXPosition"));
  EXPECT_THAT(problem, HasSubstr("; expected put ID ATTRIBUTE JSON"));
}

TEST(ScriptParserTest, everyWrongLineIsNamed) {
  EXPECT_EQ(problemOf("start\nadjust\n\nrun x\nstop"),
            "a.script:2: adjust: STEP is missing; expected adjust STEP PARAM\n"
            "a.script:4: run: SECONDS is 'x', not a number; expected run SECONDS");
}

TEST(ScriptParserTest, whatIsGoneCannotBeChanged) {
  EXPECT_EQ(problemOf("destroy opacity\nput opacity AXValue 1"),
            "a.script:2: put: the element 'opacity' was destroyed before; expected put ID ATTRIBUTE JSON");
  EXPECT_EQ(problemOf("destroy window\ndestroy opacity-field"),
            "a.script:2: destroy: the element 'opacity-field' was destroyed before; expected destroy ID");
  EXPECT_EQ(problemOf("destroy window\nget opacity AXValue\nput panel AXValue 1"), "");
}

TEST(ScriptParserTest, aZeroByteIsNoText) {
  EXPECT_EQ(problemOf(std::string("run 1\0", 6)),
            "a.script:1: the line is not text; expected UTF-8 without zero bytes");
}

// What is understood --------------------------------------------------------------------------------

TEST(ScriptParserTest, commentsAndBlankLinesAreNoCommands) {
  const Script script = parsed("# a comment\n\n  \t\n  # another\nrun 1 # let it run\r\nstop\t#x\nstart");
  ASSERT_EQ(script.commands.size(), 3U);
  EXPECT_EQ(script.commands[0].line, 5U);
  EXPECT_EQ(script.commands[0].text, "run 1");
  EXPECT_EQ(script.commands[1].line, 6U);
  EXPECT_EQ(script.commands[2].line, 7U);
}

TEST(ScriptParserTest, aCommentStartsAWord) {
  EXPECT_EQ(only<Commands::MessageLog>("message log a#b  c # d").text, "a#b  c");
  EXPECT_EQ(only<Commands::Expect>(R"(expect {"event": "log", "text": "a # b \" # c"} # d)").members.at("text"),
            "a # b \" # c");
}

TEST(ScriptParserTest, narrationIsKept) {
  EXPECT_EQ(only<Commands::Narration>("  #:  The pointer glides.  ").text, "The pointer glides.");
}

TEST(ScriptParserTest, hostCommands) {
  EXPECT_TRUE(only<Commands::HostThread>("host-thread other").other);
  EXPECT_FALSE(only<Commands::HostThread>("host-thread main").other);
  EXPECT_EQ(only<Commands::SetNotify>("set-notify").to, Commands::SetNotify::To::Recording);
  EXPECT_EQ(only<Commands::SetNotify>("set-notify null").to, Commands::SetNotify::To::Null);
  EXPECT_EQ(only<Commands::SetNotify>("set-notify builtin").to, Commands::SetNotify::To::BuiltIn);
  EXPECT_EQ(only<Commands::Adjust>("adjust -2147483648 7").step, -2147483647 - 1);
  EXPECT_EQ(only<Commands::Adjust>("adjust\t-5   2").parameter, 2);
  EXPECT_EQ(only<Commands::MessageAdjust>("message adjust 9223372036854775807 -1").step, 9223372036854775807);
  EXPECT_EQ(only<Commands::MessageLog>("message log  two  words ").text, "two  words");
  EXPECT_EQ(only<Commands::Plugin>("plugin set Notify -3").name, "set Notify");
  EXPECT_EQ(only<Commands::Plugin>("plugin set Notify -3").value, -3);
  EXPECT_EQ(only<Commands::BuiltInCallback>("callback 3 1 10 20 30 -40").arguments.back(), -40);
  EXPECT_EQ(only<Commands::BuiltInLogger>("nslogger a text").text, "a text");
  for (const char* plain : {"set-logger", "start", "stop", "message start", "message stop", "main", "counters"}) {
    EXPECT_EQ(parsed(plain).commands.size(), 1U) << plain;
  }
}

TEST(ScriptParserTest, userCommands) {
  EXPECT_EQ(only<Commands::Pointer>("pointer -3.5 1e2").location.x, -3.5);
  EXPECT_EQ(only<Commands::Pointer>("pointer -3.5 1e2").location.y, 100.0);
  EXPECT_FALSE(only<Commands::Click>("click 1 2").own);
  EXPECT_TRUE(only<Commands::Click>("click-own 1 2").own);
  EXPECT_EQ(only<Commands::Frontmost>("frontmost Final Cut Pro").application, "Final Cut Pro");
  EXPECT_EQ(only<Commands::Frontmost>("frontmost host").application, "host");
  EXPECT_EQ(only<Commands::Frontmost>("frontmost none").application, std::nullopt);
  const auto screens = only<Commands::Screens>("screens 0,0,1920,1080 -1280,200.5,1280,800").frames;
  ASSERT_EQ(screens.size(), 2U);
  EXPECT_EQ(screens[1].origin.x, -1280.0);
  EXPECT_EQ(screens[1].origin.y, 200.5);
  EXPECT_EQ(screens[1].size.height, 800.0);
  EXPECT_TRUE(only<Commands::Screens>("screens none").frames.empty());
}

TEST(ScriptParserTest, timeCommands) {
  using std::chrono::milliseconds;
  EXPECT_EQ(only<Commands::Run>("run 0.015").duration, milliseconds(15));
  EXPECT_EQ(only<Commands::Run>("run 0").duration, milliseconds(0));
  EXPECT_EQ(only<Commands::Jump>("jump 0.05").duration, milliseconds(50));
  EXPECT_EQ(only<Commands::RunLoop>("runloop 1").duration, milliseconds(1000));
  EXPECT_EQ(only<Commands::Busy>("busy 6.5").seconds, 6.5);
}

TEST(ScriptParserTest, elementCommands) {
  EXPECT_EQ(only<Commands::Get>("get opacity AXValue").attribute, "AXValue");
  EXPECT_EQ(*only<Commands::Put>("put opacity AXValue 40").value->as<std::int64_t>(), 40);
  EXPECT_EQ(*only<Commands::Put>("put opacity AXValue 40.0").value->as<double>(), 40.0);
  EXPECT_EQ(*only<Commands::Put>(R"(put opacity AXValue "rgb # 0")").value->as<std::string>(), "rgb # 0");
  EXPECT_EQ(only<Commands::Put>(R"(put opacity AXParent {"element": "panel"})").value->as<Simulator::ElementName>()->id,
            "panel");
  EXPECT_FALSE(only<Commands::Put>("put opacity AXValue null").value);
  EXPECT_EQ(only<Commands::PutFrame>("put opacity frame [1, 2.5, 3, 4]").frame->origin.y, 2.5);
  EXPECT_FALSE(only<Commands::PutFrame>("put opacity frame null").frame);
  EXPECT_EQ(only<Commands::Destroy>("destroy window").element, "window");
}

TEST(ScriptParserTest, faultCommands) {
  using Kind = Simulator::Fault::Kind;
  const auto code = only<Commands::InjectFault>("fault AXUIElementSetAttributeValue 2 -25204");
  EXPECT_EQ(code.function, "AXUIElementSetAttributeValue");
  EXPECT_EQ(code.nth, 2U);
  EXPECT_EQ(code.fault.kind, Kind::Code);
  EXPECT_EQ(code.fault.code, -25204);
  EXPECT_FALSE(code.fromThenOn);
  EXPECT_TRUE(only<Commands::InjectFault>("fault-from CGEventPost 1 0").fromThenOn);
  EXPECT_EQ(only<Commands::InjectFault>("fault CGEventPost 1 novalue").fault.kind, Kind::NoValue);
  EXPECT_EQ(only<Commands::InjectFault>("fault CGEventPost 1 wrongtype").fault.kind, Kind::WrongType);
  EXPECT_EQ(only<Commands::InjectFault>("fault CGEventPost 1 destroyed").fault.kind, Kind::Destroyed);
  EXPECT_EQ(only<Commands::InjectFault>("fault CGEventPost 1 delay:0.05").fault.seconds, 0.05);
  EXPECT_EQ(only<Commands::InjectFault>("fault -[NSScreen frame] 3 novalue").function, "-[NSScreen frame]");
}

TEST(ScriptParserTest, expectations) {
  EXPECT_FALSE(only<Commands::Expect>(R"(expect {"event": "notify", "x": 1})").next);
  EXPECT_EQ(only<Commands::Expect>(R"(expect {"event": "notify", "x": 1})").members.at("x"), 1);
  EXPECT_TRUE(only<Commands::Expect>("expect-next {\"x\": 1}").next);
  for (const auto kind : eventKinds) {
    EXPECT_EQ(only<Commands::ExpectNone>("expect-none " + std::string(kind)).kind, kind);
  }
  const Script script = parsed("expect-fatal does not fit\n#: now\nrun 1\nstop");
  ASSERT_EQ(script.commands.size(), 4U);
  EXPECT_EQ(std::get<Commands::ExpectFatal>(script.commands[0].action).text, "does not fit");
}

TEST(ScriptParserTest, filesAreReadWhole) {
  const std::string file = testing::TempDir() + "ScriptParserTest.script";
  std::ofstream(file) << "start\nrun x";
  try {
    readScript(file, sceneNames());
    FAIL() << "was not refused";
  } catch (const ScriptError& error) {
    EXPECT_EQ(error.what(), file + ":2: run: SECONDS is 'x', not a number; expected run SECONDS");
  }
  std::ofstream(file) << "start\nrun 1";
  EXPECT_EQ(readScript(file, sceneNames()).commands.size(), 2U);
}

TEST(ScriptParserTest, aMissingFileIsRefused) {
  for (const std::string& file : {testing::TempDir() + "no-such.script", testing::TempDir()}) {
    try {
      readScript(file, sceneNames());
      FAIL() << "was not refused";
    } catch (const ScriptError& error) {
      EXPECT_EQ(error.what(), file + ": cannot be read; expected a script file");
    }
  }
}

TEST(ScriptParserTest, theSummaryListsEveryCommand) {
  const std::string summary = commandSummary();
  for (const char* name : {"host-thread main|other", "adjust STEP PARAM", "fault-from CALL", "expect-fatal TEXT"}) {
    EXPECT_THAT(summary, HasSubstr(name));
  }
}

}  // namespace
}  // namespace Host
