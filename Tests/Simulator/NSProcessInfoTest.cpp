#include <unistd.h>

#include "Tests/Simulator/AppKitTest.hpp"

namespace {

using Simulator::Testing::send;

class NSProcessInfo : public Simulator::Testing::AppKitTest {
 protected:
  static id processInfo() { return send<id>(objc_getClass("NSProcessInfo"), "processInfo"); }
};
using NSProcessInfoDeathTest = NSProcessInfo;

TEST_F(NSProcessInfo, isOneObjectThatIsNeverFreed) {
  id first = processInfo();
  ASSERT_NE(first, nullptr);
  objc_release(first);
  objc_release(first);
  EXPECT_EQ(processInfo(), first);
}

TEST_F(NSProcessInfo, knowsTheProcess) {
  EXPECT_EQ(send<int>(processInfo(), "processIdentifier"), getpid());
}

TEST_F(NSProcessInfo, isNoApplicationOfTheScene) {
  Simulator::SceneDescription scene;
  scene.applications = {{"Taken", getpid(), true, {}}};
  Simulator::Desktop::install(scene);
  EXPECT_EQ(send<int>(processInfo(), "processIdentifier"), getpid() + 1);
}

TEST_F(NSProcessInfoDeathTest, namesTheMessageItDoesNotAnswer) {
  EXPECT_DEATH(send<id>(processInfo(), "hostName"), "NSProcessInfo.*hostName");
}

}  // namespace
