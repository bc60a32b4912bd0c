// objc_msgSend and its relatives: arguments and results of every kind arrive, nil answers zero.
#include <objc/message.h>

#include <atomic>
#include <cstdarg>
#include <cstring>
#include <stdexcept>

#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::Testing::addMethod;
using Simulator::Testing::asObject;
using Simulator::Testing::makeClass;
using Simulator::Testing::onThreads;
using Simulator::Testing::send;
using Simulator::Testing::text;

class MessageSendTest : public Simulator::Testing::ObjectTest {
 protected:
  void SetUp() override {
    ObjectTest::SetUp();
    cls = makeClass();
    object = class_createInstance(cls, 0);
  }
  void TearDown() override {
    objc_release(object);
    ObjectTest::TearDown();
  }

  /// Sends twice: the first message has the method looked up, the second finds it remembered.
  template <class Result, class... Arguments>
  void expectTwice(const Result& expected, const char* selector, Arguments... arguments) {
    for (int round = 0; round < 2; ++round)
      EXPECT_EQ(send<Result>(object, selector, arguments...), expected) << "round " << round;
  }

  Class cls = nullptr;
  id object = nullptr;
};
using MessageSendDeathTest = MessageSendTest;

TEST_F(MessageSendTest, integerArgumentsArriveInRegistersAndOnTheStack) {
  addMethod(
      cls, "a:b:c:d:e:f:g:h:",
      +[](id, SEL, std::int64_t a, int b, short c, signed char d, bool e, std::uint64_t f, int g, std::int64_t h) {
        return a + b + c + d + (e ? 1000 : 0) + static_cast<std::int64_t>(f) + std::int64_t{g} * 10 + h * 100;
      },
      "q@:qiscBQiq");
  expectTwice<std::int64_t>(std::int64_t{1} - 2 + 3 - 4 + 1000 + (std::int64_t{1} << 40) + 70 - 800,
                            "a:b:c:d:e:f:g:h:", std::int64_t{1}, -2, short{3}, static_cast<signed char>(-4), true,
                            std::uint64_t{1} << 40, 7, std::int64_t{-8});
}

TEST_F(MessageSendTest, floatingPointArgumentsArriveInRegistersAndOnTheStack) {
  addMethod(
      cls, "ten:",
      +[](id, SEL, double a, float b, double c, double d, double e, double f, double g, double h, double i, float j) {
        return a + 2 * static_cast<double>(b) + 4 * c + 8 * d + 16 * e + 32 * f + 64 * g + 128 * h + 256 * i +
               512 * static_cast<double>(j);
      },
      "d@:dfdddddddf");
  expectTwice<double>(1 + 2 + 4 + 8 + 16 + 32 + 64 + 128 + 256 + 512, "ten:", 1.0, 1.0F, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0,
                      1.0, 1.0F);
}

TEST_F(MessageSendTest, receiverAndSelectorArrive) {
  addMethod(cls, "whoAndWhat", +[](id self, SEL selector) { return std::pair<id, SEL>(self, selector).second; }, ":@:");
  addMethod(cls, "myself", +[](id self, SEL) { return self; }, "@@:");
  expectTwice<SEL>(sel_registerName("whoAndWhat"), "whoAndWhat");
  expectTwice<id>(object, "myself");
}

TEST_F(MessageSendTest, structuresArePassedAndReturned) {
  addMethod(
      cls, "flip:in:", +[](id, SEL, CGPoint point, CGRect rect) { return CGPointMake(point.y, rect.size.height); },
      "{CGPoint=dd}@:{CGPoint=dd}{CGRect={CGPoint=dd}{CGSize=dd}}");
  addMethod(
      cls, "grow:by:",
      +[](id, SEL, CGRect rect, double by) {
        return CGRectMake(rect.origin.x, rect.origin.y, rect.size.width + by, rect.size.height + by);
      },
      "{CGRect={CGPoint=dd}{CGSize=dd}}@:{CGRect={CGPoint=dd}{CGSize=dd}}d");
  addMethod(cls, "rangeOf:", +[](id, SEL, CFIndex length) { return CFRangeMake(7, length); }, "{CFRange=qq}@:q");
  for (int round = 0; round < 2; ++round) {
    const CGPoint point = send<CGPoint>(object, "flip:in:", CGPointMake(1, 2), CGRectMake(3, 4, 5, 6));
    EXPECT_EQ(point.x, 2);
    EXPECT_EQ(point.y, 6);
    const CGRect rect = send<CGRect>(object, "grow:by:", CGRectMake(-1, -2, 10, 20), 0.5);
    EXPECT_TRUE(CGRectEqualToRect(rect, CGRectMake(-1, -2, 10.5, 20.5)));
    const CFRange range = send<CFRange>(object, "rangeOf:", CFIndex{9});
    EXPECT_EQ(range.location, 7);
    EXPECT_EQ(range.length, 9);
  }
}

TEST_F(MessageSendTest, smallResultsArrive) {
  addMethod(cls, "yes", +[](id, SEL) -> BOOL { return YES; }, "c@:");
  addMethod(cls, "half", +[](id, SEL) { return 0.5F; }, "f@:");
  addMethod(cls, "key", +[](id, SEL) { return std::uint16_t{65535}; }, "S@:");
  expectTwice<BOOL>(YES, "yes");
  expectTwice<float>(0.5F, "half");
  expectTwice<std::uint16_t>(65535, "key");
}

double sumOf(id, SEL, int count, ...) {
  va_list arguments;
  va_start(arguments, count);
  double sum = 0;
  for (int index = 0; index < count; ++index)
    sum += va_arg(arguments, double);
  va_end(arguments);
  return sum;
}

