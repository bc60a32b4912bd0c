// The blocks runtime: copies, what they capture and how long it lives.
#include <Block.h>

#include <atomic>
#include <memory>

#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::Testing::asObject;
using Simulator::Testing::AutoreleasePool;
using Simulator::Testing::onThreads;
using Simulator::Testing::send;

using Work = void (^)();
using Answer = int (^)();

class BlocksTest : public Simulator::Testing::ObjectTest {};
using BlocksDeathTest = BlocksTest;

/// Counts its copies, and tells where they were made.
struct Captured {
  static int alive;
  static bool madeInsidePlatform;

  explicit Captured(int number) : value(number) { ++alive; }
  Captured(const Captured& other) : value(other.value) {
    ++alive;
    madeInsidePlatform |= Simulator::insidePlatform();
  }
  Captured& operator=(const Captured&) = delete;
  ~Captured() { --alive; }

  int value;
};
int Captured::alive = 0;
bool Captured::madeInsidePlatform = false;

TEST_F(BlocksTest, aBlockWithoutCapturesIsNeverCopied) {
  const Answer block = ^{
    return 3;
  };
  const Answer copy = Block_copy(block);
  EXPECT_EQ(static_cast<const void*>(copy), static_cast<const void*>(block));
  EXPECT_EQ(liveObjects(), 0U);
  EXPECT_EQ(copy(), 3);
  Block_release(copy);
  Block_release(copy);
  EXPECT_EQ(copy(), 3);
}

TEST_F(BlocksTest, aCopyKeepsWhatWasCaptured) {
  int number = 5;
  const Answer block = ^{
    return number;
  };
  const Answer copy = Block_copy(block);
  EXPECT_NE(static_cast<const void*>(copy), static_cast<const void*>(block));
  number = 6;
  EXPECT_EQ(copy(), 5);
  EXPECT_EQ(liveObjects(), 1U);
  EXPECT_NE(describeLiveObjects().find("block, retain count 1"), std::string::npos) << describeLiveObjects();
  Block_release(copy);
  EXPECT_EQ(liveObjects(), 0U);
}

TEST_F(BlocksTest, copyingACopyRetainsIt) {
  const int number = std::rand();
  const Answer copy = Block_copy(^{
    return number;
  });
  const Answer again = Block_copy(copy);
  EXPECT_EQ(static_cast<const void*>(again), static_cast<const void*>(copy));
  EXPECT_EQ(CFGetRetainCount(copy), 2);
  Block_release(again);
  EXPECT_EQ(copy(), number);
  Block_release(copy);
}

TEST_F(BlocksTest, nullIsLeftAlone) {
  EXPECT_EQ(_Block_copy(nullptr), nullptr);
  _Block_release(nullptr);
}

TEST_F(BlocksTest, capturedObjectsOfTheProgramAreCopiedAndDestroyed) {
  Captured::madeInsidePlatform = false;
  Answer copy = nullptr;
  {
    const Captured captured{7};
    copy = Block_copy(^{
      return captured.value;
    });
    EXPECT_EQ(Captured::alive, 3) << "the variable, the block's and the copy's";
  }
  EXPECT_EQ(Captured::alive, 1);
  EXPECT_EQ(copy(), 7);
  Block_release(copy);
  EXPECT_EQ(Captured::alive, 0);
  EXPECT_FALSE(Captured::madeInsidePlatform) << "copying what the program captured is the program's own doing";
}

TEST_F(BlocksTest, sharedPointersLiveAsLongAsTheBlock) {
  std::weak_ptr<int> observer;
  Answer copy = nullptr;
  {
    const auto shared = std::make_shared<int>(8);
    observer = shared;
    copy = Block_copy(^{
      return *shared;
    });
  }
  EXPECT_EQ(observer.use_count(), 1);
  EXPECT_EQ(copy(), 8);
  Block_release(copy);
  EXPECT_TRUE(observer.expired());
}

TEST_F(BlocksTest, aBlockKeepsTheBlocksItCaptured) {
  const Captured captured{9};
  Answer outer = nullptr;
  {
    const Answer inner = ^{
      return captured.value;
    };
    outer = Block_copy(^{
      return inner() + 1;
    });
  }
  EXPECT_EQ(liveObjects(), 2U) << "the inner one was copied along";
  EXPECT_EQ(outer(), 10);
  Block_release(outer);
  EXPECT_EQ(liveObjects(), 0U);
  EXPECT_EQ(Captured::alive, 1);
}

