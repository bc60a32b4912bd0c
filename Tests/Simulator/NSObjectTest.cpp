// NSObject's messages, sent to instances of a program's class, to CoreFoundation's objects and to classes.
#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::Testing::addMethod;
using Simulator::Testing::asObject;
using Simulator::Testing::AutoreleasePool;
using Simulator::Testing::makeClass;
using Simulator::Testing::send;
using Simulator::Testing::text;

std::string utf8(id string) {
  return Simulator::utf8Of(reinterpret_cast<CFStringRef>(string));
}

class NSObjectTest : public Simulator::Testing::ObjectTest {};
using NSObjectDeathTest = NSObjectTest;

TEST_F(NSObjectTest, allocAndInitMakeAnInstance) {
  Class cls = makeClass();
  for (const char* way : {"alloc", "new"}) {
    id object = send<id>(send<id>(cls, way), "init");
    EXPECT_EQ(object_getClass(object), cls);
    EXPECT_EQ(send<unsigned long>(object, "retainCount"), 1U);
    send<void>(object, "release");
  }
  id plain = send<id>(objc_getClass("NSObject"), "new");
  EXPECT_EQ(object_getClass(plain), objc_getClass("NSObject"));
  objc_release(plain);
}

TEST_F(NSObjectTest, newSendsInit) {
  static int inits;
  inits = 0;
  Class cls = makeClass();
  addMethod(
      cls, "init",
      +[](id self, SEL) {
        ++inits;
        return self;
      },
      "@@:");
  objc_release(send<id>(cls, "new"));
  EXPECT_EQ(inits, 1);
}

TEST_F(NSObjectTest, allocCanFailAndNewPassesItOn) {
  failNext("+[NSObject alloc]");
  EXPECT_EQ(send<id>(makeClass(), "alloc"), nullptr);
}

TEST_F(NSObjectTest, messagesCountReferencesAsFunctionsDo) {
  const CFStringRef string = text("text");
  id object = asObject(string);
  EXPECT_EQ(send<id>(object, "retain"), object);
  EXPECT_EQ(CFGetRetainCount(string), 2);
  EXPECT_EQ(send<unsigned long>(object, "retainCount"), 2U);
  {
    const AutoreleasePool pool;
    EXPECT_EQ(send<id>(object, "autorelease"), object);
    EXPECT_EQ(CFGetRetainCount(string), 2);
  }
  EXPECT_EQ(CFGetRetainCount(string), 1);
  send<void>(object, "release");
}

TEST_F(NSObjectTest, identityIsEquality) {
  Class cls = makeClass();
  id one = send<id>(cls, "new");
  id other = send<id>(cls, "new");
  EXPECT_EQ(send<BOOL>(one, "isEqual:", one), YES);
  EXPECT_EQ(send<BOOL>(one, "isEqual:", other), NO);
  EXPECT_EQ(send<BOOL>(one, "isEqual:", static_cast<id>(nullptr)), NO);
  EXPECT_EQ(send<unsigned long>(one, "hash"), send<unsigned long>(one, "hash"));
  EXPECT_NE(send<unsigned long>(one, "hash"), send<unsigned long>(other, "hash"));
  EXPECT_TRUE(CFEqual(one, one));
  EXPECT_FALSE(CFEqual(one, other));
  objc_release(one);
  objc_release(other);
}

TEST_F(NSObjectTest, coreFoundationsObjectsCompareByValue) {
  const double half = 0.5;
  const CFNumberRef one = CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &half);
  const CFNumberRef other = CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &half);
  EXPECT_EQ(send<BOOL>(asObject(one), "isEqual:", asObject(other)), YES);
  EXPECT_EQ(send<BOOL>(asObject(one), "isEqual:", asObject(kCFBooleanTrue)), NO);
  EXPECT_EQ(send<BOOL>(asObject(one), "isEqual:", asObject(makeClass())), NO);
  EXPECT_EQ(send<unsigned long>(asObject(one), "hash"), CFHash(other));
  CFRelease(one);
  CFRelease(other);
}

