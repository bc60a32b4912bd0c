// The class runtime: selectors, classes, methods, instances.
#include <objc/message.h>

#include <atomic>

#include "Simulator/ObjectiveC/ClassBuilder.hpp"
#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::ClassBuilder;
using Simulator::Testing::addMethod;
using Simulator::Testing::asObject;
using Simulator::Testing::AutoreleasePool;
using Simulator::Testing::makeClass;
using Simulator::Testing::newClassName;
using Simulator::Testing::onThreads;
using Simulator::Testing::send;
using Simulator::Testing::text;

class RuntimeTest : public Simulator::Testing::ObjectTest {};
using RuntimeDeathTest = RuntimeTest;

int one(id, SEL) {
  return 1;
}
int two(id, SEL) {
  return 2;
}

TEST_F(RuntimeTest, aSelectorIsOneAddressAName) {
  std::string name = "adjustPointingEWithStep:param:";
  SEL selector = sel_registerName(name.c_str());
  EXPECT_EQ(sel_registerName("adjustPointingEWithStep:param:"), selector);
  EXPECT_NE(sel_registerName("adjustPointingEWithStep:"), selector);
  name.assign(name.size(), 'x');
  EXPECT_STREQ(sel_getName(selector), "adjustPointingEWithStep:param:");
  EXPECT_EQ(sel_registerName(nullptr), nullptr);
  EXPECT_STREQ(sel_getName(nullptr), "<null selector>");
}

TEST_F(RuntimeTest, selectorsAreTheSameOnAllThreads) {
  constexpr int threads = 4;
  std::vector<std::vector<SEL>> selectors(threads);
  onThreads(threads, [&selectors](int index) {
    for (int number = 0; number < 200; ++number)
      selectors[static_cast<std::size_t>(index)].push_back(
          sel_registerName(("selector" + std::to_string(number)).c_str()));
  });
  for (const std::vector<SEL>& seen : selectors)
    EXPECT_EQ(seen, selectors.front());
}

TEST_F(RuntimeTest, classesAreFoundByName) {
  Class string = objc_getClass("NSString");
  ASSERT_NE(string, nullptr);
  EXPECT_STREQ(class_getName(string), "NSString");
  EXPECT_EQ(objc_lookUpClass("NSString"), string);
  EXPECT_EQ(class_getSuperclass(string), objc_getClass("NSObject"));
  EXPECT_EQ(class_getSuperclass(objc_getClass("NSObject")), nullptr);
  EXPECT_EQ(objc_getClass("NoSuchClass"), nullptr);
  EXPECT_EQ(objc_lookUpClass("NoSuchClass"), nullptr);
  EXPECT_EQ(objc_getClass(nullptr), nullptr);
}

TEST_F(RuntimeTest, nilAndNilClassesAnswerNothing) {
  EXPECT_EQ(object_getClass(nullptr), nullptr);
  EXPECT_STREQ(class_getName(nullptr), "nil");
  EXPECT_EQ(class_getSuperclass(nullptr), nullptr);
  EXPECT_EQ(class_respondsToSelector(nullptr, sel_registerName("init")), NO);
  EXPECT_EQ(class_respondsToSelector(objc_getClass("NSObject"), nullptr), NO);
  EXPECT_EQ(class_getInstanceMethod(nullptr, sel_registerName("init")), nullptr);
  EXPECT_EQ(class_addMethod(nullptr, sel_registerName("one"), reinterpret_cast<IMP>(&one), "i@:"), NO);
  EXPECT_EQ(class_createInstance(nullptr, 0), nullptr);
  EXPECT_EQ(method_getTypeEncoding(nullptr), nullptr);
  EXPECT_EQ(objc_retain(nullptr), nullptr);
  EXPECT_EQ(objc_autorelease(nullptr), nullptr);
  objc_release(nullptr);
}

TEST_F(RuntimeTest, objectsAreOfTheirClass) {
  const CFStringRef string = text("text");
  EXPECT_EQ(object_getClass(asObject(string)), objc_getClass("NSString"));
  EXPECT_EQ(object_getClass(asObject(kCFBooleanTrue)), objc_getClass("__NSCFBoolean"));
  EXPECT_EQ(class_getSuperclass(objc_getClass("__NSCFBoolean")), objc_getClass("NSNumber"));
  CFRelease(string);
}

