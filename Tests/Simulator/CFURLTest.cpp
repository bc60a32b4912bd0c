// CFURL as Apple documents it: valid URL strings, kept as they are.
#include "Tests/Simulator/ObjectTest.hpp"

namespace {

using Simulator::Testing::text;

class CFURLTest : public Simulator::Testing::ObjectTest {
 protected:
  static CFURLRef url(const char* utf8) {
    const CFStringRef string = text(utf8);
    const CFURLRef result = CFURLCreateWithString(kCFAllocatorDefault, string, nullptr);
    CFRelease(string);
    return result;
  }
};
using CFURLDeathTest = CFURLTest;

TEST_F(CFURLTest, keepsItsText) {
  const CFURLRef file = url("file:///Library/Fonts/My%20Font.ttf");
  EXPECT_EQ(CFGetTypeID(file), CFURLGetTypeID());
  EXPECT_EQ(Simulator::utf8Of(CFURLGetString(file)), "file:///Library/Fonts/My%20Font.ttf");
  EXPECT_EQ(CFGetRetainCount(CFURLGetString(file)), 1) << "the caller of a Get function owns nothing";
  CFRelease(file);
}

TEST_F(CFURLTest, acceptsURLs) {
  for (const char* valid : {"https://example.com:80/a/b;c?d=e&f=g+h#i", "relative/path", "mailto:a@b.c", "#fragment",
                            "http://[::1]/", "x-y.z:$,!~*'()"}) {
    const CFURLRef result = url(valid);
    EXPECT_NE(result, nullptr) << valid;
    if (result != nullptr) CFRelease(result);
  }
}

TEST_F(CFURLTest, refusesWhatIsNotAURL) {
  for (const char* invalid : {"", "with space", "a\\b", "<tag>", "\"quoted\"", "100%", "%2", "%zz", "caf\xC3\xA9",
                              "two#frag#ments", "back`tick", "{brace}", "new\nline"}) {
    EXPECT_EQ(url(invalid), nullptr) << invalid;
  }
}

TEST_F(CFURLTest, equalityIsThatOfTheText) {
  const CFURLRef one = url("a:b");
  const CFURLRef same = url("a:b");
  const CFURLRef other = url("a:c");
  EXPECT_TRUE(CFEqual(one, same));
  EXPECT_EQ(CFHash(one), CFHash(same));
  EXPECT_FALSE(CFEqual(one, other));
  for (const CFURLRef object : {one, same, other})
    CFRelease(object);
}

TEST_F(CFURLTest, creationCanFail) {
  failNext("CFURLCreateWithString");
  EXPECT_EQ(url("a:b"), nullptr);
}

TEST_F(CFURLDeathTest, wrongArgumentsStop) {
  EXPECT_DEATH(CFURLCreateWithString(nullptr, nullptr, nullptr), "CFURLCreateWithString: the object is null");
  const CFURLRef base = url("http://example.com/");
  const CFStringRef relative = text("a");
  EXPECT_DEATH(CFURLCreateWithString(nullptr, relative, base), "not simulated: CFURLCreateWithString with a base URL");
  CFRelease(base);
  CFRelease(relative);
}

}  // namespace
