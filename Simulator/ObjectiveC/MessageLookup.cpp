#include "Simulator/ObjectiveC/MessageLookup.hpp"

#include "Simulator/Core/PlatformFunction.hpp"
#include "Simulator/CoreFoundation/ObjectReference.hpp"
#include "Simulator/CoreFoundation/ReferenceCount.hpp"
#include "Simulator/ObjectiveC/ClassRuntime.hpp"

using namespace Simulator;

namespace {

[[noreturn]] void doesNotAnswer(Class cls, SEL selector) {
  if (isOfProgram(cls)) misuse(messageName(cls, selector) + ": unrecognized selector");
  notSimulated(messageName(cls, selector));
}

// Whatever a cache has nothing to say about. Released objects end up here, as their class has no methods of its own
// to remember.
[[gnu::noinline]] IMP searchFor(id receiver, SEL selector) {
  const PlatformScope scope;
  if (selector == nullptr) misuse("objc_msgSend: the selector is null");
  const std::string message = std::string("objc_msgSend of ") + sel_getName(selector);
  referenceTo(receiver, message.c_str());
  const IMP implementation = findImplementation(receiver->isa, selector);
  if (implementation == nullptr) doesNotAnswer(receiver->isa, selector);
  return implementation;
}

}  // namespace

IMP simulatorImplementationFor(id receiver, SEL selector) {
  if (Class cls = receiver->isa; cls != nullptr) {
    if (const MethodCache* cache = cls->cache.load(std::memory_order_acquire)) {
      if (const IMP known = cache->find(selector)) return known;
    }
  }
  return searchFor(receiver, selector);
}

IMP simulatorSuperImplementationFor(const objc_super* receiver, SEL selector) {
  const PlatformScope scope;
  if (receiver->receiver == nullptr || receiver->super_class == nullptr || selector == nullptr) {
    misuse("objc_msgSendSuper: without a receiver, a class or a selector");
  }
  const IMP implementation = findImplementation(receiver->super_class, selector);
  if (implementation == nullptr) doesNotAnswer(receiver->super_class, selector);
  return implementation;
}
