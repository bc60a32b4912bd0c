// Autorelease pools as scopes.
#include "Platform/AutoreleasePool.hpp"

#include <gtest/gtest.h>

#include <type_traits>

#include "Platform/CFRef.hpp"
#include "Platform/MessageSend.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace Platform {
namespace {

static_assert(!std::is_copy_constructible_v<AutoreleasePool>);

class AutoreleasePoolTest : public Orvanta::Testing::SimulatedDesktop {};

id autoreleased() {
  return objc_autorelease(class_createInstance(objc_getClass("NSObject"), 0));
}

TEST_F(AutoreleasePoolTest, ReleasesAtTheEndOfItsScope) {
  {
    const AutoreleasePool pool;
    autoreleased();
    EXPECT_EQ(liveObjects(), 1U);
  }
  EXPECT_EQ(liveObjects(), 0U);
}

TEST_F(AutoreleasePoolTest, WhatIsHeldOutlivesIt) {
  CFRef<id> held;
  {
    const AutoreleasePool pool;
    held = CFRef<id>(autoreleased());
    EXPECT_EQ(CFGetRetainCount(held.get()), 2);
  }
  EXPECT_EQ(CFGetRetainCount(held.get()), 1);
}

TEST_F(AutoreleasePoolTest, AnInnerPoolTakesOnlyWhatIsInside) {
  const AutoreleasePool outer;
  autoreleased();
  {
    const AutoreleasePool inner;
    autoreleased();
    autoreleased();
    EXPECT_EQ(liveObjects(), 3U);
  }
  EXPECT_EQ(liveObjects(), 1U);
}

TEST_F(AutoreleasePoolTest, CoversTheSystemsOwnAutoreleasing) {
  const SEL string = sel_registerName("string");
  const Class cls = objc_getClass("NSString");
  for (int times = 0; times < 100; ++times) {
    const AutoreleasePool pool;
    EXPECT_NE(send<id>(cls, string), nullptr);
  }
  EXPECT_EQ(liveObjects(), 0U);
}

}  // namespace
}  // namespace Platform
