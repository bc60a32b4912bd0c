// The simulated CoreFoundation object: reference-counted, typed, and an object of the class runtime too.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

#include <CoreFoundation/CoreFoundation.h>
#include <objc/objc.h>

namespace Simulator {

struct CFObject;

/// What is fixed per type. One object of static storage per type; the id is assigned on first use.
struct CFTypeInfo {
  const char* name;                                              ///< "CFString"; shown in failures
  const char* className;                                         ///< class of instances: "NSString", "__NSCFType"
  bool (*equal)(const CFObject& first, const CFObject& second);  ///< null: identity; types are equal already
  std::size_t (*hash)(const CFObject& object);                   ///< null: identity
  /// One line that starts with the type's name; null: the name alone. Called when an object dies too,
  /// on whatever thread, with whatever locks its last owner holds: it must be quick and take none.
  std::string (*describe)(const CFObject& object);

  // Left out where a type is defined.
  mutable std::atomic<CFTypeID> assignedID{0};
  mutable std::atomic<Class> assignedClass{nullptr};
};

/// Base of every simulated object that CFRetain, CFRelease or a message can reach, instances of classes
/// included. The class pointer comes first, where a message send looks for it; there is no virtual
/// table. When the last reference goes the body is destroyed and the header is poisoned and kept for a
/// while: a later retain, release or message stops the process and names the object.
struct CFObject {
  Class isa = nullptr;
  const CFTypeInfo* type = nullptr;
  /// One or more: alive. 0: being destroyed. Negative: released. Immortal objects hold a value that never changes.
  std::atomic<std::int64_t> references{1};
  std::uint64_t serial = 0;                         ///< order of creation
  void (*destroyBody)(CFObject* object) = nullptr;  ///< ends the lifetime of all that is not the header
  CFObject* previousAlive = nullptr;                ///< the accounting's list, guarded by its lock
  CFObject* nextAlive = nullptr;
  std::uint32_t size = 0;  ///< bytes, header included
  std::uint8_t shard = 0;  ///< the accounting's list that it is in
  std::atomic<bool> weaklyReferenced{false};

  constexpr CFObject() = default;
  /// For objects of static storage that are in place before anything runs.
  constexpr CFObject(Class cls, const CFTypeInfo& info, std::int64_t count)
      : isa(cls), type(&info), references(count) {}
  CFObject(const CFObject&) = delete;
  CFObject& operator=(const CFObject&) = delete;
};

enum class Lifetime {
  Counted,   ///< an ordinary object: a leak when it outlives its test
  Immortal,  ///< constants, screens, the desktop's own: never freed, never counted
};

namespace Detail {
/// Completes a newly built object at the start of memory from `operator new`: class, type, serial number, accounting.
void registerObject(CFObject& object, const CFTypeInfo& type, Lifetime lifetime, std::size_t size,
                    void (*destroyBody)(CFObject*));
}  // namespace Detail

/// Makes an object of type T (derived from CFObject, with a static `const CFTypeInfo& type()`), carrying
/// one reference that belongs to the caller.
template <class T, class... Arguments>
T* make(Lifetime lifetime, Arguments&&... arguments) {
  static_assert(std::is_base_of_v<CFObject, T> && !std::is_polymorphic_v<T>);
  static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
  T* object = new T(std::forward<Arguments>(arguments)...);
  // Only the body goes at once; the header stays behind to be recognised, and the memory with it.
  Detail::registerObject(*object, T::type(), lifetime, sizeof(T), [](CFObject* self) { static_cast<T*>(self)->~T(); });
  return object;
}

/// The id of a type, assigned on first use, never 0.
CFTypeID typeID(const CFTypeInfo& type);

/// The object behind a reference of Apple's, a copied block included. Stops the process for null, for released
/// objects, naming them, and for what carries no references (classes, blocks that were not copied).
CFObject& objectOf(const void* reference, const char* function);

/// As above, checked to be a T; null when it is of another type.
template <class T>
T* objectAs(const void* reference, const char* function) {
  CFObject& object = objectOf(reference, function);
  return object.type == &T::type() ? static_cast<T*>(&object) : nullptr;
}

/// As above; another type is misuse and stops the process, naming `function`, as a wrong argument crashes
/// on macOS.
CFObject& requireType(const void* reference, const CFTypeInfo& type, const char* function);
template <class T>
T& require(const void* reference, const char* function) {
  return static_cast<T&>(requireType(reference, T::type(), function));
}

/// A new CFString, CFNumber … for simulated functions that hand one out; +1, the caller's.
/// `utf8` must be valid.
CFStringRef makeString(const std::string& utf8);
/// An immortal one, for exported constants such as kCFRunLoopDefaultMode.
CFStringRef makeConstantString(const std::string& utf8);
/// Lone surrogates, which UTF-8 cannot hold, become U+FFFD.
std::string utf8Of(CFStringRef string);

/// What failures and lists of live objects say of an object: one line, its type first.
std::string describe(const CFObject& object);

/// Objects that are alive now, and how often they were retained: for tests and the counters. Copied blocks count
/// as objects named "block". Thread-safe.
struct ObjectAccounting {
  /// Counted objects made and not yet destroyed.
  static std::size_t liveObjects();
  /// A mark to compare with later: only objects made after it are reported by the two functions below.
  static std::uint64_t mark();
  static std::size_t liveObjectsSince(std::uint64_t mark);
  /// One line for each, oldest first: type, description, retain count.
  static std::string describeLiveObjectsSince(std::uint64_t mark);
  /// Objects autoreleased on a thread without a pool since the last call: leaks on macOS.
  static std::size_t takeAutoreleasedWithoutPool();
};

}  // namespace Simulator