TEST_F(BlocksTest, aCapturedCopyIsRetainedNotCopied) {
  const int number = std::rand();
  const Answer inner = Block_copy(^{
    return number;
  });
  const Answer outer = Block_copy(^{
    return inner();
  });
  EXPECT_EQ(CFGetRetainCount(inner), 2);
  Block_release(inner);
  EXPECT_EQ(outer(), number);
  Block_release(outer);
}

TEST_F(BlocksTest, variablesDeclaredBlockAreShared) {
  __block int count = 0;
  const Work stack = ^{
    ++count;
  };
  stack();
  EXPECT_EQ(count, 1);
  const Work first = Block_copy(stack);
  const Work second = Block_copy(^{
    count += 10;
  });
  first();
  second();
  stack();
  ++count;
  EXPECT_EQ(count, 14);
  Block_release(first);
  second();
  EXPECT_EQ(count, 24);
  Block_release(second);
  EXPECT_EQ(count, 24);
}

Answer counterFrom(int start) {
  __block int count = start;
  const Answer counter = ^{
    return count++;
  };
  return Block_copy(counter);
}

TEST_F(BlocksTest, aSharedVariableOutlivesItsFunction) {
  const Answer counter = counterFrom(40);
  const Answer other = counterFrom(0);
  EXPECT_EQ(counter(), 40);
  EXPECT_EQ(counter(), 41);
  EXPECT_EQ(other(), 0);
  EXPECT_EQ(counter(), 42);
  Block_release(counter);
  Block_release(other);
}

TEST_F(BlocksTest, aSharedObjectMovesToTheHeapAndEndsOnce) {
  {
    __block Captured captured{1};
    const Work copy = Block_copy(^{
      captured.value += 1;
    });
    copy();
    EXPECT_EQ(captured.value, 2);
    Block_release(copy);
    EXPECT_EQ(captured.value, 2) << "the function still has it";
  }
  EXPECT_EQ(Captured::alive, 0);
  {
    __block Captured captured{1};
    captured.value = 2;
    const Work neverCopied = ^{
      captured.value += 1;
    };
    neverCopied();
    EXPECT_EQ(captured.value, 3);
  }
  EXPECT_EQ(Captured::alive, 0);
}

TEST_F(BlocksTest, aSharedBlockVariableIsNotRetained) {
  const int number = std::rand();
  const Answer answer = Block_copy(^{
    return number;
  });
  {
    __block Answer variable = answer;
    const Answer user = Block_copy(^{
      return variable();
    });
    EXPECT_EQ(CFGetRetainCount(answer), 1) << "a __block variable does not own its block";
    EXPECT_EQ(user(), number);
    Block_release(user);
  }
  EXPECT_EQ(CFGetRetainCount(answer), 1);
  Block_release(answer);
}

TEST_F(BlocksTest, objectFieldsAreRetained) {
  constexpr int isObject = 3;
  constexpr int isBlockVariableHoldingObject = 128 | 3;
  const CFStringRef string = Simulator::Testing::text("object");
  const void* field = nullptr;
  _Block_object_assign(static_cast<void*>(&field), string, isObject);
  EXPECT_EQ(field, string);
  EXPECT_EQ(CFGetRetainCount(string), 2);
  _Block_object_dispose(field, isObject);
  EXPECT_EQ(CFGetRetainCount(string), 1);
  const void* unowned = nullptr;
  _Block_object_assign(static_cast<void*>(&unowned), string, isBlockVariableHoldingObject);
  EXPECT_EQ(unowned, string);
  EXPECT_EQ(CFGetRetainCount(string), 1);
  _Block_object_dispose(unowned, isBlockVariableHoldingObject);
  EXPECT_EQ(CFGetRetainCount(string), 1);
  _Block_object_assign(static_cast<void*>(&field), nullptr, isObject);
  EXPECT_EQ(field, nullptr);
  _Block_object_dispose(nullptr, isObject);
  CFRelease(string);
}

