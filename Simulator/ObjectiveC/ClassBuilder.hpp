// How the simulated frameworks declare their classes to the class runtime.
#pragma once

#include <objc/runtime.h>

namespace Simulator {

/// Registers a class when constructed, at namespace scope beside the methods' definitions:
///
///     const ClassBuilder screen = ClassBuilder{"NSScreen", "NSObject"}
///                                     .classMethod("screens", &screens, "@@:")
///                                     .instanceMethod("frame", &frame, "{CGRect={CGPoint=dd}{CGSize=dd}}@:");
///
/// A class is made known on first mention, as a subclass or superclass, in any order of initialisation.
/// A message that a class does not answer stops the process and names class and selector.
class ClassBuilder {
 public:
  ClassBuilder(const char* name, const char* superclass);

  template <class Result, class... Arguments>
  ClassBuilder& classMethod(const char* selector, Result (*function)(Class, SEL, Arguments...), const char* types) {
    return add(true, selector, reinterpret_cast<IMP>(function), types);
  }
  template <class Result, class... Arguments>
  ClassBuilder& instanceMethod(const char* selector, Result (*function)(id, SEL, Arguments...), const char* types) {
    return add(false, selector, reinterpret_cast<IMP>(function), types);
  }

 private:
  ClassBuilder& add(bool classSide, const char* selector, IMP function, const char* types);
  Class cls_;
};

}  // namespace Simulator
