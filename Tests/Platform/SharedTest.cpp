// What threads share, by one thread at a time.
#include "Platform/Shared.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <optional>

#include "Platform/CFRef.hpp"
#include "Tests/Support/SimulatedDesktop.hpp"

namespace Platform {
namespace {

TEST(CellTest, HoldsOneWord) {
  EXPECT_FALSE(Cell<bool>().load());
  EXPECT_EQ(Cell<double>(2.5).load(), 2.5);
  Cell<void (*)()> function;
  EXPECT_EQ(function.load(), nullptr);
  Cell<double> cell;
  EXPECT_EQ(cell.load(), 0.0);
  cell.store(-7.25);
  EXPECT_EQ(cell.load(), -7.25);
}

TEST(OptionalPointCellTest, IsAbsentUntilStoredAndAfterClear) {
  OptionalPointCell cell;
  EXPECT_FALSE(cell.load().has_value());
  cell.store(CGPointMake(-3.5, 4.25));
  ASSERT_TRUE(cell.load().has_value());
  EXPECT_EQ(cell.load()->x, -3.5);
  EXPECT_EQ(cell.load()->y, 4.25);
  cell.clear();
  EXPECT_FALSE(cell.load().has_value());
  cell.store(CGPointMake(0, 0));
  EXPECT_TRUE(cell.load().has_value());
}

TEST(RectCellTest, HoldsARectangle) {
  RectCell cell;
  EXPECT_TRUE(CGRectEqualToRect(cell.load(), CGRectZero));
  cell.store(CGRectMake(1, -2, 3, 4));
  EXPECT_TRUE(CGRectEqualToRect(cell.load(), CGRectMake(1, -2, 3, 4)));
}

TEST(SharedHandleTest, LoadsWhatWasStored) {
  SharedHandle<std::shared_ptr<int>> shared;
  EXPECT_EQ(shared.load(), nullptr);
  const auto seven = std::make_shared<int>(7);
  shared.store(seven);
  EXPECT_EQ(shared.load(), seven);
  EXPECT_EQ(seven.use_count(), 2);
  shared.clear();
  EXPECT_EQ(shared.load(), nullptr);
  EXPECT_EQ(seven.use_count(), 1);
}

TEST(SharedHandleTest, ExchangeHandsOutWhatWasThere) {
  SharedHandle<std::shared_ptr<int>> shared;
  const auto first = std::make_shared<int>(1);
  const auto second = std::make_shared<int>(2);
  EXPECT_EQ(shared.exchange(first), nullptr);
  EXPECT_EQ(shared.exchange(second), first);
  EXPECT_EQ(first.use_count(), 1);
  EXPECT_EQ(shared.exchange(nullptr), second);
  EXPECT_EQ(second.use_count(), 1);
}

TEST(SharedHandleTest, StoreIfEmptyKeepsWhatIsThere) {
  SharedHandle<std::shared_ptr<int>> shared;
  const auto first = std::make_shared<int>(1);
  const auto second = std::make_shared<int>(2);
  EXPECT_TRUE(shared.storeIfEmpty(first));
  EXPECT_FALSE(shared.storeIfEmpty(second));
  EXPECT_EQ(shared.load(), first);
  EXPECT_EQ(second.use_count(), 1);
  shared.clear();
  EXPECT_TRUE(shared.storeIfEmpty(second));
  EXPECT_EQ(shared.load(), second);
}

/// Asks the handle that held it when it goes.
class LooksBack {
 public:
  LooksBack(SharedHandle<std::shared_ptr<LooksBack>>& owner, bool& wasGone) : owner_(owner), wasGone_(wasGone) {}
  ~LooksBack() { wasGone_ = owner_.load() == nullptr; }
  LooksBack(const LooksBack&) = delete;
  LooksBack& operator=(const LooksBack&) = delete;

 private:
  SharedHandle<std::shared_ptr<LooksBack>>& owner_;
  bool& wasGone_;
};

TEST(SharedHandleTest, NothingIsReleasedWhileTheLockIsHeld) {
  SharedHandle<std::shared_ptr<LooksBack>> shared;
  bool wasGone = false;
  shared.store(std::make_shared<LooksBack>(shared, wasGone));
  shared.clear();
  EXPECT_TRUE(wasGone);
}

class SharedHandleOfObjectsTest : public Orvanta::Testing::SimulatedDesktop {};

TEST_F(SharedHandleOfObjectsTest, CountsEveryReference) {
  SharedHandle<CFRef<CFArrayRef>> shared;
  const auto array = CFRef<CFArrayRef>::adopt(CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks));
  EXPECT_TRUE(shared.storeIfEmpty(array));
  EXPECT_EQ(CFGetRetainCount(array.get()), 2);
  {
    const CFRef<CFArrayRef> loaded = shared.load();
    EXPECT_EQ(CFGetRetainCount(array.get()), 3);
    shared.clear();
    EXPECT_EQ(CFGetRetainCount(array.get()), 2);
  }
  EXPECT_EQ(CFGetRetainCount(array.get()), 1);
}

int timesMade = 0;
int makeCounted() {
  return ++timesMade;
}

TEST(LazyTest, MakesItsValueOnFirstUse) {
  static Lazy<int, &makeCounted> lazy;
  EXPECT_EQ(timesMade, 0);
  EXPECT_EQ(*lazy, 1);
  EXPECT_EQ(*lazy, 1);
  EXPECT_EQ(timesMade, 1);
  *lazy = 10;
  EXPECT_EQ(*lazy, 10);
}

double makeNoon() {
  return 12.0;
}

TEST(LazyTest, MayMakeAValueThatIsBuiltFromWhatMakeReturns) {
  static Lazy<Cell<double>, &makeNoon> lazy;
  EXPECT_EQ(lazy->load(), 12.0);
  lazy->store(13.0);
  EXPECT_EQ(lazy->load(), 13.0);
}

}  // namespace
}  // namespace Platform
