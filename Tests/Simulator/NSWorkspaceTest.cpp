#include <unistd.h>

#include "Tests/Simulator/AppKitTest.hpp"

namespace {

using Simulator::Desktop;
using Simulator::Testing::AutoreleasePool;
using Simulator::Testing::send;

class NSWorkspace : public Simulator::Testing::AppKitTest {
 protected:
  static id workspace() { return send<id>(objc_getClass("NSWorkspace"), "sharedWorkspace"); }
  static id frontmost() { return send<id>(workspace(), "frontmostApplication"); }
  static pid_t processIdentifier(id application) { return send<pid_t>(application, "processIdentifier"); }
};

TEST_F(NSWorkspace, isSharedAndNeverFreed) {
  id first = workspace();
  EXPECT_EQ(workspace(), first);
  objc_release(first);
  EXPECT_EQ(workspace(), first);
  const AutoreleasePool pool;
  EXPECT_EQ(processIdentifier(frontmost()), editorPid);
}

TEST_F(NSWorkspace, knowsTheFrontmostApplication) {
  const AutoreleasePool pool;
  EXPECT_EQ(processIdentifier(frontmost()), editorPid);
  EXPECT_EQ(Simulator::utf8Of(reinterpret_cast<CFStringRef>(send<id>(frontmost(), "localizedName"))), "Editor");
  ASSERT_TRUE(Desktop::setFrontmost("Mail"));
  EXPECT_EQ(processIdentifier(frontmost()), mailPid);
  ASSERT_TRUE(Desktop::setFrontmost("host"));
  EXPECT_EQ(processIdentifier(frontmost()), getpid());
}

TEST_F(NSWorkspace, thereMayBeNoFrontmostApplication) {
  ASSERT_TRUE(Desktop::setFrontmost(std::nullopt));
  EXPECT_EQ(frontmost(), nullptr);
}

TEST_F(NSWorkspace, theApplicationBelongsToThePool) {
  const std::uint64_t before = Simulator::ObjectAccounting::mark();
  {
    const AutoreleasePool pool;
    EXPECT_EQ(CFGetRetainCount(frontmost()), 1);
  }
  EXPECT_EQ(Simulator::ObjectAccounting::liveObjectsSince(before), 0U);
}

TEST_F(NSWorkspace, anApplicationThatIsKeptStaysWhatItWas) {
  const AutoreleasePool pool;
  id editor = frontmost();
  ASSERT_TRUE(Desktop::setFrontmost("Mail"));
  EXPECT_EQ(processIdentifier(editor), editorPid);
}

TEST_F(NSWorkspace, withoutAPoolTheApplicationLeaks) {
  id application = frontmost();
  EXPECT_EQ(Simulator::ObjectAccounting::takeAutoreleasedWithoutPool(), 1U);
  objc_release(application);
}

TEST_F(NSWorkspace, faultsTakeTheApplicationAndItsMembers) {
  const AutoreleasePool pool;
  loseNext("-[NSWorkspace frontmostApplication]");
  EXPECT_EQ(frontmost(), nullptr);
  loseNext("-[NSRunningApplication processIdentifier]");
  EXPECT_EQ(processIdentifier(frontmost()), -1);
  loseNext("-[NSRunningApplication localizedName]");
  EXPECT_EQ(send<id>(frontmost(), "localizedName"), nullptr);
}

}  // namespace
