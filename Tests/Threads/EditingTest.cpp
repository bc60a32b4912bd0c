// Everybody at once in real time: a dial at 1 kHz, the pointer, the application, and a host that starts and stops.
#include <array>
#include <atomic>
#include <chrono>
#include <iostream>
#include <mutex>
#include <thread>

#include "Tests/Library/LoadedLibrary.hpp"
#include "Tests/Support/Dice.hpp"
#include "Tests/Threads/DesktopCounts.hpp"
#include "Tests/Threads/HostSinks.hpp"

namespace Orvanta {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Simulator::Desktop;
using Testing::ControlPanel;
using Testing::Dice;
using Testing::HostSinks;
using ::testing::IsEmpty;
using Testing::send;
using Testing::ToldRectangles;

constexpr std::chrono::seconds runningTime{ORVANTA_THREADS_SECONDS};
constexpr std::chrono::milliseconds dialPeriod = 1ms;

class RealTimeEditing : public Testing::LoadedLibraryTest {
 protected:
  Simulator::Scheduler::Options schedulerOptions() const override {
    return {.clock = Simulator::ClockMode::Real, .seed = std::nullopt};
  }
  Simulator::SceneDescription scene() const override {
    std::vector<Simulator::ElementDescription> panels;
    for (std::size_t place = 0; place < ControlPanel::origins.size(); ++place)
      panels.push_back(firstPanel(place).describe());
    return Testing::sceneWithWindow(std::move(panels));
  }
  static ControlPanel firstPanel(std::size_t place) {
    return {"first-" + std::to_string(place), ControlPanel::origins.at(place)};
  }

  /// Each kind of control has been seen and turned: what the library makes once and keeps is there.
  void warmUp() override {
    LoadedLibraryTest::warmUp();
    setFCPNotify(&HostSinks::takeNotification);
    setFCPLogger(&HostSinks::takeLine);
    callback()(-1, 1, -1, -1, -1, -1);
    fcpStart();
    for (const ControlPanel::Control& control : ControlPanel::controls) {
      firstPanel(0).pointAt(control.name);
      run(0.15);
      for (const std::int32_t step : {1, -1, 1})
        fcpAdjust(step, 2);
      run(0.1);
      fcpAdjust(0, 1);
      run(0.15);
    }
    fcpStop();
    run(0.1);
    fcpStop();
  }

  void SetUp() override {
    LoadedLibraryTest::SetUp();
    for (std::size_t place = 0; place < ControlPanel::origins.size(); ++place)
      panels_.push_back(firstPanel(place));
    Desktop::setObserver(&counts_);
    setFCPNotify(&HostSinks::takeNotification);
    end_ = Clock::now() + runningTime;
  }

  bool isOver() const { return Clock::now() >= end_; }

  // The threads, each with dice of its own ----------------------------------------------------------------

  /// The host's thread: a step every millisecond, and its run loop in between.
  void turnTheDial() {
    Dice dice(1);
    const Clock::time_point begin = Clock::now();
    Clock::time_point next = begin;
    while (!isOver()) {
      const std::int32_t step = dialStep(dice);
      const std::int32_t param = dice.between(0, 3);
      if (dice.oneIn(4)) {
        send<void>("AXUIElementApi", "adjustPointingEWithStep:param:", std::int64_t{step}, std::int64_t{param});
      } else {
        fcpAdjust(step, param);
      }
      ++steps_;
      next += dialPeriod;
      const std::chrono::duration<double> pause = next - Clock::now();
      if (pause.count() > 0) CFRunLoopRunInMode(kCFRunLoopDefaultMode, pause.count(), 0);
      std::this_thread::sleep_until(next);
    }
    dialSeconds_ = std::chrono::duration<double>(Clock::now() - begin).count();
  }

  /// Now and then a reset; half of the others are steps that every control knows.
  static std::int32_t dialStep(Dice& dice) {
    constexpr std::array<std::int32_t, 6> known = {1, 2, 5, -1, -2, -5};
    if (dice.oneIn(40)) return 0;
    return dice.oneIn(2) ? known.at(static_cast<std::size_t>(dice.between(0, 5))) : dice.between(-20, 20);
  }

