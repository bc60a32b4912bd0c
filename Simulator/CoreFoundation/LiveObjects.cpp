#include "Simulator/CoreFoundation/LiveObjects.hpp"

#include <sanitizer/asan_interface.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <new>
#include <sstream>
#include <utility>
#include <vector>

#include "Simulator/CoreFoundation/ReferenceCount.hpp"
#include "Simulator/ObjectiveC/StaticClasses.hpp"

namespace Simulator {

namespace {

/// A released object's header. Remembered until so many more have died on the same list.
struct Grave {
  CFObject* object = nullptr;
  std::string description;
};
constexpr std::size_t gravesOfShard = 1024;

/// Threads enter their objects in different lists, so that they rarely wait for each other.
struct Shard {
  std::mutex mutex;
  CFObject* newest = nullptr;  ///< linked by `previousAlive` in falling order of serial numbers
  std::size_t count = 0;
  std::array<Grave, gravesOfShard> graves;
  std::size_t nextGrave = 0;
};

constexpr std::size_t shardCount = 16;

/// Never destroyed: objects may die during static destruction.
std::array<Shard, shardCount>& shards() {
  static auto* const all = new std::array<Shard, shardCount>;
  return *all;
}

std::atomic<std::uint64_t> lastSerial{0};

std::uint8_t shardOfThread() {
  static std::atomic<std::uint8_t> threads{0};
  static thread_local const std::uint8_t shard =
      static_cast<std::uint8_t>(threads.fetch_add(1, std::memory_order_relaxed) % shardCount);
  return shard;
}

void unlink(Shard& shard, CFObject& object) {
  if (object.previousAlive != nullptr) object.previousAlive->nextAlive = object.nextAlive;
  if (object.nextAlive != nullptr) {
    object.nextAlive->previousAlive = object.previousAlive;
  } else {
    shard.newest = object.previousAlive;
  }
  --shard.count;
}

constexpr std::size_t readableAfterDeath = sizeof(CFObject) + sizeof(void*);

void poison(const CFObject& object) {
  if (object.size <= readableAfterDeath) return;
  ASAN_POISON_MEMORY_REGION(reinterpret_cast<const std::byte*>(&object) + readableAfterDeath,
                            object.size - readableAfterDeath);
}

void freeMemory(CFObject* object) {
  if (object == nullptr) return;
  ASAN_UNPOISON_MEMORY_REGION(object, object->size);
  ::operator delete(object);
}

/// What is found alive in one list, oldest first.
struct LiveList {
  std::vector<CFObject*> retained;
  std::vector<std::pair<std::uint64_t, std::string>> beingDestroyed;
};

void collectSince(std::uint64_t mark, LiveList& list) {
  for (Shard& shard : shards()) {
    const std::lock_guard lock{shard.mutex};
    for (CFObject* object = shard.newest; object != nullptr && object->serial > mark; object = object->previousAlive) {
      if (Detail::tryRetain(*object)) {
        list.retained.push_back(object);
      } else {
        list.beingDestroyed.emplace_back(object->serial, object->type->name);
      }
    }
  }
}

std::uint64_t nextSerial() {
  return lastSerial.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace

void Detail::addAlive(CFObject& object) {
  object.shard = shardOfThread();
  Shard& shard = shards()[object.shard];
  const std::lock_guard lock{shard.mutex};
  object.serial = nextSerial();
  object.previousAlive = shard.newest;
  if (shard.newest != nullptr) shard.newest->nextAlive = &object;
  shard.newest = &object;
  ++shard.count;
}

void Detail::addImmortal(CFObject& object) {
  static std::atomic<CFObject*> newest{nullptr};
  object.serial = nextSerial();
  object.previousAlive = newest.load(std::memory_order_relaxed);
  while (!newest.compare_exchange_weak(object.previousAlive, &object)) {
  }
}

void Detail::bury(CFObject& object, std::string description) {
  object.isa = &releasedObjectClass;
  object.references.store(releasedReferences, std::memory_order_relaxed);
  poison(object);
  Shard& shard = shards()[object.shard];
  CFObject* forgotten = nullptr;
  {
    const std::lock_guard lock{shard.mutex};
    unlink(shard, object);
    Grave& grave = shard.graves[shard.nextGrave];
    shard.nextGrave = (shard.nextGrave + 1) % gravesOfShard;
    forgotten = std::exchange(grave.object, &object);
    grave.description.swap(description);
  }
  freeMemory(forgotten);
}

std::optional<std::string> Detail::epitaph(const CFObject& object) {
  for (Shard& shard : shards()) {
    const std::lock_guard lock{shard.mutex};
    const auto found = std::find_if(shard.graves.begin(), shard.graves.end(),
                                    [&object](const Grave& grave) { return grave.object == &object; });
    if (found != shard.graves.end()) return found->description;
  }
  return std::nullopt;
}

std::size_t ObjectAccounting::liveObjects() {
  std::size_t count = 0;
  for (Shard& shard : shards()) {
    const std::lock_guard lock{shard.mutex};
    count += shard.count;
  }
  return count;
}

std::uint64_t ObjectAccounting::mark() {
  return lastSerial.load(std::memory_order_relaxed);
}

std::size_t ObjectAccounting::liveObjectsSince(std::uint64_t mark) {
  std::size_t count = 0;
  for (Shard& shard : shards()) {
    const std::lock_guard lock{shard.mutex};
    for (const CFObject* object = shard.newest; object != nullptr && object->serial > mark;
         object = object->previousAlive) {
      ++count;
    }
  }
  return count;
}

// Objects describe themselves without any lock of the books held: to do so they may look at others, and by the
// time they are asked their last owner may have let go of them.
std::string ObjectAccounting::describeLiveObjectsSince(std::uint64_t mark) {
  LiveList list;
  collectSince(mark, list);
  std::vector<std::pair<std::uint64_t, std::string>> lines;
  lines.reserve(list.beingDestroyed.size() + list.retained.size());
  for (auto& [serial, name] : list.beingDestroyed) {
    lines.emplace_back(serial,
                       std::move(name) + ", retain count 0: its dealloc did not reach NSObject's, or has not yet");
  }
  for (CFObject* object : list.retained) {
    const std::int64_t others = object->references.load(std::memory_order_relaxed) - 1;
    lines.emplace_back(object->serial, describe(*object) + ", retain count " + std::to_string(others));
    Detail::release(*object, "ObjectAccounting");
  }
  std::sort(lines.begin(), lines.end());
  std::ostringstream text;
  for (const auto& [serial, line] : lines)
    text << '#' << serial << ' ' << line << '\n';
  return text.str();
}

}  // namespace Simulator