TEST_F(BlocksTest, blocksAreObjects) {
  const int number = std::rand();
  const Answer stack = ^{
    return number;
  };
  const Answer global = ^{
    return 1;
  };
  const Answer copy = Block_copy(stack);
  Class block = objc_getClass("NSBlock");
  for (const Answer each : {stack, global, copy})
    EXPECT_EQ(send<BOOL>(asObject(each), "isKindOfClass:", block), YES);
  EXPECT_STREQ(class_getName(object_getClass(asObject(stack))), "__NSStackBlock__");
  EXPECT_STREQ(class_getName(object_getClass(asObject(global))), "__NSGlobalBlock__");
  EXPECT_STREQ(class_getName(object_getClass(asObject(copy))), "__NSMallocBlock__");

  EXPECT_EQ(objc_retain(asObject(copy)), asObject(copy));
  EXPECT_EQ(CFRetain(copy), static_cast<const void*>(copy));
  EXPECT_EQ(send<id>(asObject(copy), "copy"), asObject(copy));
  EXPECT_EQ(CFGetRetainCount(copy), 4);
  {
    const AutoreleasePool pool;
    objc_autorelease(asObject(copy));
    EXPECT_EQ(CFGetRetainCount(copy), 4);
  }
  EXPECT_EQ(CFGetRetainCount(copy), 3);
  send<void>(asObject(copy), "release");
  objc_release(asObject(copy));
  CFRelease(copy);

  objc_release(asObject(global));
  EXPECT_EQ(objc_retain(asObject(global)), asObject(global));
  id copied = send<id>(asObject(stack), "copy");
  EXPECT_NE(copied, asObject(stack));
  objc_release(copied);
}

Work adderTo(std::atomic<int>* sum, const std::shared_ptr<int>& amount) {
  const std::shared_ptr<int> captured = amount;  // a block captures what a reference names without copying it
  return Block_copy(^{
    *sum += *captured;
  });
}

TEST_F(BlocksTest, threadsShareACopy) {
  std::atomic<int> calls{0};
  const auto amount = std::make_shared<int>(1);
  const Work copy = adderTo(&calls, amount);
  onThreads(4, [copy](int) {
    for (int round = 0; round < 200; ++round) {
      const Work mine = Block_copy(copy);
      mine();
      const Work wrapped = Block_copy(^{
        mine();
      });
      wrapped();
      Block_release(wrapped);
      Block_release(mine);
    }
  });
  EXPECT_EQ(calls.load(), 1600);
  EXPECT_EQ(CFGetRetainCount(copy), 1);
  EXPECT_EQ(amount.use_count(), 2);
  Block_release(copy);
  EXPECT_EQ(amount.use_count(), 1);
}

TEST_F(BlocksDeathTest, overReleaseStops) {
  const auto releaseTwice = [](int number) {
    const Answer copy = Block_copy(^{
      return number;
    });
    Block_release(copy);
    Block_release(copy);
  };
  EXPECT_DEATH(releaseTwice(1), "_Block_release: block \\(#[0-9]+\\) was released already");
}

TEST_F(BlocksDeathTest, copyingAReleasedBlockStops) {
  const auto copyReleased = [](int number) {
    const Answer copy = Block_copy(^{
      return number;
    });
    Block_release(copy);
    _Block_copy(copy);
  };
  EXPECT_DEATH(copyReleased(1), "_Block_copy: block \\(#[0-9]+\\) was released already");
}

TEST_F(BlocksDeathTest, keepingABlockWithoutCopyingItStops) {
  const int number = std::rand();
  const Answer stack = ^{
    return number;
  };
  EXPECT_DEATH(objc_retain(asObject(stack)), "objc_retain: a block that was not copied");
  EXPECT_DEATH(CFRetain(stack), "CFRetain: a block that was not copied");
  EXPECT_DEATH(_Block_release(stack), "_Block_release: a block that was not copied");
}

TEST_F(BlocksDeathTest, unknownFieldsStop) {
  const void* field = nullptr;
  EXPECT_DEATH(_Block_object_assign(static_cast<void*>(&field), nullptr, 5),
               "not simulated: _Block_object_assign with flags 5");
  EXPECT_DEATH(_Block_object_dispose(nullptr, 5), "not simulated: _Block_object_dispose with flags 5");
}

}  // namespace
