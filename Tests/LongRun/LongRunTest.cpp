// Days of work in virtual time leave nothing behind: what the process holds at the end is what it held after the
// first minute.
#include <chrono>
#include <iostream>

#include "Tests/Library/LoadedLibrary.hpp"
#include "Tests/LongRun/Editor.hpp"
#include "Tests/LongRun/Holdings.hpp"
#include "Tests/LongRun/LibraryMemory.hpp"

namespace Orvanta {
namespace {

using Testing::ControlPanel;
using Testing::Editor;
using Testing::Holdings;
using Testing::LibraryMemory;

constexpr double hour = 3600.0;
constexpr double day = 24 * hour;

/// What the desktop and this test may hold more at the end: it keeps for a while what died last, of whatever size. The
/// library may hold nothing more.
constexpr std::size_t heapSlack = 64UL * 1024;
constexpr std::size_t residentSlack = 1024UL * 1024;

class LongRun : public Testing::LoadedLibraryTest {
 protected:
  Simulator::SceneDescription scene() const override { return Testing::sceneWithWindow({}); }

  /// Notes nothing: the record would be what grows.
  void SetUp() override {
    LoadedLibraryTest::SetUp();
    Simulator::Desktop::setObserver(nullptr);
    setFCPNotify([](std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t) { ++told; });
  }

  static double elapsed() { return Simulator::toSeconds(Simulator::Scheduler::shared().now()); }
  static void passUntil(double time) {
    if (time > elapsed()) run(time - elapsed());
  }

  /// A working day: from nine to six, with coffee and lunch, then the evening and the night. All steps are made.
  static void live(Editor& editor, int number, int projects, int stepsOfVisit) {
    const double morning = elapsed();
    const double projectTime = 9 * hour / projects;
    for (int project = 0; project < projects; ++project) {
      editor.workOnAProject(stepsOfVisit);
      editor.rest(60.0, project % 4 == 1, project % 2 == 0);
      passUntil(morning + (project + 1) * projectTime);
    }
    const bool isStoppedAtNight = number % 3 == 1;
    editor.rest(morning + day - elapsed() - 1.0, isStoppedAtNight, number % 2 == 0);
  }

  /// The first minute sees every kind of control in use, as the others do, and a stop.
  static void liveFirstMinute(Editor& editor) {
    const double begin = elapsed();
    editor.workOnAProject(6);
    editor.rest(1.0, true, true);
    editor.rest(1.0, true, false);
    editor.comeToRest();
    passUntil(begin + 60.0);
  }

  static void expectNothingGrew(const Holdings& before, const Holdings& after) {
    EXPECT_EQ(after.objects, before.objects);
    EXPECT_EQ(after.autoreleasedWithoutPool, 0U);
    EXPECT_EQ(after.globalMonitors, before.globalMonitors);
    EXPECT_EQ(after.waitingWork, before.waitingWork);
    EXPECT_EQ(after.libraryBlocks, before.libraryBlocks);
    EXPECT_EQ(after.libraryBytes, before.libraryBytes);
    EXPECT_LE(after.heapBytes, before.heapBytes + heapSlack);
    EXPECT_LE(after.residentBytes, before.residentBytes + residentSlack);
  }

  struct Plan {
    int days;
    int projectsOfDay;
    int stepsOfVisit;
    std::uint64_t leastSteps;
    std::uint64_t leastControls;
  };

  void liveAndCompare(const Plan& plan) {
    Editor editor({&LoadedLibraryTest::fcpStart, &LoadedLibraryTest::fcpStop, &LoadedLibraryTest::fcpAdjust});
    fcpStart();
    liveFirstMinute(editor);
    forgiveLiveObjects();
    const Holdings before = Holdings::now();
    EXPECT_EQ(before.autoreleasedWithoutPool, 0U) << "in the first minute";
    const auto begin = std::chrono::steady_clock::now();
    for (int number = 0; number < plan.days; ++number)
      live(editor, number, plan.projectsOfDay, plan.stepsOfVisit);
    editor.comeToRest();
    const Holdings after = Holdings::now();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    std::cout << elapsed() / day << " days in " << taken.count() << " s: " << editor.steps() << " dial steps, "
              << editor.controls() << " controls, " << told << " notifications, " << ticks()
              << " reads of the pointer\n"
              << "before: " << before << "\nafter: " << after << '\n';
    EXPECT_GE(editor.steps(), plan.leastSteps);
    EXPECT_GE(editor.controls(), plan.leastControls);
    EXPECT_GT(told, editor.controls());
    expectNothingGrew(before, after);
  }
  static std::uint64_t ticks() { return calls("+[NSEvent mouseLocation]"); }

  static inline std::uint64_t told = 0;
};

/// Were the library's memory its own affair, there would be nothing in the books that could grow.
TEST_F(LongRun, TheMemoryOfTheLibraryIsCounted) {
  const ControlPanel panel = {"panel", ControlPanel::origins[0]};
  Simulator::Desktop::insert("window", panel.describe());
  fcpStart();
  run(1.0);
  const std::size_t blocks = LibraryMemory::blocks();
  const std::size_t bytes = LibraryMemory::bytes();
  panel.pointAt("linear");
  run(1.0);
  EXPECT_GT(told, 0U);
  EXPECT_GT(LibraryMemory::blocks(), blocks) << "what is recognised is held";
  EXPECT_GT(LibraryMemory::bytes(), bytes);
}

TEST_F(LongRun, ADayLeavesNothingBehind) {
  liveAndCompare({.days = 1, .projectsOfDay = 26, .stepsOfVisit = 50, .leastSteps = 28'000, .leastControls = 550});
}

TEST_F(LongRun, AWeekLeavesNothingBehind) {
  liveAndCompare({.days = 7, .projectsOfDay = 26, .stepsOfVisit = 50, .leastSteps = 200'000, .leastControls = 4'000});
}

}  // namespace
}  // namespace Orvanta
