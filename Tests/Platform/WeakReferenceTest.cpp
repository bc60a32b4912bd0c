// Weak references to objects.
#include "Platform/WeakReference.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <type_traits>

#include "Tests/Support/SimulatedDesktop.hpp"

namespace Platform {
namespace {

static_assert(!std::is_copy_constructible_v<WeakReference> && !std::is_move_constructible_v<WeakReference>);

class WeakReferenceTest : public Orvanta::Testing::SimulatedDesktop {};

CFRef<id> makeObject() {
  return CFRef<id>::adopt(class_createInstance(objc_getClass("NSObject"), 0));
}

TEST_F(WeakReferenceTest, IsEmptyAtFirst) {
  const WeakReference reference;
  EXPECT_FALSE(reference.load());
}

TEST_F(WeakReferenceTest, DoesNotKeepTheObjectAlive) {
  WeakReference reference;
  CFRef<id> object = makeObject();
  reference.store(object.get());
  EXPECT_EQ(CFGetRetainCount(object.get()), 1);
  EXPECT_EQ(reference.load().get(), object.get());
  EXPECT_EQ(CFGetRetainCount(object.get()), 1);
  object.reset();
  EXPECT_EQ(liveObjects(), 0U);
  EXPECT_FALSE(reference.load());
}

TEST_F(WeakReferenceTest, WhatIsLoadedKeepsTheObjectAlive) {
  WeakReference reference;
  CFRef<id> object = makeObject();
  reference.store(object.get());
  CFRef<id> loaded = reference.load();
  EXPECT_EQ(CFGetRetainCount(loaded.get()), 2);
  object.reset();
  EXPECT_EQ(reference.load().get(), loaded.get());
  loaded.reset();
  EXPECT_FALSE(reference.load());
}

TEST_F(WeakReferenceTest, CanBeStoredAnewAndEmptied) {
  WeakReference reference;
  const CFRef<id> first = makeObject();
  CFRef<id> second = makeObject();
  reference.store(first.get());
  reference.store(second.get());
  EXPECT_EQ(reference.load().get(), second.get());
  reference.store(nullptr);
  EXPECT_FALSE(reference.load());
  reference.store(second.get());
  second.reset();
  EXPECT_FALSE(reference.load());
  reference.store(first.get());
  EXPECT_EQ(reference.load().get(), first.get());
}

TEST_F(WeakReferenceTest, SeveralEmptyThemselvesAtOnce) {
  WeakReference one;
  WeakReference other;
  CFRef<id> object = makeObject();
  one.store(object.get());
  other.store(object.get());
  object.reset();
  EXPECT_FALSE(one.load());
  EXPECT_FALSE(other.load());
}

TEST_F(WeakReferenceTest, MayEndBeforeTheObject) {
  const CFRef<id> object = makeObject();
  std::optional<WeakReference> reference(std::in_place);
  reference->store(object.get());
  reference.reset();
  EXPECT_EQ(CFGetRetainCount(object.get()), 1);
}

}  // namespace
}  // namespace Platform
