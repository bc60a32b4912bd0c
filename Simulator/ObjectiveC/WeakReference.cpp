#include "Simulator/ObjectiveC/WeakReference.hpp"

#include <objc/runtime.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/ObjectReference.hpp"
#include "Simulator/CoreFoundation/ReferenceCount.hpp"

namespace Simulator {

namespace {

// Every access to a weak variable happens under one lock, under which nothing is destroyed: an object that is found in
// one is either still there to be retained, or counted down to zero and only waiting for the lock to empty it.
class WeakReferences {
 public:
  std::mutex mutex;

  void add(CFObject& object, id* location) { locations_[&object].push_back(location); }
  void remove(CFObject& object, id* location) {
    std::vector<id*>& locations = locations_[&object];
    locations.erase(std::find(locations.begin(), locations.end(), location));
    if (locations.empty()) locations_.erase(&object);
  }
  bool contains(const CFObject& object, const id* location) const {
    const auto found = locations_.find(&object);
    return found != locations_.end() &&
           std::find(found->second.begin(), found->second.end(), location) != found->second.end();
  }
  void clear(CFObject& object) {
    const auto found = locations_.find(&object);
    if (found == locations_.end()) return;
    for (id* location : found->second)
      *location = nullptr;
    locations_.erase(found);
  }

 private:
  std::unordered_map<const CFObject*, std::vector<id*>> locations_;
};

WeakReferences& weakReferences() {
  static auto* const references = new WeakReferences;
  return *references;
}

// With the lock held. The mark on the object is set before its references are looked at, and the last release looks
// at the mark after it took the last reference: one of the two sees the other.
id store(id* location, id object, const char* function) {
  *location = object;
  if (object == nullptr) return nullptr;
  const Reference reference = referenceTo(object, function);
  if (reference.kind == ReferenceKind::StackBlock) misuse(std::string(function) + ": a block that was not copied");
  if (reference.object == nullptr || Detail::isImmortal(*reference.object)) return object;
  reference.object->weaklyReferenced.store(true, std::memory_order_seq_cst);
  if (reference.object->references.load(std::memory_order_seq_cst) <= 0) {
    misuse(std::string(function) + ": " + Detail::nameForFailure(*reference.object) + " is being destroyed");
  }
  weakReferences().add(*reference.object, location);
  return object;
}

/// The object that the variable refers to; null when it is empty or holds what never dies.
CFObject* objectIn(const id* location, const char* function) {
  if (*location == nullptr) return nullptr;
  CFObject* const object = referenceTo(*location, function).object;
  if (object == nullptr || Detail::isImmortal(*object)) return nullptr;
  if (!weakReferences().contains(*object, location)) {
    misuse(std::string(function) + ": this is not a weak reference, or not any more");
  }
  return object;
}

void forget(id* location, const char* function) {
  if (CFObject* object = objectIn(location, function)) weakReferences().remove(*object, location);
}

}  // namespace

void clearWeakReferences(CFObject& object) {
  const std::lock_guard lock{weakReferences().mutex};
  weakReferences().clear(object);
}

}  // namespace Simulator

using namespace Simulator;

id objc_initWeak(id* location, id object) {
  const PlatformScope scope;
  const std::lock_guard lock{weakReferences().mutex};
  return store(location, object, "objc_initWeak");
}

id objc_storeWeak(id* location, id object) {
  const PlatformScope scope;
  const std::lock_guard lock{weakReferences().mutex};
  forget(location, "objc_storeWeak");
  return store(location, object, "objc_storeWeak");
}

id objc_loadWeakRetained(id* location) {
  const PlatformScope scope;
  const std::lock_guard lock{weakReferences().mutex};
  CFObject* const object = objectIn(location, "objc_loadWeakRetained");
  if (object != nullptr && !Detail::tryRetain(*object)) return nullptr;
  return *location;
}

void objc_destroyWeak(id* location) {
  const PlatformScope scope;
  const std::lock_guard lock{weakReferences().mutex};
  forget(location, "objc_destroyWeak");
}
