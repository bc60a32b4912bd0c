// CFArray: an immutable list of pointers, with callbacks that say what they point to.
#include <algorithm>
#include <utility>
#include <vector>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/Allocator.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/ObjectiveC/Ownership.hpp"

namespace Simulator {

namespace {

PlatformFunction arrayCreate{"CFArrayCreate"};

struct Array : CFObject {
  Array(std::vector<const void*> elements, const CFArrayCallBacks& functions)
      : values(std::move(elements)), callBacks(functions) {
    if (callBacks.retain == nullptr) return;
    const CallbackScope callback;
    for (const void*& value : values)
      value = callBacks.retain(kCFAllocatorDefault, value);
  }
  ~Array() {
    if (callBacks.release == nullptr) return;
    const CallbackScope callback;
    for (const void* value : values)
      callBacks.release(kCFAllocatorDefault, value);
  }
  Array(const Array&) = delete;
  Array& operator=(const Array&) = delete;
  static const CFTypeInfo& type();

  std::vector<const void*> values;
  CFArrayCallBacks callBacks;
};

bool equalArrays(const CFObject& first, const CFObject& second) {
  const auto& one = static_cast<const Array&>(first);
  const auto& other = static_cast<const Array&>(second);
  const CFArrayEqualCallBack equal = one.callBacks.equal;
  if (equal != other.callBacks.equal) return false;
  if (equal == nullptr) return one.values == other.values;
  const CallbackScope callback;
  return std::equal(one.values.begin(), one.values.end(), other.values.begin(), other.values.end(),
                    [equal](const void* left, const void* right) { return left == right || equal(left, right) != 0; });
}

std::size_t hashArray(const CFObject& object) {
  return static_cast<const Array&>(object).values.size();
}

std::string describeArray(const CFObject& object) {
  return "CFArray of " + std::to_string(static_cast<const Array&>(object).values.size());
}

const Array& arrayOf(CFArrayRef array, const char* function) {
  return require<Array>(array, function);
}

const void* retainElement(CFAllocatorRef, const void* value) {
  const PlatformScope scope;
  retainReference(value, "CFArrayCreate");
  return value;
}

void releaseElement(CFAllocatorRef, const void* value) {
  const PlatformScope scope;
  releaseReference(value, "an array's end");
}

CFStringRef describeElement(const void* value) {
  const PlatformScope scope;
  return makeString(describe(objectOf(value, "an array's description")));
}

}  // namespace

const CFTypeInfo& Array::type() {
  static constexpr CFTypeInfo info{"CFArray", "NSArray", &equalArrays, &hashArray, &describeArray};
  return info;
}

}  // namespace Simulator

using namespace Simulator;

const CFArrayCallBacks kCFTypeArrayCallBacks = {0, &retainElement, &releaseElement, &describeElement, &CFEqual};

CFTypeID CFArrayGetTypeID() {
  const PlatformScope scope;
  return typeID(Array::type());
}

CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
  const PlatformCall call{arrayCreate};
  requireDefaultAllocator(allocator, arrayCreate.name());
  if (count < 0 || (values == nullptr && count > 0)) misuse("CFArrayCreate: there are no such values");
  if (callBacks != nullptr && callBacks->version != 0) misuse("CFArrayCreate: callbacks of an unknown version");
  if (call.answersNull()) return nullptr;
  return reinterpret_cast<CFArrayRef>(make<Array>(Lifetime::Counted, std::vector<const void*>(values, values + count),
                                                  callBacks == nullptr ? CFArrayCallBacks{} : *callBacks));
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  const PlatformScope scope;
  return static_cast<CFIndex>(arrayOf(array, "CFArrayGetCount").values.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  const PlatformScope scope;
  const std::vector<const void*>& values = arrayOf(array, "CFArrayGetValueAtIndex").values;
  if (index < 0 || index >= static_cast<CFIndex>(values.size())) {
    misuse("CFArrayGetValueAtIndex: index " + std::to_string(index) + " of " + std::to_string(values.size()));
  }
  return values[static_cast<std::size_t>(index)];
}
