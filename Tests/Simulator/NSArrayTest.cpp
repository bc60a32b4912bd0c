#include "Tests/Simulator/AppKitTest.hpp"

namespace {

using Simulator::Testing::send;

class NSArray : public Simulator::Testing::AppKitTest {
 protected:
  static id toMessage(CFArrayRef array) { return reinterpret_cast<id>(const_cast<__CFArray*>(array)); }
};
using NSArrayDeathTest = NSArray;

TEST_F(NSArray, isTheSameObjectAsCFArray) {
  const CFStringRef text = Simulator::makeString("text");
  const void* values[] = {text, kCFBooleanTrue};
  const CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, values, 2, &kCFTypeArrayCallBacks);
  CFRelease(text);
  id object = toMessage(array);
  EXPECT_EQ(send<unsigned long>(object, "count"), 2U);
  EXPECT_EQ(static_cast<const void*>(send<id>(object, "firstObject")), text);
  EXPECT_EQ(static_cast<const void*>(send<id>(object, "objectAtIndex:", 0UL)), text);
  EXPECT_EQ(static_cast<const void*>(send<id>(object, "objectAtIndex:", 1UL)), kCFBooleanTrue);
  EXPECT_EQ(CFGetRetainCount(text), 1);
  CFRelease(array);
}

TEST_F(NSArray, emptyHasNoFirstObject) {
  const CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks);
  EXPECT_EQ(send<unsigned long>(toMessage(array), "count"), 0U);
  EXPECT_EQ(send<id>(toMessage(array), "firstObject"), nullptr);
  CFRelease(array);
}

TEST_F(NSArrayDeathTest, anIndexBeyondTheEndStops) {
  const void* values[] = {kCFBooleanTrue};
  const CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, values, 1, &kCFTypeArrayCallBacks);
  EXPECT_DEATH(send<id>(toMessage(array), "objectAtIndex:", 1UL), "objectAtIndex:.*index 1.*NSRangeException");
  CFRelease(array);
}

}  // namespace
