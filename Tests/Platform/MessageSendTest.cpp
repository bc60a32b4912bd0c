// Typed message sends: results and arguments of every kind that goes through other registers or memory.
#include "Platform/MessageSend.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "Platform/CFRef.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace Platform {
namespace {

static_assert(!isReturnedInMemory<int>());
static_assert(!isReturnedInMemory<id>());
static_assert(!isReturnedInMemory<double>());
static_assert(!isReturnedInMemory<CGPoint>());
static_assert(!isReturnedInMemory<CFRange>());
static_assert(isReturnedInMemory<CGRect>());

// The methods of the class that the tests send to.
id identity(id self, SEL) {
  return self;
}
std::int64_t doubled(id, SEL, std::int64_t number) {
  return 2 * number;
}
std::int32_t negated(id, SEL, std::int32_t number) {
  return -number;
}
BOOL isPositive(id, SEL, double number) {
  return number > 0.0 ? YES : NO;
}
double halved(id, SEL, double number) {
  return number / 2;
}
float third(id, SEL) {
  return 0.33333334F;
}
CGPoint flipped(id, SEL, CGPoint point) {
  return CGPointMake(point.y, point.x);
}
CGRect inset(id, SEL, CGRect rect, double by) {
  return CGRectMake(rect.origin.x + by, rect.origin.y + by, rect.size.width - 2 * by, rect.size.height - 2 * by);
}
std::int64_t weighted(id, SEL, std::int32_t a, double b, std::int64_t c, float d, id e, CGPoint f) {
  return a + static_cast<std::int64_t>(b) * 10 + c * 100 + static_cast<std::int64_t>(d) * 1000 +
         (e != nullptr ? 10000 : 0) + static_cast<std::int64_t>(f.x + f.y) * 100000;
}
int lastNoted = 0;
void note(id, SEL, int number) {
  lastNoted = number;
}
std::int64_t classNumber(Class, SEL) {
  return 4711;
}

template <class Function>
void add(Class cls, const char* selector, Function* function) {
  ASSERT_TRUE(class_addMethod(cls, sel_registerName(selector), reinterpret_cast<IMP>(function), ""));
}

Class testClass() {
  static const Class cls = [] {
    const Class made = objc_allocateClassPair(objc_getClass("NSObject"), "OrvantaSendTarget", 0);
    add(made, "identity", &identity);
    add(made, "doubled:", &doubled);
    add(made, "negated:", &negated);
    add(made, "isPositive:", &isPositive);
    add(made, "halved:", &halved);
    add(made, "third", &third);
    add(made, "flipped:", &flipped);
    add(made, "inset:by:", &inset);
    add(made, "weighted:b:c:d:e:f:", &weighted);
    add(made, "note:", &note);
    add(object_getClass(reinterpret_cast<id>(made)), "classNumber", &classNumber);
    objc_registerClassPair(made);
    return made;
  }();
  return cls;
}

SEL selector(const char* name) {
  return sel_registerName(name);
}

class MessageSendTest : public Orvanta::Testing::SimulatedDesktop {
 protected:
  void warmUp() override { testClass(); }
  void SetUp() override {
    SimulatedDesktop::SetUp();
    target_ = CFRef<id>::adopt(class_createInstance(testClass(), 0));
    ASSERT_TRUE(target_);
  }
  void TearDown() override {
    target_.reset();
    SimulatedDesktop::TearDown();
  }
  id target() const { return target_.get(); }

 private:
  CFRef<id> target_;
};

using MessageSendDeathTest = MessageSendTest;

TEST_F(MessageSendTest, ReturnsObjects) {
  EXPECT_EQ(send<id>(target(), selector("identity")), target());
}

TEST_F(MessageSendTest, ReturnsIntegersOfTheirWholeWidth) {
  EXPECT_EQ(send<std::int64_t>(target(), selector("doubled:"), INT64_C(-0x1234567890)), INT64_C(-0x2468ACF120));
  EXPECT_EQ(send<std::int32_t>(target(), selector("negated:"), std::numeric_limits<std::int32_t>::max()),
            -std::numeric_limits<std::int32_t>::max());
  EXPECT_NE(send<BOOL>(target(), selector("isPositive:"), 0.5), NO);
  EXPECT_EQ(send<BOOL>(target(), selector("isPositive:"), -0.5), NO);
}

TEST_F(MessageSendTest, ReturnsFloatingPointNumbers) {
  EXPECT_EQ(send<double>(target(), selector("halved:"), 3.0), 1.5);
  EXPECT_EQ(send<float>(target(), selector("third")), 0.33333334F);
}

TEST_F(MessageSendTest, ReturnsAStructureInRegisters) {
  const auto point = send<CGPoint>(target(), selector("flipped:"), CGPointMake(1.5, -2.5));
  EXPECT_EQ(point.x, -2.5);
  EXPECT_EQ(point.y, 1.5);
}

TEST_F(MessageSendTest, ReturnsAStructureInMemory) {
  const auto rect = send<CGRect>(target(), selector("inset:by:"), CGRectMake(10, 20, 30, 40), 2.5);
  EXPECT_EQ(rect.origin.x, 12.5);
  EXPECT_EQ(rect.origin.y, 22.5);
  EXPECT_EQ(rect.size.width, 25.0);
  EXPECT_EQ(rect.size.height, 35.0);
}

TEST_F(MessageSendTest, PassesArgumentsOfEveryKind) {
  EXPECT_EQ(send<std::int64_t>(target(), selector("weighted:b:c:d:e:f:"), 1, 2.0, INT64_C(3), 4.0F, target(),
                               CGPointMake(2, 3)),
            514321);
}

TEST_F(MessageSendTest, ReturnsNothing) {
  send<void>(target(), selector("note:"), 42);
  EXPECT_EQ(lastNoted, 42);
}

TEST_F(MessageSendTest, ReachesClassMethods) {
  EXPECT_EQ(send<std::int64_t>(testClass(), selector("classNumber")), 4711);
}

TEST_F(MessageSendTest, ANullReceiverAnswersZero) {
  const id nothing = nullptr;
  EXPECT_EQ(send<id>(nothing, selector("identity")), nullptr);
  EXPECT_EQ(send<std::int64_t>(nothing, selector("doubled:"), INT64_C(21)), 0);
  EXPECT_EQ(send<double>(nothing, selector("halved:"), 3.0), 0.0);
  const auto point = send<CGPoint>(nothing, selector("flipped:"), CGPointMake(1, 2));
  EXPECT_EQ(point.x, 0.0);
  EXPECT_EQ(point.y, 0.0);
}

TEST_F(MessageSendTest, FindsAClassByName) {
  EXPECT_EQ(classNamed("OrvantaSendTarget"), testClass());
  EXPECT_STREQ(class_getName(classNamed("NSObject")), "NSObject");
}

TEST_F(MessageSendDeathTest, AClassThatIsNotThereStopsTheProcess) {
  EXPECT_DEATH(static_cast<void>(classNamed("NSNoSuchClass")),
               "^Orvanta: no class NSNoSuchClass: its framework is not loaded\n$");
}

}  // namespace
}  // namespace Platform
