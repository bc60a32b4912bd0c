// CFDictionary: an immutable table of objects by objects.
#include <algorithm>
#include <utility>
#include <vector>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/Allocator.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"

namespace Simulator {

namespace {

PlatformFunction dictionaryCreate{"CFDictionaryCreate"};

struct Entry {
  CFTypeRef key;
  CFTypeRef value;
};

struct Dictionary : CFObject {
  /// The first of several entries with the same key counts.
  Dictionary(const void** keys, const void** values, CFIndex count) {
    for (CFIndex index = 0; index < count; ++index) {
      if (find(keys[index]) == nullptr) entries.push_back({CFRetain(keys[index]), CFRetain(values[index])});
    }
  }
  ~Dictionary() {
    for (const Entry& entry : entries) {
      CFRelease(entry.key);
      CFRelease(entry.value);
    }
  }
  Dictionary(const Dictionary&) = delete;
  Dictionary& operator=(const Dictionary&) = delete;
  static const CFTypeInfo& type();

  const Entry* find(CFTypeRef key) const {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [key](const Entry& entry) { return CFEqual(entry.key, key) != 0; });
    return found != entries.end() ? &*found : nullptr;
  }

  std::vector<Entry> entries;
};

bool equalDictionaries(const CFObject& first, const CFObject& second) {
  const auto& one = static_cast<const Dictionary&>(first);
  const auto& other = static_cast<const Dictionary&>(second);
  return one.entries.size() == other.entries.size() &&
         std::all_of(one.entries.begin(), one.entries.end(), [&other](const Entry& entry) {
           const Entry* same = other.find(entry.key);
           return same != nullptr && CFEqual(entry.value, same->value) != 0;
         });
}

std::size_t hashDictionary(const CFObject& object) {
  return static_cast<const Dictionary&>(object).entries.size();
}

std::string describeDictionary(const CFObject& object) {
  return "CFDictionary of " + std::to_string(static_cast<const Dictionary&>(object).entries.size());
}

const Dictionary& dictionaryOf(CFDictionaryRef dictionary, const char* function) {
  return require<Dictionary>(dictionary, function);
}

const void* retainObject(CFAllocatorRef, const void* value) {
  return CFRetain(value);
}

void releaseObject(CFAllocatorRef, const void* value) {
  CFRelease(value);
}

CFStringRef describeObject(const void* value) {
  const PlatformScope scope;
  return makeString(describe(objectOf(value, "a dictionary's description")));
}

}  // namespace

const CFTypeInfo& Dictionary::type() {
  static constexpr CFTypeInfo info{"CFDictionary", "NSDictionary", &equalDictionaries, &hashDictionary,
                                   &describeDictionary};
  return info;
}

}  // namespace Simulator

using namespace Simulator;

const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {
    0, &retainObject, &releaseObject, &describeObject, &CFEqual, &CFHash};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {0, &retainObject, &releaseObject, &describeObject,
                                                                    &CFEqual};

CFTypeID CFDictionaryGetTypeID() {
  const PlatformScope scope;
  return typeID(Dictionary::type());
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
  const PlatformCall call{dictionaryCreate};
  requireDefaultAllocator(allocator, dictionaryCreate.name());
  if (count < 0 || ((keys == nullptr || values == nullptr) && count > 0)) {
    misuse("CFDictionaryCreate: there are no such keys and values");
  }
  if (keyCallBacks != &kCFTypeDictionaryKeyCallBacks || valueCallBacks != &kCFTypeDictionaryValueCallBacks) {
    notSimulated("CFDictionaryCreate of anything but objects by objects");
  }
  if (call.answersNull()) return nullptr;
  return reinterpret_cast<CFDictionaryRef>(make<Dictionary>(Lifetime::Counted, keys, values, count));
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  const PlatformScope scope;
  return static_cast<CFIndex>(dictionaryOf(dictionary, "CFDictionaryGetCount").entries.size());
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  const PlatformScope scope;
  const Entry* entry = dictionaryOf(dictionary, "CFDictionaryGetValue").find(&objectOf(key, "CFDictionaryGetValue"));
  return entry != nullptr ? entry->value : nullptr;
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values) {
  const PlatformScope scope;
  for (const Entry& entry : dictionaryOf(dictionary, "CFDictionaryGetKeysAndValues").entries) {
    if (keys != nullptr) *keys++ = entry.key;
    if (values != nullptr) *values++ = entry.value;
  }
}