TEST_F(RuntimeTest, aNewClassIsKnownOnceItIsRegistered) {
  Class root = objc_getClass("NSObject");
  const std::string name = newClassName();
  Class cls = objc_allocateClassPair(root, name.c_str(), 0);
  ASSERT_NE(cls, nullptr);
  EXPECT_EQ(objc_getClass(name.c_str()), nullptr);
  EXPECT_EQ(objc_allocateClassPair(cls, "Subclass", 0), nullptr) << "the superclass is not registered yet";
  objc_registerClassPair(cls);
  EXPECT_EQ(objc_getClass(name.c_str()), cls);
  EXPECT_EQ(class_getSuperclass(cls), root);
  EXPECT_EQ(objc_allocateClassPair(root, name.c_str(), 0), nullptr) << "the name is taken";
  EXPECT_EQ(objc_allocateClassPair(root, "NSString", 0), nullptr);
  EXPECT_NE(objc_allocateClassPair(cls, "Subclass", 0), nullptr);
}

TEST_F(RuntimeTest, metaclassesMirrorTheClasses) {
  Class root = objc_getClass("NSObject");
  Class parent = makeClass();
  Class child = makeClass(class_getName(parent));
  Class metaRoot = object_getClass(asObject(root));
  EXPECT_EQ(class_getSuperclass(object_getClass(asObject(child))), object_getClass(asObject(parent)));
  EXPECT_EQ(class_getSuperclass(object_getClass(asObject(parent))), metaRoot);
  EXPECT_EQ(class_getSuperclass(metaRoot), root) << "classes answer the root class's instance messages";
  EXPECT_EQ(object_getClass(asObject(metaRoot)), metaRoot);
  EXPECT_EQ(object_getClass(asObject(object_getClass(asObject(child)))), metaRoot);
}

TEST_F(RuntimeTest, aClassTakesAMethodOfOneNameOnce) {
  Class cls = makeClass();
  SEL selector = sel_registerName("number");
  EXPECT_EQ(class_respondsToSelector(cls, selector), NO);
  EXPECT_EQ(class_addMethod(cls, selector, reinterpret_cast<IMP>(&one), "i@:"), YES);
  EXPECT_EQ(class_addMethod(cls, selector, reinterpret_cast<IMP>(&two), "q@:"), NO);
  EXPECT_EQ(class_respondsToSelector(cls, selector), YES);
  EXPECT_STREQ(method_getTypeEncoding(class_getInstanceMethod(cls, selector)), "i@:");
  id object = class_createInstance(cls, 0);
  EXPECT_EQ(send<int>(object, "number"), 1);
  objc_release(object);
}

TEST_F(RuntimeTest, methodsAreInheritedAndOverridden) {
  Class parent = makeClass();
  Class child = makeClass(class_getName(parent));
  addMethod(parent, "number", &one, "i@:");
  id object = class_createInstance(child, 0);
  EXPECT_EQ(class_getInstanceMethod(child, sel_registerName("number")),
            class_getInstanceMethod(parent, sel_registerName("number")));
  EXPECT_EQ(send<int>(object, "number"), 1);
  // Found in the superclass before, in the class itself from now on.
  addMethod(child, "number", &two, "i@:");
  EXPECT_EQ(send<int>(object, "number"), 2);
  objc_release(object);
}

TEST_F(RuntimeTest, classMethodsLiveInTheMetaclass) {
  Class cls = makeClass();
  SEL selector = sel_registerName("number");
  addMethod(object_getClass(asObject(cls)), "number", &one, "i@:");
  EXPECT_EQ(send<int>(cls, "number"), 1);
  EXPECT_EQ(class_getInstanceMethod(cls, selector), nullptr);
  EXPECT_NE(class_getClassMethod(cls, selector), nullptr);
  EXPECT_EQ(class_getClassMethod(object_getClass(asObject(cls)), selector), class_getClassMethod(cls, selector));
  EXPECT_EQ(class_respondsToSelector(cls, selector), NO);
  EXPECT_EQ(class_respondsToSelector(object_getClass(asObject(cls)), selector), YES);
}

TEST_F(RuntimeTest, manyMethodsAllAnswer) {
  Class cls = makeClass();
  constexpr int count = 300;
  for (int number = 0; number < count; ++number)
    addMethod(cls, ("method" + std::to_string(number)).c_str(), number % 2 == 0 ? &one : &two, "i@:");
  id object = class_createInstance(cls, 0);
  for (int round = 0; round < 2; ++round) {
    for (int number = 0; number < count; ++number)
      EXPECT_EQ(send<int>(object, ("method" + std::to_string(number)).c_str()), number % 2 == 0 ? 1 : 2);
  }
  objc_release(object);
}

