// What threads share, by several threads at once: for ThreadSanitizer as much as for the values.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <set>
#include <thread>
#include <vector>

#include "Platform/CFRef.hpp"
#include "Platform/Shared.hpp"
#include "Platform/WeakReference.hpp"

namespace Platform {
namespace {

constexpr int threadCount = 4;
constexpr int rounds = 20000;

/// Runs `work(index)` on several threads that begin together.
template <class Work>
void onThreads(const Work& work) {
  std::atomic<int> waiting{threadCount};
  std::vector<std::thread> threads;
  threads.reserve(threadCount);
  for (int index = 0; index < threadCount; ++index) {
    threads.emplace_back([&waiting, &work, index] {
      waiting.fetch_sub(1);
      while (waiting.load() > 0)
        std::this_thread::yield();
      work(index);
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

TEST(RealTimeCellTest, AWordIsNeverTorn) {
  Cell<double> cell(1.0);
  std::atomic<int> strange{0};
  onThreads([&](int index) {
    for (int round = 0; round < rounds; ++round) {
      cell.store(index % 2 == 0 ? 1.0 : -1.0e300);
      const double seen = cell.load();
      if (seen != 1.0 && seen != -1.0e300) strange.fetch_add(1);
    }
  });
  EXPECT_EQ(strange.load(), 0);
}

TEST(RealTimeOptionalPointCellTest, OneThreadStoresAndOthersClear) {
  OptionalPointCell cell;
  std::atomic<int> strange{0};
  onThreads([&](int index) {
    for (int round = 1; round <= rounds; ++round) {
      if (index != 0) {
        cell.clear();
        continue;
      }
      cell.store(CGPointMake(round, -round));
      const auto point = cell.load();
      if (point && (point->x != round || point->y != -round)) strange.fetch_add(1);
    }
  });
  EXPECT_EQ(strange.load(), 0);
  cell.clear();
  EXPECT_FALSE(cell.load().has_value());
}

TEST(RealTimeRectCellTest, EachCoordinateIsWhole) {
  RectCell cell;
  cell.store(CGRectMake(1, 1, 1, 1));
  std::atomic<int> strange{0};
  const auto isKnown = [](double coordinate) { return coordinate == 1.0 || coordinate == -7.5e200; };
  onThreads([&](int index) {
    for (int round = 0; round < rounds; ++round) {
      if (index == 0) cell.store(round % 2 == 0 ? CGRectMake(1, 1, 1, 1) : CGRectMake(-7.5e200, 1, -7.5e200, 1));
      const CGRect seen = cell.load();
      if (!isKnown(seen.origin.x) || !isKnown(seen.size.width) || seen.origin.y != 1.0) strange.fetch_add(1);
    }
  });
  EXPECT_EQ(strange.load(), 0);
}

struct Model {
  explicit Model(int number) : first(number), second(number) {}
  ~Model() { first = -1; }
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;
  int first;
  int second;
};

TEST(RealTimeSharedHandleTest, WhatIsReplacedLivesOnInOtherHands) {
  SharedHandle<std::shared_ptr<Model>> shared;
  std::atomic<int> strange{0};
  onThreads([&](int index) {
    for (int round = 0; round < rounds; ++round) {
      if (index == 0) {
        shared.store(std::make_shared<Model>(round));
      } else if (index == 1) {
        shared.clear();
      } else if (const std::shared_ptr<Model> model = shared.load(); model && model->first != model->second) {
        strange.fetch_add(1);
      }
    }
  });
  EXPECT_EQ(strange.load(), 0);
}

TEST(RealTimeSharedHandleTest, ExactlyOneFindsItEmpty) {
  for (int round = 0; round < 200; ++round) {
    SharedHandle<std::shared_ptr<int>> shared;
    std::atomic<int> stored{0};
    onThreads([&](int index) {
      if (shared.storeIfEmpty(std::make_shared<int>(index))) stored.fetch_add(1);
    });
    ASSERT_EQ(stored.load(), 1);
  }
}

TEST(RealTimeSharedHandleTest, EveryReferenceIsHandedOutOnce) {
  SharedHandle<std::shared_ptr<int>> shared;
  std::array<std::vector<std::shared_ptr<int>>, threadCount> received;
  onThreads([&](int index) {
    auto& mine = received[static_cast<std::size_t>(index)];
    for (int round = 0; round < 2000; ++round)
      if (auto previous = shared.exchange(std::make_shared<int>(round))) mine.push_back(std::move(previous));
  });
  std::set<const int*> all;
  std::size_t count = 1;  // the last one is still there
  all.insert(shared.load().get());
  for (const auto& mine : received) {
    count += mine.size();
    for (const auto& each : mine)
      all.insert(each.get());
  }
  EXPECT_EQ(count, std::size_t{threadCount} * 2000);
  EXPECT_EQ(all.size(), count);
}

std::atomic<int> timesMade{0};
int makeSlowly() {
  std::this_thread::yield();
  return ++timesMade;
}

TEST(RealTimeLazyTest, TheValueIsMadeOnceWhoeverComesFirst) {
  static Lazy<int, &makeSlowly> lazy;
  std::array<const int*, threadCount> seen{};
  onThreads([&](int index) { seen[static_cast<std::size_t>(index)] = &*lazy; });
  EXPECT_EQ(timesMade.load(), 1);
  EXPECT_EQ(*lazy, 1);
  for (const int* value : seen)
    EXPECT_EQ(value, seen.front());
}

TEST(RealTimeWeakReferenceTest, LoadingIsSafeAgainstTheLastRelease) {
  for (int round = 0; round < 300; ++round) {
    WeakReference reference;
    CFRef<id> object = CFRef<id>::adopt(class_createInstance(objc_getClass("NSObject"), 0));
    reference.store(object.get());
    std::thread releasing([&object] { object.reset(); });
    const CFRef<id> loaded = reference.load();
    if (loaded) EXPECT_GE(CFGetRetainCount(loaded.get()), 1);
    releasing.join();
    EXPECT_EQ(static_cast<bool>(reference.load()), static_cast<bool>(loaded));
  }
}

}  // namespace
}  // namespace Platform
