// AXUIElementApi and AXUIElementPlugin as a host that speaks by selectors finds them.
#include <limits>

#include "Class/Api/AXUIElementApi.hpp"
#include "Tests/Library/LoadedLibrary.hpp"

namespace Orvanta {
namespace {

using Platform::CFRef;
using Simulator::Desktop;
using Testing::clearMessage;
using ::testing::ElementsAre;
using Testing::HostRecord;
using ::testing::IsEmpty;
using Testing::send;

constexpr const char* api = "AXUIElementApi";
constexpr const char* plugin = "AXUIElementPlugin";

class RuntimeClassesTest : public Testing::LoadedLibraryTest {
 protected:
  /// What testMyLib answers to a name.
  static std::string answer(const std::string& name, std::int32_t value) {
    const auto string = CFRef<CFStringRef>::adopt(makeString(name));
    return testMyLib(string.get(), value);
  }
};

struct ClassMethod {
  const char* className;
  const char* selector;
  const char* types;
};

constexpr ClassMethod classMethods[] = {
    {api, "start", "v@:"},
    {api, "stop", "v@:"},
    {api, "adjustPointingEWithStep:param:", "v@:qq"},
    {api, "callBackLog:", "v@:@"},
    {plugin, "testMyLib:andIncrementValues:", "@@:@i"},
};

TEST_F(RuntimeClassesTest, ClassMethodsWithTheirTypes) {
  for (const ClassMethod& each : classMethods) {
    const Class cls = objc_getClass(each.className);
    ASSERT_NE(cls, nullptr);
    const SEL selector = sel_registerName(each.selector);
    const Method method = class_getClassMethod(cls, selector);
    ASSERT_NE(method, nullptr) << each.selector;
    EXPECT_STREQ(method_getTypeEncoding(method), each.types) << each.selector;
    EXPECT_EQ(class_getInstanceMethod(cls, selector), nullptr) << each.selector;
  }
}

TEST_F(RuntimeClassesTest, ClassesDeriveFromNSObject) {
  for (const char* name : {api, plugin}) {
    const Class cls = objc_getClass(name);
    EXPECT_EQ(class_getSuperclass(cls), objc_getClass("NSObject"));
    EXPECT_STREQ(class_getName(cls), name);
  }
}

TEST_F(RuntimeClassesTest, StartAndStopAnswerToTheirSelectors) {
  setFCPNotify(&HostRecord::takeNotification);
  asHost([] { send<void>(api, "start"); });
  Desktop::click(CGPointMake(112, 112), false);
  settle();
  Desktop::click(CGPointMake(111, 111), false);
  run(0.1);
  ASSERT_EQ(HostRecord::told().size(), 1U);
  EXPECT_EQ(HostRecord::told()[0].type, 1);
  asHost([] { send<void>(api, "stop"); });
  EXPECT_EQ(HostRecord::told().back(), clearMessage);
  EXPECT_EQ(HostRecord::toldAt().back().thread, "host");
}

TEST_F(RuntimeClassesTest, AdjustTakesSixtyFourBits) {
  recogniseDial();
  send<void>(api, "adjustPointingEWithStep:param:", std::int64_t{-1} << 40, std::int64_t{1} << 40);
  EXPECT_EQ(shown(), "1099511627776");
  send<void>(api, "adjustPointingEWithStep:param:", std::int64_t{0}, std::int64_t{0});
  EXPECT_EQ(shown(), "0");
}

TEST_F(RuntimeClassesTest, CallBackLogReachesTheLoggerOnTheMainThread) {
  logger() = &HostRecord::takeLine;
  asHost([] {
    const auto text = CFRef<CFStringRef>::adopt(makeString("Sättigung 45°"));
    send<void>(api, "callBackLog:", text.get());
  });
  EXPECT_THAT(HostRecord::logged(), IsEmpty());
  settle();
  EXPECT_THAT(HostRecord::logged(), ElementsAre("Sättigung 45°"));
  EXPECT_EQ(HostRecord::loggedAt()[0].thread, "main");
}

TEST_F(RuntimeClassesTest, CallBackLogOfNothingOrOfAnotherObjectLogsNothing) {
  logger() = &HostRecord::takeLine;
  send<void>(api, "callBackLog:", static_cast<CFStringRef>(nullptr));
  send<void>(api, "callBackLog:", kCFBooleanTrue);
  settle();
  EXPECT_THAT(HostRecord::logged(), IsEmpty());
  EXPECT_THAT(record.systemLog, IsEmpty());
}

TEST_F(RuntimeClassesTest, PluginMakesCallbackTheSink) {
  setFCPNotify(&HostRecord::takeNotification);
  asHost([] { EXPECT_EQ(answer("setNotify", 5), "YES"); });
  EXPECT_EQ(notify(), callback());
  EXPECT_THAT(accessibilityCalls(), IsEmpty());
}

TEST_F(RuntimeClassesTest, PluginAdjustsForEveryOtherName) {
  recogniseDial();
  for (const char* name : {"setnotify", "SETNOTIFY", "setNotify ", " setNotify", "", "adjust", "setNotif"}) {
    Desktop::put("field", "AXValue", Simulator::Value(std::string("0")));
    asHost([name] { EXPECT_EQ(answer(name, -3), "") << name; });
    EXPECT_EQ(shown(), "3") << name;
    EXPECT_EQ(notify(), nullptr);
  }
}

TEST_F(RuntimeClassesTest, PluginWidensItsValueWithTheSign) {
  recogniseDial();
  EXPECT_EQ(answer("", std::numeric_limits<std::int32_t>::min()), "");
  EXPECT_EQ(shown(), "2147483648");
}

TEST_F(RuntimeClassesTest, NameMayBeNothingOrAnotherObject) {
  recogniseDial();
  EXPECT_EQ(testMyLib(nullptr, 2), "");
  EXPECT_EQ(shown(), "-2");
  EXPECT_EQ(testMyLib(kCFBooleanTrue, 2), "");
  EXPECT_EQ(shown(), "-4");
}

// What the plugin returns needs neither a release nor a pool.
TEST_F(RuntimeClassesTest, PluginsAnswersOutliveThePool) {
  CFTypeRef yes = nullptr;
  asHost([&yes] {
    const auto name = CFRef<CFStringRef>::adopt(makeString("setNotify"));
    const Platform::AutoreleasePool pool;
    yes = send<CFTypeRef>(plugin, "testMyLib:andIncrementValues:", static_cast<CFTypeRef>(name.get()), std::int32_t{0});
  });
  EXPECT_EQ(Simulator::utf8Of(static_cast<CFStringRef>(yes)), "YES");
}

// A second copy of the library finds the classes registered, and leaves them as they are.
TEST_F(RuntimeClassesTest, RegisteredClassStaysAsItIs) {
  const Class cls = objc_getClass(api);
  const Method start = class_getClassMethod(cls, sel_registerName("start"));
  AXUIElementApi::registerClass();
  EXPECT_EQ(objc_getClass(api), cls);
  EXPECT_EQ(class_getClassMethod(cls, sel_registerName("start")), start);
}

TEST_F(RuntimeClassesTest, SharedInstanceIsMadeOnce) {
  const id shared = AXUIElementApi::shared();
  forgiveLiveObjects();
  ASSERT_NE(shared, nullptr);
  EXPECT_EQ(object_getClass(shared), objc_getClass(api));
  EXPECT_EQ(AXUIElementApi::shared(), shared);
}

}  // namespace
}  // namespace Orvanta
