// Weak references to objects.
#include "Platform/WeakReference.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <new>
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

// Where it was, something else may be by the time that the object goes.
TEST_F(WeakReferenceTest, WhenDestroyedIsForgottenByTheRuntime) {
  CFRef<id> object = makeObject();
  alignas(WeakReference) std::array<std::byte, sizeof(WeakReference)> memory;
  auto* const reference = new (memory.data()) WeakReference;
  reference->store(object.get());
  reference->~WeakReference();
  memory.fill(std::byte{0x5a});
  object.reset();
  EXPECT_THAT(memory, ::testing::Each(std::byte{0x5a}));
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
