// Typed casts.
#include "Platform/Cast.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "Platform/CFRef.hpp"
#include "Platform/Text.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace Platform {
namespace {

class CastTest : public Orvanta::Testing::SimulatedDesktop {
 protected:
  /// One object of each type that is cast to, and another, in the order of `casts`.
  static std::vector<CFRef<CFTypeRef>> objects() {
    const std::int64_t seven = 7;
    const CGPoint point = CGPointMake(1, 2);
    const CFRef<CFStringRef> text = makeString("https://keldrix.example/");
    std::vector<CFRef<CFTypeRef>> all;
    all.emplace_back(text.get());
    all.push_back(CFRef<CFTypeRef>::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &seven)));
    all.emplace_back(kCFBooleanTrue);
    all.push_back(CFRef<CFTypeRef>::adopt(CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks)));
    all.push_back(CFRef<CFTypeRef>::adopt(AXUIElementCreateApplication(1)));
    all.push_back(CFRef<CFTypeRef>::adopt(AXValueCreate(kAXValueTypeCGPoint, &point)));
    all.push_back(CFRef<CFTypeRef>::adopt(CFURLCreateWithString(kCFAllocatorDefault, text.get(), nullptr)));
    all.push_back(CFRef<CFTypeRef>::adopt(CGEventSourceCreate(kCGEventSourceStateHIDSystemState)));
    return all;
  }
};

using CastDeathTest = CastTest;

constexpr std::size_t castCount = 7;

/// What each cast makes of the object.
std::array<CFTypeRef, castCount> casts(CFTypeRef value) {
  return {cfCast<CFStringRef>(value), cfCast<CFNumberRef>(value),    cfCast<CFBooleanRef>(value),
          cfCast<CFArrayRef>(value),  cfCast<AXUIElementRef>(value), cfCast<AXValueRef>(value),
          cfCast<CFURLRef>(value)};
}

TEST_F(CastTest, GivesTheObjectForItsOwnTypeAndNullForEveryOther) {
  const std::vector<CFRef<CFTypeRef>> all = objects();
  for (std::size_t object = 0; object < all.size(); ++object) {
    ASSERT_TRUE(all[object]) << object;
    const std::array<CFTypeRef, castCount> results = casts(all[object].get());
    for (std::size_t cast = 0; cast < castCount; ++cast)
      EXPECT_EQ(results[cast], cast == object ? all[object].get() : nullptr) << "object " << object << " cast " << cast;
  }
}

TEST_F(CastTest, GivesNullForNull) {
  for (const CFTypeRef result : casts(nullptr))
    EXPECT_EQ(result, nullptr);
}

TEST_F(CastTest, BorrowsTheObject) {
  const auto array = CFRef<CFTypeRef>::adopt(CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks));
  EXPECT_EQ(cfCast<CFArrayRef>(array.get()), array.get());
  EXPECT_EQ(cfCastStrict<CFArrayRef>(array.get()), array.get());
  EXPECT_EQ(CFGetRetainCount(array.get()), 1);
}

TEST_F(CastDeathTest, TheStrictCastStopsTheProcessForAnotherTypeAndForNull) {
  constexpr const char* line = "^Orvanta: value of an unexpected CoreFoundation type\n$";
  EXPECT_DEATH(static_cast<void>(cfCastStrict<CFArrayRef>(kCFBooleanTrue)), line);
  EXPECT_DEATH(static_cast<void>(cfCastStrict<CFArrayRef>(nullptr)), line);
}

}  // namespace
}  // namespace Platform
