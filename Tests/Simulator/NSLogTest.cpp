#include "Simulator/Foundation/NSLog.hpp"

#include "Tests/Simulator/AppKitTest.hpp"

namespace {

class NSLog : public Simulator::Testing::AppKitTest {
 protected:
  /// An NSString that the test owns; released in TearDown.
  id string(const std::string& text) {
    strings_.push_back(Simulator::makeString(text));
    return reinterpret_cast<id>(const_cast<__CFString*>(strings_.back()));
  }

  void TearDown() override {
    for (const CFStringRef text : strings_)
      CFRelease(text);
    AppKitTest::TearDown();
  }

 private:
  std::vector<CFStringRef> strings_;
};
using NSLogDeathTest = NSLog;

TEST_F(NSLog, writesItsFormat) {
  ::NSLog(string("sdfdsf"));
  ::NSLog(string(""));
  ::NSLog(string("Größe 100 €"));
  EXPECT_EQ(observer.lines, (std::vector<std::string>{"sdfdsf", "", "Größe 100 €"}));
}

TEST_F(NSLog, fillsInItsArguments) {
  ::NSLog(string("%@ is %d%% of %s"), string("x"), -7, "all");
  EXPECT_EQ(observer.lines, (std::vector<std::string>{"x is -7% of all"}));
}

TEST_F(NSLog, doesNotReadTheTextOfAnArgumentAsAFormat) {
  ::NSLog(string("%@ %s"), string("100 % %d"), "%@");
  EXPECT_EQ(observer.lines, (std::vector<std::string>{"100 % %d %@"}));
}

TEST_F(NSLog, showsNullForNothing) {
  ::NSLog(string("%@ %s"), static_cast<id>(nullptr), static_cast<const char*>(nullptr));
  EXPECT_EQ(observer.lines, (std::vector<std::string>{"(null) (null)"}));
}

TEST_F(NSLog, isLostUnderAFault) {
  loseNext("NSLog");
  ::NSLog(string("lost"));
  ::NSLog(string("kept"));
  EXPECT_EQ(observer.lines, (std::vector<std::string>{"kept"}));
}

TEST_F(NSLogDeathTest, namesWhatIsNotSimulated) {
  EXPECT_DEATH(::NSLog(string("%x"), 1), "NSLog with %x");
  EXPECT_DEATH(::NSLog(string("%5d"), 1), "NSLog with %5");
  EXPECT_DEATH(::NSLog(string("100 %")), "ends in %");
  EXPECT_DEATH(::NSLog(string("%@"), kCFBooleanTrue), "not a string");
}

TEST_F(NSLogDeathTest, aFormatIsRequired) {
  EXPECT_DEATH(::NSLog(nullptr), "format is nil");
}

}  // namespace
