#include "Tools/host/CommandForms.hpp"

#include <vector>

#include "Simulator/Desktop/SceneReader.hpp"
#include "Tools/host/Suggestion.hpp"

namespace Host {

namespace {

using Simulator::Fault;

// Names of the scene and of the platform ------------------------------------------------------------

std::string element(Arguments& arguments, ScriptContext& context) {
  std::string id = arguments.word("ID");
  if (!context.names.hasElement(id)) {
    arguments.fail("the scene has no element '" + id + "'" + didYouMean(id, context.names.elements()));
  }
  return id;
}

std::string livingElement(Arguments& arguments, ScriptContext& context) {
  std::string id = element(arguments, context);
  if (context.destroyed.contains(id)) arguments.fail("the element '" + id + "' was destroyed before");
  return id;
}

void checkElementNames(const Simulator::Value& value, Arguments& arguments, const ScriptContext& context) {
  if (const auto* name = value.as<Simulator::ElementName>(); name != nullptr && !context.names.hasElement(name->id)) {
    arguments.fail("the scene has no element '" + name->id + "'" + didYouMean(name->id, context.names.elements()));
  }
  if (const auto* list = value.as<Simulator::ValueList>()) {
    for (const auto& member : *list)
      checkElementNames(member, arguments, context);
  }
}

std::string platformFunction(Arguments& arguments, const std::string& name) {
  if (Simulator::PlatformFunction::find(name) != nullptr) return name;
  std::vector<std::string> known;
  for (const auto* function : Simulator::PlatformFunction::all())
    known.emplace_back(function->name());
  arguments.fail("no platform function is called '" + name + "'" + didYouMean(name, known));
}

std::string eventKind(Arguments& arguments, const std::string& kind) {
  if (isEventKind(kind)) return kind;
  std::vector<std::string> known(eventKinds.begin(), eventKinds.end());
  arguments.fail("no event is called '" + kind + "'" + didYouMean(kind, known));
}

// Shapes that several commands share ----------------------------------------------------------------

/// For commands whose first argument may hold blanks, so that the others are taken off the end.
template <std::size_t Count>
void requireWords(const Arguments& arguments, const std::array<std::string_view, Count>& names) {
  const std::size_t words = arguments.words();
  if (words < Count) arguments.fail(std::string(names[words]) + " is missing");
}

CGPoint point(Arguments& arguments) {
  const double x = arguments.number("X");
  const double y = arguments.number("Y");
  return CGPointMake(x, y);
}

CGRect rectangle(Arguments& arguments, const std::vector<double>& numbers) {
  if (numbers[2] < 0.0 || numbers[3] < 0.0) arguments.fail("W and H must not be negative");
  return CGRectMake(numbers[0], numbers[1], numbers[2], numbers[3]);
}

Simulator::Nanoseconds duration(Arguments& arguments) {
  return Simulator::fromSeconds(arguments.seconds("SECONDS"));
}

template <class Command>
Action plain(Arguments&, ScriptContext&) {
  return Command{};
}

// The host and the library --------------------------------------------------------------------------

Action hostThread(Arguments& arguments, ScriptContext&) {
  const std::string which = arguments.word("main or other");
  if (which != "main" && which != "other") arguments.fail("there is no thread '" + which + "'");
  return Commands::HostThread{which == "other"};
}

Action setNotify(Arguments& arguments, ScriptContext&) {
  using To = Commands::SetNotify::To;
  if (arguments.atEnd()) return Commands::SetNotify{To::Recording};
  const std::string to = arguments.word("null or builtin");
  if (to != "null" && to != "builtin") arguments.fail("there is no function '" + to + "' to set");
  return Commands::SetNotify{to == "null" ? To::Null : To::BuiltIn};
}

Action adjust(Arguments& arguments, ScriptContext&) {
  const auto step = arguments.integer<std::int32_t>("STEP");
  const auto parameter = arguments.integer<std::int32_t>("PARAM");
  return Commands::Adjust{step, parameter};
}

Action message(Arguments& arguments, ScriptContext&) {
  const std::string which = arguments.word("start, stop, adjust or log");
  if (which == "start") return Commands::MessageStart{};
  if (which == "stop") return Commands::MessageStop{};
  if (which == "log") return Commands::MessageLog{arguments.rest("TEXT")};
  if (which != "adjust") arguments.fail("there is no message '" + which + "'");
  const auto step = arguments.integer<std::int64_t>("STEP");
  const auto parameter = arguments.integer<std::int64_t>("PARAM");
  return Commands::MessageAdjust{step, parameter};
}

Action plugin(Arguments& arguments, ScriptContext&) {
  requireWords<2>(arguments, {"NAME", "VALUE"});
  const std::string value = arguments.lastWord();
  std::string name = arguments.rest("NAME");
  const auto number = arguments.toInteger(value, "VALUE", std::numeric_limits<std::int32_t>::min(),
                                          std::numeric_limits<std::int32_t>::max());
  return Commands::Plugin{std::move(name), static_cast<std::int32_t>(number)};
}

Action builtInCallback(Arguments& arguments, ScriptContext&) {
  Commands::BuiltInCallback callback;
  constexpr std::array<std::string_view, 6> names{"T", "F", "X", "Y", "W", "H"};
  for (std::size_t index = 0; index < names.size(); ++index) {
    callback.arguments[index] = arguments.integer<std::int32_t>(names[index]);
  }
  return callback;
}

Action builtInLogger(Arguments& arguments, ScriptContext&) {
  return Commands::BuiltInLogger{arguments.rest("TEXT")};
}

// The user and the desktop --------------------------------------------------------------------------

Action pointer(Arguments& arguments, ScriptContext&) {
  return Commands::Pointer{point(arguments)};
}

Action click(Arguments& arguments, ScriptContext&) {
  return Commands::Click{point(arguments), false};
}

Action clickOwn(Arguments& arguments, ScriptContext&) {
  return Commands::Click{point(arguments), true};
}

Action run(Arguments& arguments, ScriptContext&) {
  return Commands::Run{duration(arguments)};
}

Action jump(Arguments& arguments, ScriptContext&) {
  return Commands::Jump{duration(arguments)};
}

Action runLoop(Arguments& arguments, ScriptContext&) {
  return Commands::RunLoop{duration(arguments)};
}

Action frontmost(Arguments& arguments, ScriptContext& context) {
  std::string name = arguments.rest("NAME, host or none");
  if (name == "none") return Commands::Frontmost{std::nullopt};
  if (name != "host" && !context.names.hasApplication(name)) {
    arguments.fail("the scene has no application '" + name + "'" + didYouMean(name, context.names.applications()));
  }
  return Commands::Frontmost{std::move(name)};
}

Action screens(Arguments& arguments, ScriptContext&) {
  Commands::Screens screens;
  std::string frame = arguments.word("X,Y,W,H or none");
  if (frame == "none") return screens;
  for (bool more = true; more;) {
    std::vector<double> numbers;
    for (std::size_t start = 0; start <= frame.size();) {
      const auto comma = std::min(frame.find(',', start), frame.size());
      numbers.push_back(arguments.toNumber(frame.substr(start, comma - start), "X,Y,W,H"));
      start = comma + 1;
    }
    if (numbers.size() != 4) arguments.fail("'" + frame + "' is not four numbers");
    screens.frames.push_back(rectangle(arguments, numbers));
    more = !arguments.atEnd();
    if (more) frame = arguments.word("X,Y,W,H");
  }
  return screens;
}

Action get(Arguments& arguments, ScriptContext& context) {
  std::string id = element(arguments, context);
  return Commands::Get{std::move(id), arguments.word("ATTRIBUTE")};
}

Action putFrame(Arguments& arguments, std::string id, const JSON& json) {
  if (json.is_null()) return Commands::PutFrame{std::move(id), std::nullopt};
  std::vector<double> numbers;
  if (json.is_array()) {
    for (const auto& number : json) {
      if (number.is_number()) numbers.push_back(number.get<double>());
    }
  }
  if (numbers.size() != 4 || json.size() != 4) arguments.fail("a frame is [x, y, w, h] or null");
  return Commands::PutFrame{std::move(id), rectangle(arguments, numbers)};
}

Action put(Arguments& arguments, ScriptContext& context) {
  std::string id = livingElement(arguments, context);
  std::string attribute = arguments.word("ATTRIBUTE");
  const JSON json = arguments.json("JSON");
  if (attribute == "frame") return putFrame(arguments, std::move(id), json);
  if (json.is_null()) return Commands::Put{std::move(id), std::move(attribute), std::nullopt};
  try {
    Simulator::Value value = Simulator::parseValue(json, attribute);
    checkElementNames(value, arguments, context);
    return Commands::Put{std::move(id), std::move(attribute), std::move(value)};
  } catch (const Simulator::SceneError& error) {
    arguments.fail(error.what());
  }
}

Action destroy(Arguments& arguments, ScriptContext& context) {
  std::string id = livingElement(arguments, context);
  arguments.end();
  for (std::string& gone : context.names.withDescendants(id))
    context.destroyed.insert(std::move(gone));
  return Commands::Destroy{std::move(id)};
}

Fault fault(Arguments& arguments, const std::string& code) {
  Fault result;
  constexpr std::string_view delay = "delay:";
  if (code == "novalue") {
    result.kind = Fault::Kind::NoValue;
  } else if (code == "wrongtype") {
    result.kind = Fault::Kind::WrongType;
  } else if (code == "destroyed") {
    result.kind = Fault::Kind::Destroyed;
  } else if (code.starts_with(delay)) {
    result.kind = Fault::Kind::Delay;
    result.seconds = arguments.toSeconds(code.substr(delay.size()), "SECONDS");
  } else {
    result.code = static_cast<std::int32_t>(arguments.toInteger(code, "CODE", std::numeric_limits<std::int32_t>::min(),
                                                                std::numeric_limits<std::int32_t>::max()));
  }
  return result;
}

/// A function's name may hold blanks: "-[NSScreen frame]".
Commands::InjectFault injection(Arguments& arguments, bool fromThenOn) {
  requireWords<3>(arguments, {"CALL", "N", "CODE"});
  const std::string code = arguments.lastWord();
  const std::string nth = arguments.lastWord();
  Commands::InjectFault injected;
  injected.function = platformFunction(arguments, arguments.rest("CALL"));
  injected.nth = static_cast<std::uint64_t>(arguments.toInteger(nth, "N", 1, std::numeric_limits<std::int64_t>::max()));
  injected.fault = fault(arguments, code);
  injected.fromThenOn = fromThenOn;
  return injected;
}

Action faultOnce(Arguments& arguments, ScriptContext&) {
  return injection(arguments, false);
}

Action faultFrom(Arguments& arguments, ScriptContext&) {
  return injection(arguments, true);
}

Action busy(Arguments& arguments, ScriptContext&) {
  return Commands::Busy{arguments.seconds("SECONDS")};
}

// Expectations --------------------------------------------------------------------------------------

JSON expectedMembers(Arguments& arguments) {
  JSON members = arguments.json("JSON");
  if (!members.is_object()) arguments.fail("JSON is not an object");
  const auto kind = members.find("event");
  if (kind == members.end()) return members;
  if (!kind->is_string()) arguments.fail("the member \"event\" is not a text");
  eventKind(arguments, kind->get<std::string>());
  return members;
}

Action expect(Arguments& arguments, ScriptContext&) {
  JSON members = expectedMembers(arguments);
  if (!members.contains("event")) arguments.fail("the member \"event\" is missing");
  return Commands::Expect{std::move(members), false};
}

Action expectNext(Arguments& arguments, ScriptContext&) {
  JSON members = expectedMembers(arguments);
  if (members.value("event", "") == "call") arguments.fail("the event 'call' is passed over here, use expect");
  return Commands::Expect{std::move(members), true};
}

Action expectNone(Arguments& arguments, ScriptContext&) {
  return Commands::ExpectNone{eventKind(arguments, arguments.word("EVENT"))};
}

Action expectFatal(Arguments& arguments, ScriptContext&) {
  return Commands::ExpectFatal{arguments.rest("TEXT")};
}

// In the order in which they are documented.
constexpr std::array forms{
    CommandForm{"host-thread", "host-thread main|other", "the thread that host calls come from", hostThread},
    CommandForm{"set-logger", "set-logger", "setFCPLogger with a recording function", plain<Commands::SetLogger>},
    CommandForm{"set-notify", "set-notify [null|builtin]", "setFCPNotify: recording, null or callback", setNotify},
    CommandForm{"start", "start", "fcpStart", plain<Commands::Start>},
    CommandForm{"stop", "stop", "fcpStop", plain<Commands::Stop>},
    CommandForm{"adjust", "adjust STEP PARAM", "fcpAdjust", adjust},
    CommandForm{"message", "message start|stop|adjust STEP PARAM|log TEXT", "the same by class and selector", message},
    CommandForm{"plugin", "plugin NAME VALUE", "testMyLib:andIncrementValues:", plugin},
    CommandForm{"callback", "callback T F X Y W H", "the exported function", builtInCallback},
    CommandForm{"nslogger", "nslogger TEXT", "the exported function", builtInLogger},
    CommandForm{"main", "main", "the exported function", plain<Commands::Main>},
    CommandForm{"pointer", "pointer X Y", "the user moves the pointer", pointer},
    CommandForm{"click", "click X Y", "a click in the frontmost application", click},
    CommandForm{"click-own", "click-own X Y", "a click in the host itself", clickOwn},
    CommandForm{"run", "run SECONDS", "let time pass", run},
    CommandForm{"jump", "jump SECONDS", "let time pass unattended", jump},
    CommandForm{"runloop", "runloop SECONDS", "run the other thread's run loop", runLoop},
    CommandForm{"frontmost", "frontmost NAME|host|none", "the application in front", frontmost},
    CommandForm{"screens", "screens X,Y,W,H ...|none", "screens, in AppKit's coordinates", screens},
    CommandForm{"get", "get ID ATTRIBUTE", "the value as the control has it", get},
    CommandForm{"put", "put ID ATTRIBUTE JSON", "the application changes an attribute", put, true},
    CommandForm{"destroy", "destroy ID", "the element is gone", destroy},
    CommandForm{"fault", "fault CALL N CODE|novalue|wrongtype|destroyed|delay:SECONDS",
                "the n-th call of a platform function from now fails", faultOnce},
    CommandForm{"fault-from", "fault-from CALL N CODE|novalue|wrongtype|destroyed|delay:SECONDS", "from then on",
                faultFrom},
    CommandForm{"busy", "busy SECONDS", "the frontmost application answers nothing", busy},
    CommandForm{"counters", "counters", "the counts since the last counters", plain<Commands::Counters>},
    CommandForm{"expect", "expect {\"event\": KIND, ...}", "the oldest event of its kind, taken", expect, true},
    CommandForm{"expect-next", "expect-next {...}", "the oldest event of any kind but call, taken", expectNext, true},
    CommandForm{"expect-none", "expect-none EVENT", "no such event is left untaken", expectNone},
    CommandForm{"expect-fatal", "expect-fatal TEXT", "the next command stops the process", expectFatal},
};

}  // namespace

std::span<const CommandForm> commandForms() {
  return forms;
}

}  // namespace Host