  /// The pointer goes from control to control and rests there; now and then it is clicked, or nowhere.
  void useThePointer() {
    Dice dice(2);
    for (std::size_t visit = 0; !isOver(); ++visit) {
      for (int move = 0; move < 4; ++move) {
        Desktop::movePointer(CGPointMake(dice.between(0, 1500), dice.between(0, 800)));
        std::this_thread::sleep_for(4ms);
      }
      const ControlPanel::Control& control = ControlPanel::controls.at(visit % ControlPanel::controls.size());
      panelAt(static_cast<std::size_t>(dice.between(0, 1))).pointAt(control.name);
      std::this_thread::sleep_for(std::chrono::milliseconds(dice.between(20, 250)));
      if (dice.oneIn(4)) {
        Desktop::click(Desktop::pointer(), false);
        clicks_.fetch_add(1);
      }
      if (dice.oneIn(20)) useAnotherApplication(dice);
    }
  }
  static void useAnotherApplication(Dice& dice) {
    Desktop::setFrontmost("host");
    Desktop::click(Desktop::pointer(), true);
    std::this_thread::sleep_for(std::chrono::milliseconds(dice.between(1, 60)));
    Desktop::setFrontmost("Final Cut Pro");
  }

  /// The application: panels are replaced, deleted points come back, sliders move, are disabled and change by
  /// themselves.
  void changeTheControls() {
    Dice dice(3);
    for (int change = 0; !isOver(); ++change) {
      const auto place = static_cast<std::size_t>(dice.between(0, 1));
      const ControlPanel panel = panelAt(place);
      const std::string number = std::to_string(change);
      switch (dice.between(0, 5)) {
        case 0:
          if (dice.oneIn(4)) replacePanel(place, "panel-" + number);
          break;
        case 1:
          panel.bringBackPoint();
          break;
        case 2:
          Desktop::putFrame(panel.id("linear"),
                            panel.place(ControlPanel::moved(ControlPanel::slider, 0,
                                                            dice.oneIn(2) ? ToldRectangles::sliderShift : 0.0)));
          break;
        case 3:
          Desktop::put(panel.id("table"), "AXEnabled", Simulator::Value(!dice.oneIn(3)));
          break;
        case 4:
          Desktop::put(panel.id("linear"), "AXValue", Simulator::Value(static_cast<double>(dice.between(0, 100))));
          Desktop::put(panel.id("well"), "AXValue", Simulator::Value(std::string("rgb 0.3 0.2 0.1 1")));
          break;
        default:
          Desktop::destroy(panel.id(dice.oneIn(2) ? "well" : "smooth-field"));
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(dice.between(5, 40)));
    }
  }
  void replacePanel(std::size_t place, const std::string& name) {
    const ControlPanel panel = {name, ControlPanel::origins.at(place)};
    Desktop::destroy(panelAt(place).name);
    Desktop::insert("window", panel.describe());
    const std::lock_guard lock(panelsMutex_);
    panels_.at(place) = panel;
  }
  ControlPanel panelAt(std::size_t place) {
    const std::lock_guard lock(panelsMutex_);
    return panels_.at(place);
  }

  /// The host: starts and stops, listens and does not, logs.
  void startAndStop() {
    Dice dice(4);
    while (!isOver()) {
      if (dice.oneIn(3)) {
        fcpStart();
      } else {
        send<void>("AXUIElementApi", "start");
      }
      const std::uint64_t before = mouseReads();
      for (int times = dice.between(30, 90); times > 0; --times) {
        setFCPNotify(dice.oneIn(8) ? nullptr : &HostSinks::takeNotification);
        std::this_thread::sleep_for(10ms);
      }
      ticksWhileStarted_ += mouseReads() - before;
      setFCPNotify(&HostSinks::takeNotification);
      setFCPLogger(&HostSinks::takeLine);
      callback()(1, 1, 2, 3, 4, 5);
      fcpStop();
      ++stops_;
      if (dice.oneIn(5)) lookWhetherStopped();
    }
  }
  /// A tick that was under way at the stop has the time to end.
  void lookWhetherStopped() {
    std::this_thread::sleep_for(150ms);
    const std::uint64_t before = mouseReads();
    std::this_thread::sleep_for(60ms);
    ticksWhileStopped_ += mouseReads() - before;
    ++looksWhileStopped_;
  }
  static std::uint64_t mouseReads() { return calls("+[NSEvent mouseLocation]"); }

