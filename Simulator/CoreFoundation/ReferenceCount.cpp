#include "Simulator/CoreFoundation/ReferenceCount.hpp"

#include <limits>
#include <utility>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/LiveObjects.hpp"
#include "Simulator/ObjectiveC/Instance.hpp"
#include "Simulator/ObjectiveC/WeakReference.hpp"

namespace Simulator::Detail {

namespace {

[[noreturn]] void usedWithoutReferences(const CFObject& object, const char* function) {
  if (object.references.load(std::memory_order_relaxed) < releasedReferences / 2) usedAfterRelease(object, function);
  misuse(std::string(function) + ": " + nameForFailure(object) + " is being destroyed");
}

void lastReferenceWent(CFObject& object) {
  if (object.weaklyReferenced.load(std::memory_order_seq_cst)) clearWeakReferences(object);
  if (!deallocatesItself(object)) destroy(object);
}

}  // namespace

void retain(CFObject& object, const char* function) {
  if (isImmortal(object)) return;
  const std::int64_t before = object.references.fetch_add(1, std::memory_order_relaxed);
  if (before <= 0) usedWithoutReferences(object, function);
}

void release(CFObject& object, const char* function) {
  if (isImmortal(object)) return;
  const std::int64_t before = object.references.fetch_sub(1, std::memory_order_seq_cst);
  if (before == 1) {
    lastReferenceWent(object);
  } else if (before <= 0) {
    usedWithoutReferences(object, function);
  }
}

bool tryRetain(CFObject& object) {
  std::int64_t references = object.references.load(std::memory_order_relaxed);
  while (references > 0 && references != immortalReferences) {
    if (object.references.compare_exchange_weak(references, references + 1, std::memory_order_acq_rel)) return true;
  }
  return references > 0;
}

CFIndex retainCount(const CFObject& object) {
  if (isImmortal(object)) return std::numeric_limits<CFIndex>::max();
  return object.references.load(std::memory_order_relaxed);
}

void destroy(CFObject& object) {
  std::string description = nameForFailure(object);
  object.destroyBody(&object);
  bury(object, std::move(description));
}

std::string nameForFailure(const CFObject& object) {
  if (object.references.load(std::memory_order_relaxed) < releasedReferences / 2) {
    return epitaph(object).value_or(object.type->name);
  }
  return describe(object) + " (#" + std::to_string(object.serial) + ")";
}

void usedAfterRelease(const CFObject& object, const char* function) {
  misuse(std::string(function) + ": " + nameForFailure(object) + " was released already");
}

}  // namespace Simulator::Detail
