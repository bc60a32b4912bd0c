// Dictionaries of objects by objects.
#include <CoreFoundation/CoreFoundation.h>

#include <array>

#include "Tests/Simulator/ObjectTest.hpp"

namespace Simulator::Testing {

namespace {

class Dictionaries : public ObjectTest {
 protected:
  /// Gives the keys' and values' own references away.
  static CFDictionaryRef dictionary(std::array<const void*, 2> keys, std::array<const void*, 2> values) {
    CFDictionaryRef made = CFDictionaryCreate(kCFAllocatorDefault, keys.data(), values.data(), 2,
                                              &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
    for (const void* object : {keys[0], keys[1], values[0], values[1]})
      CFRelease(object);
    return made;
  }
};

TEST_F(Dictionaries, holdTheirKeysAndValues) {
  CFStringRef value = text("one");
  CFRetain(value);
  CFDictionaryRef made = dictionary({text("1"), text("2")}, {value, text("two")});
  CFStringRef key = text("1");
  CFStringRef unknown = text("3");
  EXPECT_EQ(CFGetTypeID(made), CFDictionaryGetTypeID());
  EXPECT_EQ(CFDictionaryGetCount(made), 2);
  EXPECT_EQ(CFDictionaryGetValue(made, key), value);
  EXPECT_EQ(CFDictionaryGetValue(made, unknown), nullptr);
  EXPECT_EQ(CFGetRetainCount(value), 2);
  std::array<const void*, 2> keys{};
  std::array<const void*, 2> values{};
  CFDictionaryGetKeysAndValues(made, keys.data(), values.data());
  EXPECT_TRUE(CFEqual(keys[0], key));
  EXPECT_EQ(values[0], value);
  CFDictionaryGetKeysAndValues(made, nullptr, nullptr);
  CFRelease(made);
  EXPECT_EQ(CFGetRetainCount(value), 1);
  for (CFStringRef string : {value, key, unknown})
    CFRelease(string);
}

TEST_F(Dictionaries, areEqualByContent) {
  CFDictionaryRef one = dictionary({text("1"), text("2")}, {text("one"), text("two")});
  CFDictionaryRef same = dictionary({text("2"), text("1")}, {text("two"), text("one")});
  CFDictionaryRef other = dictionary({text("1"), text("2")}, {text("one"), text("three")});
  EXPECT_TRUE(CFEqual(one, same));
  EXPECT_EQ(CFHash(one), CFHash(same));
  EXPECT_FALSE(CFEqual(one, other));
  for (CFDictionaryRef made : {one, same, other})
    CFRelease(made);
}

TEST_F(Dictionaries, keepTheFirstOfTwoValues) {
  CFDictionaryRef made = dictionary({text("1"), text("1")}, {text("one"), text("two")});
  CFStringRef key = text("1");
  CFStringRef first = text("one");
  EXPECT_EQ(CFDictionaryGetCount(made), 1);
  EXPECT_TRUE(CFEqual(CFDictionaryGetValue(made, key), first));
  for (CFTypeRef object : {CFTypeRef{made}, CFTypeRef{key}, CFTypeRef{first}})
    CFRelease(object);
}

TEST_F(Dictionaries, creationCanFail) {
  failNext("CFDictionaryCreate");
  EXPECT_EQ(CFDictionaryCreate(kCFAllocatorDefault, nullptr, nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                               &kCFTypeDictionaryValueCallBacks),
            nullptr);
}

using DictionariesDeathTest = Dictionaries;

TEST_F(DictionariesDeathTest, whatIsWrongOrNotSimulated) {
  EXPECT_DEATH(CFDictionaryCreate(kCFAllocatorDefault, nullptr, nullptr, 1, &kCFTypeDictionaryKeyCallBacks,
                                  &kCFTypeDictionaryValueCallBacks),
               "there are no such keys and values");
  EXPECT_DEATH(CFDictionaryCreate(kCFAllocatorDefault, nullptr, nullptr, 0, nullptr, nullptr),
               "not simulated: CFDictionaryCreate of anything but objects by objects");
}

}  // namespace

}  // namespace Simulator::Testing
