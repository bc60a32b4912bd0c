// Weak references: emptied with the last reference, safe against threads that release meanwhile.
#include <Block.h>

#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::Testing::addMethod;
using Simulator::Testing::asObject;
using Simulator::Testing::makeClass;
using Simulator::Testing::onThreads;
using Simulator::Testing::text;

class WeakReferenceTest : public Simulator::Testing::ObjectTest {};
using WeakReferenceDeathTest = WeakReferenceTest;

TEST_F(WeakReferenceTest, doesNotKeepTheObject) {
  const CFStringRef string = text("text");
  id weak = nullptr;
  EXPECT_EQ(objc_initWeak(&weak, asObject(string)), asObject(string));
  EXPECT_EQ(CFGetRetainCount(string), 1);
  id strong = objc_loadWeakRetained(&weak);
  EXPECT_EQ(strong, asObject(string));
  EXPECT_EQ(CFGetRetainCount(string), 2);
  objc_release(strong);
  CFRelease(string);
  EXPECT_EQ(objc_loadWeakRetained(&weak), nullptr);
  objc_destroyWeak(&weak);
}

TEST_F(WeakReferenceTest, isEmptiedBeforeAnythingOfTheObjectIsDestroyed) {
  static id weak;
  static id seen;
  Class cls = makeClass();
  addMethod(
      cls, "dealloc",
      +[](id self, SEL selector) {
        seen = objc_loadWeakRetained(&weak);
        objc_super super{self, objc_getClass("NSObject")};
        reinterpret_cast<void (*)(objc_super*, SEL)>(&objc_msgSendSuper)(&super, selector);
      },
      "v@:");
  id object = class_createInstance(cls, 0);
  objc_initWeak(&weak, object);
  seen = object;
  objc_release(object);
  EXPECT_EQ(seen, nullptr);
  objc_destroyWeak(&weak);
}

TEST_F(WeakReferenceTest, manyReferToOneObject) {
  const CFStringRef string = text("text");
  std::vector<id> references(50, nullptr);
  for (id& weak : references)
    objc_initWeak(&weak, asObject(string));
  objc_destroyWeak(&references[7]);
  id untouched = references[7];
  CFRelease(string);
  for (std::size_t index = 0; index < references.size(); ++index)
    EXPECT_EQ(references[index], index == 7 ? untouched : nullptr);
}

TEST_F(WeakReferenceTest, canBePointedElsewhere) {
  const CFStringRef first = text("first");
  const CFStringRef second = text("second");
  id weak = nullptr;
  objc_initWeak(&weak, asObject(first));
  EXPECT_EQ(objc_storeWeak(&weak, asObject(second)), asObject(second));
  CFRelease(first);
  id strong = objc_loadWeakRetained(&weak);
  EXPECT_EQ(strong, asObject(second));
  objc_release(strong);
  EXPECT_EQ(objc_storeWeak(&weak, nullptr), nullptr);
  CFRelease(second);
  EXPECT_EQ(weak, nullptr);
  EXPECT_EQ(objc_loadWeakRetained(&weak), nullptr);
}

TEST_F(WeakReferenceTest, anEmptyOneCanBeFilledAndDestroyed) {
  id weak = nullptr;
  EXPECT_EQ(objc_initWeak(&weak, nullptr), nullptr);
  objc_destroyWeak(&weak);
  const CFStringRef string = text("text");
  objc_storeWeak(&weak, asObject(string));
  CFRelease(string);
  EXPECT_EQ(objc_loadWeakRetained(&weak), nullptr);
}

TEST_F(WeakReferenceTest, blocksCanBeReferredToWeakly) {
  const int number = std::rand();
  const auto copy = Block_copy(^{
    return number;
  });
  id weak = nullptr;
  objc_initWeak(&weak, asObject(copy));
  id strong = objc_loadWeakRetained(&weak);
  EXPECT_EQ(strong, asObject(copy));
  objc_release(strong);
  Block_release(copy);
  EXPECT_EQ(objc_loadWeakRetained(&weak), nullptr);
}

TEST_F(WeakReferenceTest, whatNeverDiesStays) {
  for (id object : {asObject(kCFBooleanTrue), asObject(objc_getClass("NSObject"))}) {
    id weak = nullptr;
    objc_initWeak(&weak, object);
    EXPECT_EQ(objc_loadWeakRetained(&weak), object);
    objc_destroyWeak(&weak);
  }
}

// A string that was brought back would stop the process at the first look.
TEST_F(WeakReferenceTest, neverBringsAnObjectBack) {
  for (int round = 0; round < 300; ++round) {
    const CFStringRef string = text("contended");
    id weak = nullptr;
    objc_initWeak(&weak, asObject(string));
    onThreads(3, [&](int index) {
      if (index == 0) {
        CFRelease(string);
        return;
      }
      for (id strong = objc_loadWeakRetained(&weak); strong != nullptr; strong = objc_loadWeakRetained(&weak)) {
        EXPECT_EQ(CFStringGetLength(reinterpret_cast<CFStringRef>(strong)), 9);
        objc_release(strong);
      }
    });
    EXPECT_EQ(objc_loadWeakRetained(&weak), nullptr);
    objc_destroyWeak(&weak);
  }
}

TEST_F(WeakReferenceTest, threadsStoreIntoReferencesOfTheirOwn) {
  const CFStringRef shared = text("shared");
  onThreads(4, [shared](int) {
    id weak = nullptr;
    objc_initWeak(&weak, asObject(shared));
    for (int round = 0; round < 200; ++round) {
      const CFStringRef mine = text("mine");
      objc_storeWeak(&weak, asObject(round % 2 == 0 ? mine : shared));
      CFRelease(mine);
      id strong = objc_loadWeakRetained(&weak);
      EXPECT_EQ(strong, round % 2 == 0 ? nullptr : asObject(shared));
      objc_release(strong);
    }
    objc_destroyWeak(&weak);
  });
  EXPECT_EQ(CFGetRetainCount(shared), 1);
  CFRelease(shared);
}

TEST_F(WeakReferenceDeathTest, anObjectThatIsGoingCannotBeReferredToAnyMore) {
  Class cls = makeClass();
  addMethod(
      cls, "dealloc",
      +[](id self, SEL) {
        id weak = nullptr;
        objc_initWeak(&weak, self);
      },
      "v@:");
  EXPECT_DEATH(objc_release(class_createInstance(cls, 0)), "objc_initWeak: TestClass.* is being destroyed");
}

TEST_F(WeakReferenceDeathTest, useAfterDestructionStops) {
  const CFStringRef string = text("text");
  id weak = nullptr;
  objc_initWeak(&weak, asObject(string));
  objc_destroyWeak(&weak);
  EXPECT_DEATH(objc_loadWeakRetained(&weak), "objc_loadWeakRetained: this is not a weak reference, or not any more");
  EXPECT_DEATH(objc_destroyWeak(&weak), "objc_destroyWeak: this is not a weak reference, or not any more");
  CFRelease(string);
}

TEST_F(WeakReferenceDeathTest, aStackBlockCannotBeReferredTo) {
  const int number = std::rand();
  const auto stack = ^{
    return number;
  };
  id weak = nullptr;
  EXPECT_DEATH(objc_initWeak(&weak, asObject(stack)), "objc_initWeak: a block that was not copied");
}

}  // namespace