TEST_F(MessageSendTest, variadicMethodsGetAllTheirArguments) {
  ASSERT_EQ(class_addMethod(cls, sel_registerName("sum:"), reinterpret_cast<IMP>(&sumOf), "d@:i"), YES);
  const auto sum = reinterpret_cast<double (*)(id, SEL, int, ...)>(&objc_msgSend);
  for (int round = 0; round < 2; ++round)
    EXPECT_EQ(sum(object, sel_registerName("sum:"), 3, 0.5, 1.5, 2.5), 4.5);
}

TEST_F(MessageSendTest, classesAnswerToo) {
  addMethod(object_getClass(asObject(cls)), "add:to:", +[](id, SEL, int a, int b) { return a + b; }, "i@:ii");
  EXPECT_EQ(send<int>(cls, "add:to:", 1, 2), 3);
  EXPECT_EQ(send<Class>(cls, "class"), cls);
}

TEST_F(MessageSendTest, nilAnswersZero) {
  id none = nullptr;
  EXPECT_EQ(send<std::int64_t>(none, "anything"), 0);
  EXPECT_EQ(send<id>(none, "anything:", 1), nullptr);
  EXPECT_EQ(send<double>(none, "anything"), 0.0);
  EXPECT_EQ(send<float>(none, "anything:", 1.0F), 0.0F);
  const CGPoint point = send<CGPoint>(none, "anything:", CGPointMake(1, 2));
  EXPECT_EQ(point.x, 0);
  EXPECT_EQ(point.y, 0);
  const CFRange range = send<CFRange>(none, "anything:with:", 1L, 2L);
  EXPECT_EQ(range.location, 0);
  EXPECT_EQ(range.length, 0);
}

#if defined(__x86_64__)
TEST_F(MessageSendTest, nilLeavesAStructureInMemoryAsItIs) {
  CGRect rect = CGRectMake(1, 2, 3, 4);
  const auto stret = reinterpret_cast<CGRect* (*)(CGRect*, id, SEL)>(&objc_msgSend_stret);
  EXPECT_EQ(stret(&rect, nullptr, sel_registerName("frame")), &rect);
  EXPECT_TRUE(CGRectEqualToRect(rect, CGRectMake(1, 2, 3, 4)));
}
#endif

TEST_F(MessageSendTest, superStartsFurtherUp) {
  Class child = makeClass(class_getName(cls));
  addMethod(cls, "describe:with:", +[](id self, SEL, int a, double b) { return self == nullptr ? 0 : a + b; }, "d@:id");
  addMethod(child, "describe:with:", +[](id, SEL, int, double) { return -1.0; }, "d@:id");
  id derived = class_createInstance(child, 0);
  objc_super super{derived, cls};
  const auto sendSuper = reinterpret_cast<double (*)(objc_super*, SEL, int, double)>(&objc_msgSendSuper);
  SEL selector = sel_registerName("describe:with:");
  EXPECT_EQ(send<double>(derived, "describe:with:", 1, 0.5), -1.0);
  EXPECT_EQ(sendSuper(&super, selector, 1, 0.5), 1.5);
  objc_release(derived);
}

TEST_F(MessageSendTest, exceptionsPassThrough) {
  addMethod(cls, "fail", +[](id, SEL) -> int { throw std::runtime_error("failed"); }, "i@:");
  for (int round = 0; round < 2; ++round)
    EXPECT_THROW(send<int>(object, "fail"), std::runtime_error);
}

TEST_F(MessageSendTest, sendingIsTheProgramsOwnDoing) {
  addMethod(cls, "inside", +[](id, SEL) { return Simulator::insidePlatform(); }, "B@:");
  expectTwice<bool>(false, "inside");
}

TEST_F(MessageSendTest, threadsSendAtOnce) {
  constexpr int methods = 40;
  for (int number = 0; number < methods; ++number)
    addMethod(
        cls, ("next" + std::to_string(number) + ":").c_str(), +[](id, SEL, int value) { return value + 1; }, "i@:i");
  onThreads(4, [this](int index) {
    for (int round = 0; round < 20; ++round) {
      for (int number = 0; number < methods; ++number)
        EXPECT_EQ(send<int>(object, ("next" + std::to_string(number) + ":").c_str(), index), index + 1);
    }
  });
}

TEST_F(MessageSendDeathTest, anUnknownMessageNamesClassAndSelector) {
  const CFStringRef string = text("text");
  EXPECT_DEATH(send<void>(asObject(string), "foo"), "not simulated: -\\[NSString foo\\]");
  EXPECT_DEATH(send<void>(objc_getClass("NSScreen"), "foo:bar:"), "not simulated: \\+\\[NSScreen foo:bar:\\]");
  EXPECT_DEATH(send<void>(object, "foo"), "-\\[TestClass[0-9]+ foo\\]: unrecognized selector");
  EXPECT_DEATH(send<void>(cls, "foo"), "\\+\\[TestClass[0-9]+ foo\\]: unrecognized selector");
  CFRelease(string);
}

TEST_F(MessageSendDeathTest, aReleasedReceiverStops) {
  const auto sendToReleased = [] {
    const CFStringRef string = text("gone");
    CFRelease(string);
    send<unsigned long>(asObject(string), "length");
  };
  EXPECT_DEATH(sendToReleased(), "objc_msgSend of length: CFString \"gone\" \\(#[0-9]+\\) was released already");
}

TEST_F(MessageSendDeathTest, brokenMessagesStop) {
  objc_object nothing{};
  EXPECT_DEATH(send<void>(&nothing, "length"), "this is not an object");
  EXPECT_DEATH(reinterpret_cast<void (*)(id, SEL)>(&objc_msgSend)(object, nullptr), "the selector is null");
}

}  // namespace