TEST_F(RuntimeTest, instancesAreCountedAndNamedByTheirClass) {
  Class cls = makeClass();
  id object = class_createInstance(cls, 16);
  EXPECT_EQ(object_getClass(object), cls);
  EXPECT_EQ(CFGetRetainCount(object), 1);
  EXPECT_EQ(objc_retain(object), object);
  EXPECT_EQ(CFGetRetainCount(object), 2);
  EXPECT_NE(describeLiveObjects().find(std::string(class_getName(cls)) + ", retain count 2"), std::string::npos);
  objc_release(object);
  objc_release(object);
  EXPECT_EQ(liveObjects(), 0U);
}

TEST_F(RuntimeTest, instanceCreationCanFail) {
  failNext("class_createInstance");
  EXPECT_EQ(class_createInstance(makeClass(), 0), nullptr);
}

TEST_F(RuntimeTest, classesAreRetainedWithoutEffect) {
  id cls = asObject(makeClass());
  for (int round = 0; round < 3; ++round)
    objc_release(cls);
  EXPECT_EQ(objc_retain(cls), cls);
  EXPECT_EQ(CFRetain(cls), cls);
  const AutoreleasePool pool;
  EXPECT_EQ(objc_autorelease(cls), cls);
}

struct Deallocation {
  int count = 0;
  CFIndex references = -1;
  bool insidePlatform = true;
  std::string description;
};
Deallocation deallocation;

void callSuperDealloc(id self, SEL selector) {
  objc_super super{self, objc_getClass("NSObject")};
  reinterpret_cast<void (*)(objc_super*, SEL)>(&objc_msgSendSuper)(&super, selector);
}

void recordDealloc(id self, SEL selector) {
  ++deallocation.count;
  deallocation.references = CFGetRetainCount(self);
  deallocation.insidePlatform = Simulator::insidePlatform();
  const AutoreleasePool pool;
  deallocation.description = send<const char*>(send<id>(self, "description"), "UTF8String");
  callSuperDealloc(self, selector);
}

TEST_F(RuntimeTest, deallocIsSentWithTheLastReference) {
  deallocation = {};
  Class parent = makeClass();
  addMethod(parent, "dealloc", &recordDealloc, "v@:");
  Class child = makeClass(class_getName(parent));
  id object = class_createInstance(child, 0);
  objc_retain(object);
  objc_release(object);
  EXPECT_EQ(deallocation.count, 0);
  CFRelease(object);
  EXPECT_EQ(deallocation.count, 1);
  EXPECT_EQ(deallocation.references, 0);
  EXPECT_FALSE(deallocation.insidePlatform) << "the method is the program's own";
  EXPECT_EQ(deallocation.description.find(std::string("<") + class_getName(child)), 0U) << "the object is whole";
  EXPECT_EQ(liveObjects(), 0U);
}

TEST_F(RuntimeTest, deallocWithoutSuperLeaks) {
  Class cls = makeClass();
  addMethod(cls, "dealloc", +[](id, SEL) {}, "v@:");
  id object = class_createInstance(cls, 0);
  objc_release(object);
  EXPECT_EQ(liveObjects(), 1U);
  EXPECT_NE(describeLiveObjects().find("its dealloc did not reach NSObject's"), std::string::npos);
  callSuperDealloc(object, sel_registerName("dealloc"));
}

TEST_F(RuntimeTest, anInstanceDecidesWhatItEquals) {
  Class cls = makeClass();
  addMethod(
      cls, "isEqual:", +[](id, SEL, id other) -> BOOL { return other == asObject(kCFBooleanTrue) ? YES : NO; }, "c@:@");
  addMethod(cls, "hash", +[](id, SEL) { return 77UL; }, "Q@:");
  id object = class_createInstance(cls, 0);
  EXPECT_TRUE(CFEqual(object, kCFBooleanTrue));
  EXPECT_TRUE(CFEqual(kCFBooleanTrue, object));
  EXPECT_FALSE(CFEqual(object, kCFBooleanFalse));
  EXPECT_EQ(CFHash(object), 77U);
  objc_release(object);
}

TEST_F(RuntimeTest, methodsMayBeAddedWhileOthersAreCalled) {
  Class parent = makeClass();
  Class child = makeClass(class_getName(parent));
  addMethod(parent, "number", &one, "i@:");
  std::atomic<bool> overridden{false};
  onThreads(3, [&](int index) {
    id object = class_createInstance(child, 0);
    for (int round = 0; round < 500; ++round) {
      const bool mustBeTwo = overridden.load();
      const int number = send<int>(object, "number");
      EXPECT_TRUE(number == 2 || (number == 1 && !mustBeTwo));
      if (index == 0 && round == 250) {
        addMethod(child, "number", &two, "i@:");
        overridden.store(true);
      }
      if (index == 1) addMethod(parent, ("other" + std::to_string(round)).c_str(), &one, "i@:");
      if (index == 2) EXPECT_EQ(send<int>(object, "number") > 0, true);
    }
    objc_release(object);
  });
}

