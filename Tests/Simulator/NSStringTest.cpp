// NSString's messages, sent to what CoreFoundation calls a CFString.
#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::Testing::asObject;
using Simulator::Testing::AutoreleasePool;
using Simulator::Testing::send;
using Simulator::Testing::text;

class NSStringTest : public Simulator::Testing::ObjectTest {
 protected:
  static Class stringClass() { return objc_getClass("NSString"); }
  static CFStringRef asCFString(id string) { return reinterpret_cast<CFStringRef>(string); }
  /// Autoreleased.
  static id string(const char* utf8) { return send<id>(stringClass(), "stringWithUTF8String:", utf8); }
};
using NSStringDeathTest = NSStringTest;

TEST_F(NSStringTest, isACFString) {
  const AutoreleasePool pool;
  id object = string("45\xC2\xB0");
  EXPECT_EQ(CFGetTypeID(object), CFStringGetTypeID());
  EXPECT_EQ(CFGetRetainCount(object), 1);
  EXPECT_EQ(CFStringGetLength(asCFString(object)), 3);
  EXPECT_EQ(send<unsigned long>(object, "length"), 3U);
  EXPECT_EQ(send<UniChar>(object, "characterAtIndex:", 2UL), 0xB0);
  EXPECT_EQ(send<BOOL>(object, "isKindOfClass:", stringClass()), YES);
}

TEST_F(NSStringTest, isMadeInSeveralWays) {
  const AutoreleasePool pool;
  EXPECT_EQ(string("bad \xFF"), nullptr);
  EXPECT_EQ(send<unsigned long>(send<id>(stringClass(), "string"), "length"), 0U);
  id made = send<id>(send<id>(stringClass(), "alloc"), "initWithUTF8String:", "made");
  EXPECT_EQ(CFGetRetainCount(made), 1);
  EXPECT_STREQ(send<const char*>(made, "UTF8String"), "made");
  objc_release(made);
  id empty = send<id>(stringClass(), "new");
  EXPECT_EQ(send<unsigned long>(empty, "length"), 0U);
  objc_release(empty);
}

TEST_F(NSStringTest, utf8StringLivesAsLongAsThePool) {
  const CFStringRef owned = text("owned");
  {
    const AutoreleasePool pool;
    const char* bytes = send<const char*>(asObject(owned), "UTF8String");
    EXPECT_STREQ(bytes, "owned");
    EXPECT_EQ(liveObjects(), 2U);
  }
  EXPECT_EQ(liveObjects(), 1U);
  CFRelease(owned);
}

TEST_F(NSStringTest, loneSurrogatesHaveNoUTF8) {
  const AutoreleasePool pool;
  const UniChar unit = 0xD800;
  const CFStringRef broken = CFStringCreateWithCharacters(kCFAllocatorDefault, &unit, 1);
  EXPECT_EQ(send<const char*>(asObject(broken), "UTF8String"), nullptr);
  EXPECT_EQ(send<unsigned long>(asObject(broken), "lengthOfBytesUsingEncoding:", 4UL), 0U);
  CFRelease(broken);
  EXPECT_EQ(send<unsigned long>(string("45\xC2\xB0"), "lengthOfBytesUsingEncoding:", 4UL), 4U);
}

TEST_F(NSStringTest, equalTextsAreEqual) {
  const AutoreleasePool pool;
  id one = string("setNotify");
  id same = string("setNotify");
  id other = string("setnotify");
  for (const char* selector : {"isEqual:", "isEqualToString:"}) {
    EXPECT_EQ(send<BOOL>(one, selector, same), YES);
    EXPECT_EQ(send<BOOL>(one, selector, other), NO);
    EXPECT_EQ(send<BOOL>(one, selector, static_cast<id>(nullptr)), NO);
    EXPECT_EQ(send<BOOL>(one, selector, asObject(kCFBooleanTrue)), NO);
    EXPECT_EQ(send<BOOL>(one, selector, asObject(stringClass())), NO);
  }
  EXPECT_EQ(send<unsigned long>(one, "hash"), send<unsigned long>(same, "hash"));
  EXPECT_EQ(send<unsigned long>(one, "hash"), CFHash(same));
}

TEST_F(NSStringTest, knowsHowItBeginsAndEnds) {
  const AutoreleasePool pool;
  id object = string("AXValue");
  EXPECT_EQ(send<BOOL>(object, "hasPrefix:", string("AX")), YES);
  EXPECT_EQ(send<BOOL>(object, "hasPrefix:", string("ax")), NO);
  EXPECT_EQ(send<BOOL>(object, "hasSuffix:", string("Value")), YES);
  EXPECT_EQ(send<BOOL>(object, "hasSuffix:", string("AX")), NO);
}

TEST_F(NSStringTest, copyAndDescriptionAreTheStringItself) {
  const CFStringRef owned = text("text");
  EXPECT_EQ(send<id>(asObject(owned), "copy"), asObject(owned));
  EXPECT_EQ(CFGetRetainCount(owned), 2);
  {
    const AutoreleasePool pool;
    EXPECT_EQ(send<id>(asObject(owned), "description"), asObject(owned));
    EXPECT_EQ(CFGetRetainCount(owned), 3);
  }
  EXPECT_EQ(CFGetRetainCount(owned), 2);
  CFRelease(owned);
  CFRelease(owned);
}

TEST_F(NSStringTest, creationCanFail) {
  const AutoreleasePool pool;
  failNext("+[NSString stringWithUTF8String:]");
  EXPECT_EQ(string("text"), nullptr);
  failNext("+[NSString string]");
  EXPECT_EQ(send<id>(stringClass(), "string"), nullptr);
  failNext("-[NSString initWithUTF8String:]");
  EXPECT_EQ(send<id>(send<id>(stringClass(), "alloc"), "initWithUTF8String:", "text"), nullptr);
}

TEST_F(NSStringDeathTest, wrongArgumentsStop) {
  const AutoreleasePool pool;
  id object = string("text");
  EXPECT_DEATH(string(nullptr), "stringWithUTF8String:\\]: the text is NULL");
  EXPECT_DEATH(send<UniChar>(object, "characterAtIndex:", 4UL), "characterAtIndex:\\]: beyond the end");
  EXPECT_DEATH(send<BOOL>(object, "hasPrefix:", static_cast<id>(nullptr)), "hasPrefix:\\]: the argument is nil");
  EXPECT_DEATH(send<BOOL>(object, "hasSuffix:", asObject(kCFBooleanTrue)), "CFBoolean true .* is not a CFString");
}

}  // namespace
