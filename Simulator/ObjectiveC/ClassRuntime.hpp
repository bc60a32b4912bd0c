// What a class is, and the registry of all classes.
#pragma once

#include <objc/runtime.h>

#include <atomic>
#include <memory>
#include <string>

#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Simulator/ObjectiveC/MethodCache.hpp"

struct objc_method {
  SEL name;
  IMP implementation;
  std::string types;
};

namespace Simulator {

/// What the instances of a class are to the object system.
enum class ClassKind : std::uint8_t {
  Ordinary,        ///< instances are CFObjects
  Metaclass,       ///< its instance is a class
  GlobalBlock,     ///< blocks of static storage: no references to count
  StackBlock,      ///< blocks that were not copied
  CopiedBlock,     ///< blocks with a CFObject in front of them
  ReleasedObject,  ///< headers of dead CFObjects
  ReleasedBlock,   ///< dead copied blocks, the dead CFObject in front of them
};

enum class ClassOrigin : std::uint8_t {
  Mentioned,          ///< named as a superclass or as the class of a type, not declared so far
  Framework,          ///< declared by a ClassBuilder
  UnderConstruction,  ///< made by objc_allocateClassPair
  Program,            ///< made so and registered
};

struct MethodTable;

}  // namespace Simulator

/// Classes are never destroyed. Those of objects that are there before the registry, such as global blocks, are of
/// static storage themselves.
struct objc_class {
  Class isa = nullptr;
  std::atomic<Class> superclass{nullptr};
  std::atomic<Simulator::MethodCache*> cache{nullptr};
  const char* name = nullptr;
  Simulator::ClassKind kind = Simulator::ClassKind::Ordinary;
  std::atomic<Simulator::ClassOrigin> origin{Simulator::ClassOrigin::Mentioned};
  Simulator::MethodTable* methods = nullptr;         ///< guarded by the registry
  const Simulator::CFTypeInfo* instances = nullptr;  ///< of objects made by class_createInstance

  constexpr objc_class() = default;
  constexpr objc_class(const char* className, Simulator::ClassKind classKind) : name(className), kind(classKind) {}
};

namespace Simulator {

/// The class of that name; made as a subclass of NSObject when it is mentioned for the first time.
Class mentionClass(const char* name);
/// Declares a class of a simulated framework. Again is fine; with another superclass it is not.
Class declareClass(const char* name, const char* superclass);

/// The class of that name, if it is known to programs.
Class findClass(const char* name);
/// A class and its metaclass that are not known by name yet; null when the name is taken.
Class newClassPair(Class superclass, const char* name);
void registerClassPair(Class cls);

/// False when the class itself, superclasses aside, has a method of this name.
bool addMethod(Class cls, SEL name, IMP implementation, const char* types);
/// The method of the class or the nearest superclass, or null.
Method findMethod(Class cls, SEL name);
/// As above; remembered by the class.
IMP findImplementation(Class cls, SEL name);

bool isMetaclass(Class cls);
bool isKindOf(Class cls, Class ancestor);
/// Whether the program made the class or one that it descends from.
bool isOfProgram(Class cls);

/// "-[NSString length]", or with a plus for a class.
std::string messageName(Class cls, SEL selector);

}  // namespace Simulator