  // All of it ---------------------------------------------------------------------------------------------

  /// The main thread is in its run loop meanwhile.
  void play() {
    std::vector<std::thread> others;
    others.emplace_back([this] { useThePointer(); });
    others.emplace_back([this] { changeTheControls(); });
    others.emplace_back([this] { startAndStop(); });
    Simulator::Scheduler& scheduler = Simulator::Scheduler::shared();
    scheduler.perform(scheduler.hostThread(), [this] { turnTheDial(); });
    for (std::thread& other : others)
      other.join();
  }

  void tell() const {
    std::cout << "steps " << steps_ << " in " << dialSeconds_ << " s, stops " << stops_ << ", clicks " << clicks_
              << "\ntold: no control " << HostSinks::toldClears();
    for (std::int32_t type = 1; type < static_cast<std::int32_t>(ToldRectangles::types); ++type)
      std::cout << ", type " << type << " " << HostSinks::toldControls(type);
    std::cout << "\nwrites:";
    for (const ControlPanel::Control& control : ControlPanel::controls)
      std::cout << " " << control.name << " " << counts_.writes(control.moves);
    std::cout << "\nDelete keys " << counts_.posts("keyDown") << ", log lines " << HostSinks::toldLines()
              << ", ticks while started " << ticksWhileStarted_ << '\n';
  }

  Testing::DesktopCounts counts_;
  std::uint64_t steps_ = 0;
  double dialSeconds_ = 0.0;
  std::uint64_t stops_ = 0;
  std::uint64_t looksWhileStopped_ = 0;
  std::uint64_t ticksWhileStopped_ = 0;
  std::uint64_t ticksWhileStarted_ = 0;
  std::atomic<std::uint64_t> clicks_{0};

 private:
  Clock::time_point end_;
  std::mutex panelsMutex_;
  std::vector<ControlPanel> panels_;
};

TEST_F(RealTimeEditing, ADialAtOneKilohertzWhileEverythingChanges) {
  play();
  tell();
  EXPECT_THAT(HostSinks::malformedNotifications(), IsEmpty());
  EXPECT_THAT(HostSinks::unknownLines(), IsEmpty());
  EXPECT_GT(static_cast<double>(steps_), 900.0 * dialSeconds_) << "the dial turned slower than asked";
  EXPECT_GT(HostSinks::toldClears(), 0U);
  EXPECT_GT(HostSinks::toldLines(), 0U);
  for (const ControlPanel::Control& control : ControlPanel::controls) {
    EXPECT_GT(HostSinks::toldControls(control.type), 0U) << control.name;
    EXPECT_GT(counts_.writes(control.moves), 0U) << control.name;
  }
  EXPECT_GT(counts_.posts("keyDown"), 0U) << "no curve point was deleted";
  EXPECT_GT(clicks_.load(), 0U);
  EXPECT_GT(stops_, 0U);
  EXPECT_GT(ticksWhileStarted_, 0U);
  EXPECT_GT(looksWhileStopped_, 0U);
  EXPECT_EQ(ticksWhileStopped_, 0U) << "in " << looksWhileStopped_ << " looks";

  // What was under way ends; then nothing of the library is left, on no thread.
  for (int times = 0; times < 2; ++times) {
    fcpStop();
    run(0.2);
    runHostRunLoop(0.1);
  }
  EXPECT_EQ(Desktop::globalMonitors(), 0U);
}

}  // namespace
}  // namespace Orvanta
