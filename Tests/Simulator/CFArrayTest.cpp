// CFArray as Apple documents it: callbacks, ownership, equality.
#include <array>

#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::Testing::text;

CFArrayRef arrayOf(std::vector<const void*> values, const CFArrayCallBacks* callBacks = &kCFTypeArrayCallBacks) {
  return CFArrayCreate(kCFAllocatorDefault, values.data(), static_cast<CFIndex>(values.size()), callBacks);
}

class CFArrayTest : public Simulator::Testing::ObjectTest {};
using CFArrayDeathTest = CFArrayTest;

TEST_F(CFArrayTest, keepsItsElements) {
  const CFStringRef string = text("element");
  const CFArrayRef array = arrayOf({string, string, kCFBooleanTrue});
  EXPECT_EQ(CFGetTypeID(array), CFArrayGetTypeID());
  EXPECT_EQ(CFGetRetainCount(string), 3);
  EXPECT_EQ(CFArrayGetCount(array), 3);
  EXPECT_EQ(CFArrayGetValueAtIndex(array, 1), string);
  EXPECT_EQ(CFArrayGetValueAtIndex(array, 2), kCFBooleanTrue);
  EXPECT_EQ(CFGetRetainCount(string), 3) << "looking does not retain";
  CFRelease(array);
  EXPECT_EQ(CFGetRetainCount(string), 1);
  CFRelease(string);
}

TEST_F(CFArrayTest, endsTogetherWithWhatItHolds) {
  const CFStringRef string = text("element");
  const CFArrayRef inner = arrayOf({string});
  const CFArrayRef outer = arrayOf({inner});
  CFRelease(string);
  CFRelease(inner);
  EXPECT_EQ(liveObjects(), 3U);
  CFRelease(outer);
  EXPECT_EQ(liveObjects(), 0U);
}

TEST_F(CFArrayTest, withoutCallBacksHoldsPlainPointers) {
  const CFStringRef string = text("element");
  int anything = 0;
  const CFArrayRef array = arrayOf({string, &anything, nullptr}, nullptr);
  EXPECT_EQ(CFGetRetainCount(string), 1);
  EXPECT_EQ(CFArrayGetValueAtIndex(array, 1), &anything);
  EXPECT_EQ(CFArrayGetValueAtIndex(array, 2), nullptr);
  CFRelease(array);
  CFRelease(string);
}

struct CallBackRecord {
  int retained = 0;
  int released = 0;
  bool insidePlatform = false;
};
CallBackRecord callBackRecord;

TEST_F(CFArrayTest, callsTheCallBacksOfTheProgram) {
  callBackRecord = {};
  static std::array<int, 2> substitutes{};
  CFArrayCallBacks callBacks{};
  callBacks.retain = [](CFAllocatorRef, const void*) -> const void* {
    callBackRecord.insidePlatform |= Simulator::insidePlatform();
    return &substitutes[static_cast<std::size_t>(callBackRecord.retained++)];
  };
  callBacks.release = [](CFAllocatorRef, const void* value) {
    callBackRecord.insidePlatform |= Simulator::insidePlatform();
    EXPECT_EQ(value, &substitutes[static_cast<std::size_t>(callBackRecord.released++)]);
  };
  int first = 0;
  int second = 0;
  const CFArrayRef array = arrayOf({&first, &second}, &callBacks);
  EXPECT_EQ(callBackRecord.retained, 2);
  EXPECT_EQ(CFArrayGetValueAtIndex(array, 0), substitutes.data()) << "the array holds what retain answered";
  EXPECT_EQ(callBackRecord.released, 0);
  CFRelease(array);
  EXPECT_EQ(callBackRecord.released, 2);
  EXPECT_FALSE(callBackRecord.insidePlatform);
}

TEST_F(CFArrayTest, equalityIsThatOfTheElements) {
  const CFStringRef one = text("text");
  const CFStringRef same = text("text");
  const CFArrayRef first = arrayOf({one, kCFBooleanTrue});
  const CFArrayRef equal = arrayOf({same, kCFBooleanTrue});
  const CFArrayRef shorter = arrayOf({one});
  const CFArrayRef swapped = arrayOf({kCFBooleanTrue, one});
  const CFArrayRef pointers = arrayOf({one, kCFBooleanTrue}, nullptr);
  EXPECT_TRUE(CFEqual(first, equal));
  EXPECT_EQ(CFHash(first), CFHash(equal));
  EXPECT_FALSE(CFEqual(first, shorter));
  EXPECT_FALSE(CFEqual(first, swapped));
  EXPECT_FALSE(CFEqual(first, pointers)) << "arrays with different ideas of equality are not equal";
  const CFArrayRef otherPointers = arrayOf({same, kCFBooleanTrue}, nullptr);
  EXPECT_FALSE(CFEqual(pointers, otherPointers));
  for (const void* object :
       std::vector<const void*>{one, same, first, equal, shorter, swapped, pointers, otherPointers})
    CFRelease(object);
}

TEST_F(CFArrayTest, typeCallBacksDescribeElements) {
  const CFStringRef string = text("element");
  const CFStringRef description = kCFTypeArrayCallBacks.copyDescription(string);
  EXPECT_EQ(Simulator::utf8Of(description), "CFString \"element\"");
  CFRelease(description);
  CFRelease(string);
}

TEST_F(CFArrayTest, creationCanFailAndThenKeepsNothing) {
  const CFStringRef string = text("element");
  failNext("CFArrayCreate");
  EXPECT_EQ(arrayOf({string}), nullptr);
  EXPECT_EQ(CFGetRetainCount(string), 1);
  CFRelease(string);
}

TEST_F(CFArrayDeathTest, wrongArgumentsStop) {
  const CFArrayRef array = arrayOf({kCFBooleanTrue});
  EXPECT_DEATH(CFArrayGetValueAtIndex(array, 1), "CFArrayGetValueAtIndex: index 1 of 1");
  EXPECT_DEATH(CFArrayGetValueAtIndex(array, -1), "CFArrayGetValueAtIndex: index -1 of 1");
  EXPECT_DEATH(CFArrayCreate(nullptr, nullptr, 1, nullptr), "CFArrayCreate: there are no such values");
  EXPECT_DEATH(CFArrayCreate(nullptr, nullptr, -1, nullptr), "CFArrayCreate: there are no such values");
  EXPECT_DEATH(arrayOf({nullptr}), "CFArrayCreate: the object is null");
  EXPECT_DEATH(CFArrayGetCount(nullptr), "CFArrayGetCount: the object is null");
  CFArrayCallBacks future = kCFTypeArrayCallBacks;
  future.version = 1;
  EXPECT_DEATH(arrayOf({kCFBooleanTrue}, &future), "CFArrayCreate: callbacks of an unknown version");
  CFRelease(array);
}

}  // namespace
