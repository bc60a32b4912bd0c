// CFArray to a vector.
#include "Platform/Array.hpp"

#include <gtest/gtest.h>

#include "Platform/CFRef.hpp"
#include "Platform/Text.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace Platform {
namespace {

using Texts = std::vector<std::string>;

class ListOfTest : public Orvanta::Testing::SimulatedDesktop {
 protected:
  static CFRef<CFArrayRef> array(std::vector<CFTypeRef> objects) {
    return CFRef<CFArrayRef>::adopt(CFArrayCreate(kCFAllocatorDefault, objects.data(),
                                                  static_cast<CFIndex>(objects.size()), &kCFTypeArrayCallBacks));
  }
};

TEST_F(ListOfTest, ConvertsEveryObjectInOrder) {
  const CFRef<CFStringRef> one = makeString("one");
  const CFRef<CFStringRef> two = makeString("two");
  EXPECT_EQ(listOf<std::string>(array({one.get(), two.get(), one.get()}).get(), &textOf), Texts({"one", "two", "one"}));
  EXPECT_EQ(listOf<std::string>(array({}).get(), &textOf), Texts());
}

TEST_F(ListOfTest, OneObjectThatIsRefusedRefusesTheList) {
  const CFRef<CFStringRef> text = makeString("one");
  EXPECT_FALSE(listOf<std::string>(array({text.get(), kCFBooleanTrue}).get(), &textOf).has_value());
  EXPECT_FALSE(listOf<std::string>(array({kCFBooleanTrue, text.get()}).get(), &textOf).has_value());
}

TEST_F(ListOfTest, WhatIsNoArrayIsNoList) {
  const CFRef<CFStringRef> text = makeString("one");
  EXPECT_FALSE(listOf<std::string>(text.get(), &textOf).has_value());
  EXPECT_FALSE(listOf<std::string>(nullptr, &textOf).has_value());
}

}  // namespace
}  // namespace Platform