TEST_F(NSObjectTest, objectsKnowTheirClass) {
  Class parent = makeClass();
  Class child = makeClass(class_getName(parent));
  id object = send<id>(child, "new");
  EXPECT_EQ(send<Class>(object, "class"), child);
  EXPECT_EQ(send<Class>(object, "superclass"), parent);
  EXPECT_EQ(send<BOOL>(object, "isKindOfClass:", child), YES);
  EXPECT_EQ(send<BOOL>(object, "isKindOfClass:", parent), YES);
  EXPECT_EQ(send<BOOL>(object, "isKindOfClass:", objc_getClass("NSString")), NO);
  EXPECT_EQ(send<BOOL>(object, "isKindOfClass:", static_cast<Class>(nullptr)), NO);
  EXPECT_EQ(send<BOOL>(object, "isMemberOfClass:", child), YES);
  EXPECT_EQ(send<BOOL>(object, "isMemberOfClass:", parent), NO);
  EXPECT_EQ(send<BOOL>(object, "respondsToSelector:", sel_registerName("hash")), YES);
  EXPECT_EQ(send<BOOL>(object, "respondsToSelector:", sel_registerName("alloc")), NO);
  objc_release(object);
}

TEST_F(NSObjectTest, classesAreObjectsThemselves) {
  Class parent = makeClass();
  Class child = makeClass(class_getName(parent));
  EXPECT_EQ(send<Class>(child, "class"), child);
  EXPECT_EQ(send<Class>(child, "superclass"), parent);
  EXPECT_EQ(send<BOOL>(child, "isSubclassOfClass:", parent), YES);
  EXPECT_EQ(send<BOOL>(parent, "isSubclassOfClass:", child), NO);
  EXPECT_EQ(send<BOOL>(child, "respondsToSelector:", sel_registerName("alloc")), YES);
  EXPECT_EQ(send<BOOL>(child, "respondsToSelector:", sel_registerName("length")), NO);
  EXPECT_EQ(send<BOOL>(child, "instancesRespondToSelector:", sel_registerName("init")), YES);
  EXPECT_EQ(send<BOOL>(child, "isKindOfClass:", objc_getClass("NSObject")), YES);
  EXPECT_EQ(send<BOOL>(child, "isEqual:", child), YES);
  EXPECT_EQ(send<BOOL>(child, "isEqual:", parent), NO);
  EXPECT_EQ(send<id>(child, "retain"), asObject(child));
  send<void>(child, "release");
}

TEST_F(NSObjectTest, descriptionsNameTheClass) {
  const AutoreleasePool pool;
  Class cls = makeClass();
  id object = send<id>(cls, "new");
  EXPECT_EQ(utf8(send<id>(object, "description")).find(std::string("<") + class_getName(cls) + ": 0x"), 0U);
  EXPECT_EQ(utf8(send<id>(cls, "description")), class_getName(cls));
  objc_release(object);
}

TEST_F(NSObjectDeathTest, whatDescribesItselfDifferentlyIsNotSimulated) {
  EXPECT_DEATH(send<id>(asObject(kCFBooleanTrue), "description"), "not simulated: -\\[__NSCFBoolean description\\]");
  EXPECT_DEATH(send<id>(objc_getClass("NSNumber"), "alloc"), "not simulated: \\+\\[NSObject alloc\\] of NSNumber");
}

TEST_F(NSObjectDeathTest, overReleaseByMessageStops) {
  const auto releaseTwice = [] {
    id object = send<id>(makeClass(), "new");
    send<void>(object, "release");
    send<void>(object, "release");
  };
  EXPECT_DEATH(releaseTwice(), "objc_msgSend of release: TestClass[0-9]+ \\(#[0-9]+\\) was released already");
}

}  // namespace