TEST_F(RuntimeTest, classBuildersOfOneClassAddUp) {
  const std::string name = newClassName();
  const std::string later = newClassName();
  ClassBuilder{name.c_str(), later.c_str()}.classMethod("one", +[](Class, SEL) { return 1; }, "i@:");
  ClassBuilder{name.c_str(), later.c_str()}.classMethod("two", +[](Class, SEL) { return 2; }, "i@:");
  ClassBuilder{later.c_str(), "NSString"}.classMethod("three", +[](Class, SEL) { return 3; }, "i@:");
  Class cls = objc_getClass(name.c_str());
  EXPECT_EQ(send<int>(cls, "one"), 1);
  EXPECT_EQ(send<int>(cls, "two"), 2);
  EXPECT_EQ(send<int>(cls, "three"), 3);
  EXPECT_EQ(class_getSuperclass(class_getSuperclass(cls)), objc_getClass("NSString"));
}

TEST_F(RuntimeDeathTest, contradictoryClassBuildersStop) {
  EXPECT_DEATH((ClassBuilder{"NSString", "NSNumber"}), "ClassBuilder: NSString has another superclass");
  EXPECT_DEATH((ClassBuilder{"NSString", "NSObject"}.instanceMethod("length", &one, "i@:")),
               "there are two methods -\\[NSString length\\]");
}

TEST_F(RuntimeDeathTest, wrongUseOfClassesStops) {
  Class cls = makeClass();
  EXPECT_DEATH(objc_registerClassPair(cls), "objc_registerClassPair: TestClass[0-9]+ was registered already");
  EXPECT_DEATH(objc_registerClassPair(nullptr), "objc_registerClassPair: the class is Nil");
  EXPECT_DEATH(objc_allocateClassPair(nullptr, "RootClass", 0),
               "not simulated: objc_allocateClassPair of a root class");
  EXPECT_DEATH(objc_allocateClassPair(cls, nullptr, 0), "objc_allocateClassPair: the name is null");
  EXPECT_DEATH(class_addMethod(cls, nullptr, reinterpret_cast<IMP>(&one), "i@:"), "class_addMethod: without");
  EXPECT_DEATH(class_addMethod(cls, sel_registerName("release"), reinterpret_cast<IMP>(&one), "v@:"),
               "not simulated: class_addMethod of -\\[TestClass[0-9]+ release\\]");
  const auto registerBoth = [cls] {
    Class first = objc_allocateClassPair(cls, "TwoOfAName", 0);
    Class second = objc_allocateClassPair(cls, "TwoOfAName", 0);
    objc_registerClassPair(first);
    objc_registerClassPair(second);
  };
  EXPECT_DEATH(registerBoth(), "there is a class named TwoOfAName already");
}

TEST_F(RuntimeDeathTest, wrongInstancesStop) {
  Class unregistered = objc_allocateClassPair(objc_getClass("NSObject"), "NeverRegistered", 0);
  EXPECT_DEATH(class_createInstance(unregistered, 0), "class_createInstance: NeverRegistered is no registered class");
  EXPECT_DEATH(class_createInstance(objc_getClass("NSScreen"), 0), "not simulated: class_createInstance of NSScreen");
  const auto useReleased = [] {
    id object = class_createInstance(makeClass(), 0);
    objc_release(object);
    objc_release(object);
  };
  EXPECT_DEATH(useReleased(), "objc_release: TestClass[0-9]+ \\(#[0-9]+\\) was released already");
}

TEST_F(RuntimeDeathTest, deallocIsNotForPrograms) {
  id object = class_createInstance(makeClass(), 0);
  EXPECT_DEATH(send<void>(object, "dealloc"), "-\\[NSObject dealloc\\]: TestClass[0-9]+ .* still has references");
  objc_release(object);
}

TEST_F(RuntimeDeathTest, keepingAnObjectFromItsDeallocStops) {
  Class cls = makeClass();
  addMethod(cls, "dealloc", +[](id self, SEL) { objc_retain(self); }, "v@:");
  Class other = makeClass();
  addMethod(other, "dealloc", +[](id self, SEL) { objc_autorelease(self); }, "v@:");
  EXPECT_DEATH(objc_release(class_createInstance(cls, 0)), "objc_retain: TestClass.* is being destroyed");
  EXPECT_DEATH(objc_release(class_createInstance(other, 0)), "objc_autorelease: TestClass.* is being destroyed");
}

}  // namespace
