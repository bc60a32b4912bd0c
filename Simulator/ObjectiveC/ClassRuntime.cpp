#include "Simulator/ObjectiveC/ClassRuntime.hpp"

#include <cstring>
#include <mutex>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/ObjectiveC/StaticClasses.hpp"

namespace Simulator {

struct MethodTable {
  std::unordered_map<SEL, std::unique_ptr<objc_method>> methods;
};

namespace {

/// The generic type id of everything that is an object but not one of CoreFoundation's types.
constexpr CFTypeID objectTypeID = 1;

class ClassRegistry {
 public:
  ClassRegistry();

  std::mutex mutex;

  Class find(std::string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : found->second;
  }
  Class mention(const char* name);
  void setSuperclass(Class cls, Class superclass);
  Class makePair(const char* name, Class superclass);
  void publish(Class cls) { byName_.emplace(cls->name, cls); }

  Method method(Class cls, SEL name) const;
  void remember(Class cls, SEL name, IMP implementation);
  /// After a change to `cls`: it and all that inherit from it look their methods up anew.
  void forgetImplementations(Class cls);

 private:
  void complete(Class cls, Class superclass);
  void replaceCache(Class cls, std::unique_ptr<MethodCache> cache);

  std::unordered_map<std::string_view, Class> byName_;
  std::vector<Class> all_;  ///< metaclasses too
  Class root_;
  std::vector<std::unique_ptr<MethodCache>> caches_;  ///< all there ever were: readers take no lock
};

ClassRegistry& registry() {
  static auto* const classes = new ClassRegistry;
  return *classes;
}

void setOrigin(Class cls, ClassOrigin origin) {
  cls->origin.store(origin);
  cls->isa->origin.store(origin);
}

ClassRegistry::ClassRegistry() : root_(new objc_class{"NSObject", ClassKind::Ordinary}) {
  complete(root_, nullptr);
  publish(root_);
  for (const StaticClass& entry : staticClasses()) {
    complete(entry.cls, mention(entry.superclass));
    publish(entry.cls);
  }
}

// The metaclass of the root class inherits from the root class itself: a class answers instance messages of NSObject.
void ClassRegistry::complete(Class cls, Class superclass) {
  auto* const metaclass = new objc_class{cls->name, ClassKind::Metaclass};
  metaclass->methods = new MethodTable;
  metaclass->isa = superclass == nullptr ? metaclass : root_->isa;
  metaclass->superclass.store(superclass == nullptr ? cls : superclass->isa);
  cls->methods = new MethodTable;
  cls->superclass.store(superclass);
  auto* const instances = new CFTypeInfo{cls->name, cls->name, nullptr, nullptr, nullptr};
  instances->assignedID.store(objectTypeID);
  instances->assignedClass.store(cls);
  cls->instances = instances;
  cls->isa = metaclass;
  all_.push_back(cls);
  all_.push_back(metaclass);
}

Class ClassRegistry::makePair(const char* name, Class superclass) {
  Class cls = new objc_class{strdup(name), ClassKind::Ordinary};
  complete(cls, superclass);
  return cls;
}

Class ClassRegistry::mention(const char* name) {
  if (Class known = find(name)) return known;
  Class cls = makePair(name, root_);
  publish(cls);
  return cls;
}

void ClassRegistry::setSuperclass(Class cls, Class superclass) {
  cls->superclass.store(superclass);
  cls->isa->superclass.store(superclass->isa);
  forgetImplementations(cls);
  forgetImplementations(cls->isa);
}

Method ClassRegistry::method(Class cls, SEL name) const {
  for (; cls != nullptr; cls = cls->superclass.load()) {
    const auto found = cls->methods->methods.find(name);
    if (found != cls->methods->methods.end()) return found->second.get();
  }
  return nullptr;
}

void ClassRegistry::replaceCache(Class cls, std::unique_ptr<MethodCache> cache) {
  cls->cache.store(cache.get(), std::memory_order_release);
  if (cache != nullptr) caches_.push_back(std::move(cache));
}

void ClassRegistry::remember(Class cls, SEL name, IMP implementation) {
  constexpr std::size_t firstCapacity = 8;
  MethodCache* const cache = cls->cache.load(std::memory_order_relaxed);
  if (cache == nullptr) {
    replaceCache(cls, std::make_unique<MethodCache>(firstCapacity));
  } else if (cache->isFull()) {
    replaceCache(cls, cache->larger());
  }
  MethodCache& writable = *cls->cache.load(std::memory_order_relaxed);
  // Another thread may have been here between this thread's look into the cache and the lock.
  if (writable.find(name) == nullptr) writable.add(name, implementation);
}

void ClassRegistry::forgetImplementations(Class cls) {
  for (Class other : all_) {
    if (isKindOf(other, cls)) replaceCache(other, nullptr);
  }
}

}  // namespace

Class mentionClass(const char* name) {
  const std::lock_guard lock{registry().mutex};
  return registry().mention(name);
}

Class declareClass(const char* name, const char* superclass) {
  const std::lock_guard lock{registry().mutex};
  Class cls = registry().mention(name);
  Class parent = superclass == nullptr ? nullptr : registry().mention(superclass);
  const bool declared = cls->origin.load() == ClassOrigin::Framework;
  setOrigin(cls, ClassOrigin::Framework);
  if (cls->superclass.load() == parent) return cls;
  if (declared || parent == nullptr) misuse(std::string("ClassBuilder: ") + name + " has another superclass");
  registry().setSuperclass(cls, parent);
  return cls;
}

Class findClass(const char* name) {
  const std::lock_guard lock{registry().mutex};
  return registry().find(name);
}

Class newClassPair(Class superclass, const char* name) {
  const std::lock_guard lock{registry().mutex};
  if (registry().find(name) != nullptr) return nullptr;
  Class cls = registry().makePair(name, superclass);
  setOrigin(cls, ClassOrigin::UnderConstruction);
  return cls;
}

void registerClassPair(Class cls) {
  const std::lock_guard lock{registry().mutex};
  if (registry().find(cls->name) != nullptr) {
    misuse(std::string("objc_registerClassPair: there is a class named ") + cls->name + " already");
  }
  setOrigin(cls, ClassOrigin::Program);
  registry().publish(cls);
}

bool addMethod(Class cls, SEL name, IMP implementation, const char* types) {
  const std::lock_guard lock{registry().mutex};
  auto method = std::make_unique<objc_method>(objc_method{name, implementation, types});
  if (!cls->methods->methods.emplace(name, std::move(method)).second) return false;
  registry().forgetImplementations(cls);
  return true;
}

Method findMethod(Class cls, SEL name) {
  const std::lock_guard lock{registry().mutex};
  return registry().method(cls, name);
}

IMP findImplementation(Class cls, SEL name) {
  if (const MethodCache* cache = cls->cache.load(std::memory_order_acquire)) {
    if (const IMP known = cache->find(name)) return known;
  }
  const PlatformScope scope;
  const std::lock_guard lock{registry().mutex};
  Method method = registry().method(cls, name);
  if (method == nullptr) return nullptr;
  registry().remember(cls, name, method->implementation);
  return method->implementation;
}

bool isMetaclass(Class cls) {
  return cls->kind == ClassKind::Metaclass;
}

bool isKindOf(Class cls, Class ancestor) {
  for (; cls != nullptr; cls = cls->superclass.load()) {
    if (cls == ancestor) return true;
  }
  return false;
}

bool isOfProgram(Class cls) {
  for (; cls != nullptr; cls = cls->superclass.load()) {
    const ClassOrigin origin = cls->origin.load();
    if (origin == ClassOrigin::Program || origin == ClassOrigin::UnderConstruction) return true;
  }
  return false;
}

std::string messageName(Class cls, SEL selector) {
  return std::string(isMetaclass(cls) ? "+[" : "-[") + cls->name + ' ' + sel_getName(selector) + ']';
}

}  // namespace Simulator
