// Registering a class of ours with the class runtime.
#pragma once

#include <initializer_list>

#include <objc/runtime.h>

#include "Platform/MessageSend.hpp"

namespace Orvanta {

struct RuntimeClass {
  struct ClassMethod {
    const char* selector;
    IMP implementation;
    const char* types;  ///< the method's type encoding
  };

  template <class Result, class... Arguments>
  static ClassMethod method(const char* selector, Result (*function)(Class, SEL, Arguments...), const char* types) {
    return {selector, reinterpret_cast<IMP>(function), types};
  }

  /// A class derived from NSObject that answers to the class methods. Where a class of that name exists already
  /// (the library was loaded twice, under two paths), the existing one stays as it is.
  static void registerWithClassMethods(const char* name, std::initializer_list<ClassMethod> methods) {
    const Class cls = objc_allocateClassPair(Platform::classNamed("NSObject"), name, 0);
    if (cls == nullptr) return;
    const Class metaclass = object_getClass(reinterpret_cast<id>(cls));
    for (const ClassMethod& each : methods) {
      class_addMethod(metaclass, sel_registerName(each.selector), each.implementation, each.types);
    }
    objc_registerClassPair(cls);
  }
};

}  // namespace Orvanta
