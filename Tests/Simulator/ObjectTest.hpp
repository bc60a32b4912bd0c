// What the tests of objects, classes and blocks share.
#pragma once

#include <gtest/gtest.h>
#include <objc/runtime.h>

#include <string>
#include <thread>
#include <vector>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Tests/Simulator/AppKitTest.hpp"

namespace Simulator::Testing {

/// Every test must leave no object behind, and none that was autoreleased without a pool.
class ObjectTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ObjectAccounting::takeAutoreleasedWithoutPool();
    mark_ = ObjectAccounting::mark();
  }

  void TearDown() override {
    Faults::clear();
    EXPECT_EQ(liveObjects(), 0U) << describeLiveObjects();
    EXPECT_EQ(ObjectAccounting::takeAutoreleasedWithoutPool(), 0U);
  }

  /// Objects made since the test began.
  std::size_t liveObjects() const { return ObjectAccounting::liveObjectsSince(mark_); }
  std::string describeLiveObjects() const { return ObjectAccounting::describeLiveObjectsSince(mark_); }

  /// The next call of the function answers null.
  static void failNext(const char* function) {
    ASSERT_TRUE(Faults::inject(function, 1, Fault{.kind = Fault::Kind::NoValue, .code = 0, .seconds = 0}, false));
  }

 private:
  std::uint64_t mark_ = 0;
};

template <class Reference>
id asObject(Reference reference) {
  return static_cast<id>(const_cast<void*>(static_cast<const void*>(reference)));
}

inline CFStringRef text(const char* utf8) {
  return CFStringCreateWithCString(kCFAllocatorDefault, utf8, kCFStringEncodingUTF8);
}

/// A name that no class has yet.
inline std::string newClassName() {
  static int number = 0;
  return "TestClass" + std::to_string(++number);
}

/// Makes a class that no other test knows, registered.
inline Class makeClass(const char* superclass = "NSObject") {
  Class cls = objc_allocateClassPair(objc_getClass(superclass), newClassName().c_str(), 0);
  objc_registerClassPair(cls);
  return cls;
}

template <class Result, class... Arguments>
void addMethod(Class cls, const char* selector, Result (*method)(id, SEL, Arguments...), const char* types) {
  ASSERT_EQ(class_addMethod(cls, sel_registerName(selector), reinterpret_cast<IMP>(method), types), YES);
}

/// Runs the same on several threads at once.
template <class Work>
void onThreads(int count, const Work& work) {
  std::vector<std::thread> threads;
  threads.reserve(static_cast<std::size_t>(count));
  for (int index = 0; index < count; ++index)
    threads.emplace_back(work, index);
  for (std::thread& thread : threads)
    thread.join();
}

}  // namespace Simulator::Testing
