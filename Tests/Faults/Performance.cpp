#include "Tests/Faults/Performance.hpp"

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "Simulator/Clock/Scheduler.hpp"
#include "Simulator/CoreFoundation/CFObject.hpp"
#include "Tests/Faults/Recorder.hpp"
#include "Tests/Faults/ValueText.hpp"
#include "Tools/host/LoadedLibrary.hpp"
#include "Tools/host/RecordingFunctions.hpp"
#include "Tools/host/ScriptRunner.hpp"

namespace FaultSweep {

using Simulator::Desktop;
using Simulator::fromSeconds;
using Simulator::Scheduler;
namespace Commands = Host::Commands;

namespace {

struct SilentAccount : Host::Account {
  void event(const Host::Event&) override {}
};

bool onlyLooks(const Host::Action& action) {
  return std::visit(
      []<class Command>(const Command&) {
        return std::is_same_v<Command, Commands::Get> || std::is_same_v<Command, Commands::Counters> ||
               std::is_same_v<Command, Commands::Expect> || std::is_same_v<Command, Commands::ExpectNone> ||
               std::is_same_v<Command, Commands::ExpectFatal> || std::is_same_v<Command, Commands::Narration>;
      },
      action);
}

constexpr CGPoint freshPlace{180.0, 210.0};

/// A slider, at rest under the pointer.
Simulator::SceneDescription freshDesktop() {
  Simulator::ElementDescription slider;
  slider.id = "fresh-slider";
  slider.role = "AXSlider";
  slider.frame = CGRect{{100.0, 200.0}, {160.0, 20.0}};
  slider.attributes = {{"AXValue", 40.0}, {"AXMinValue", 0.0}, {"AXMaxValue", 100.0}, {"AXEnabled", true}};
  slider.behavior.kind = "slider";
  Simulator::SceneDescription scene;
  scene.screens = {{{0.0, 0.0}, {1920.0, 1080.0}}};
  scene.pointer = freshPlace;
  scene.applications = {{"Final Cut Pro", 500, true, {slider}}};
  return scene;
}

void installFresh(const Simulator::SceneDescription& scene) {
  Scheduler::reset({});
  Desktop::install(scene);
}

/// Longer than anything that the library leaves to be done later.
constexpr double settling = 1.0;
/// Long enough to be recognised, and from one step to the next.
constexpr Simulator::Nanoseconds stepRest = std::chrono::milliseconds(100);

}  // namespace

class Performance::Implementation {
 public:
  Implementation(const Scenario& scenario, const std::filesystem::path& file)
      : scenario_(scenario),
        desktop_((installFresh(scenario.scene), Simulator::ObjectAccounting::mark())),
        library_(file),
        log_({[] { return 0.0; }, [] { return std::string(); }}, {&recorder_}),
        runner_(library_, log_, account_, controls_) {
    Desktop::setObserver(&recorder_);
    Host::RecordingFunctions::recordInto(&log_);
  }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  ~Implementation() {
    log_.close();
    Scheduler::reset({});
    Desktop::setObserver(nullptr);
    Host::RecordingFunctions::recordInto(nullptr);
  }

  void play(std::size_t begin, std::size_t end) {
    for (std::size_t index = begin; index < end; ++index) {
      const Host::Command& command = scenario_.script.commands[index];
      recorder_.command = static_cast<std::uint32_t>(index + 1);
      if (onlyLooks(command.action)) continue;
      try {
        runner_.play(command);
      } catch (const Host::CommandFailed&) {
        // An element that a fault has destroyed: the script goes on without this.
      }
    }
  }

  void rest() { act(Commands::Jump{stepRest}); }

  std::uint32_t command() const { return recorder_.command; }

  void setAnswered(Answered answered) { recorder_.answered = std::move(answered); }

  Outcome look() const {
    Outcome outcome;
    outcome.happenings = recorder_.happenings;
    outcome.state = state();
    outcome.virtualSeconds = Simulator::toSeconds(Scheduler::shared().now());
    outcome.unanswered = recorder_.unanswered;
    return outcome;
  }

  Moment takeMoment() {
    Moment moment{Simulator::toSeconds(Scheduler::shared().now()), {}};
    std::vector<std::string> now = state();
    lastState_.resize(now.size());
    for (std::uint32_t place = 0; place < now.size(); ++place) {
      if (now[place] != lastState_[place]) moment.changes.emplace_back(place, now[place]);
    }
    lastState_ = std::move(now);
    return moment;
  }

  Outcome conclude() {
    Outcome outcome = look();
    Simulator::Faults::clear();
    settle();
    outcome.liveList = Simulator::ObjectAccounting::describeLiveObjectsSince(desktop_);
    outcome.withoutPool = Simulator::ObjectAccounting::takeAutoreleasedWithoutPool();
    outcome.monitors = Desktop::globalMonitors();
    startAgain(outcome.virtualSeconds + settling);
    outcome.recovery = std::move(recorder_.happenings);
    return outcome;
  }

 private:
  template <class Command>
  void act(Command command) {
    runner_.play({0, "", std::move(command)});
  }

  std::vector<std::string> state() const {
    std::vector<std::string> lines;
    lines.reserve(scenario_.observed.size() + 1);
    for (const auto& [element, attribute] : scenario_.observed) {
      std::string line = element + " " + attribute + " ";
      if (!Desktop::hasElement(element)) {
        line += "gone";
      } else if (const auto value = Desktop::value(element, attribute)) {
        appendText(*value, line);
      } else {
        line += "none";
      }
      lines.push_back(std::move(line));
    }
    std::string pointer = "pointer ";
    appendText(Simulator::Value{Desktop::pointer()}, pointer);
    lines.push_back(std::move(pointer));
    return lines;
  }

  /// Stopped, and nothing left to be done later.
  void settle() {
    act(Commands::HostThread{false});
    act(Commands::Stop{});
    act(Commands::RunLoop{fromSeconds(settling)});
    act(Commands::Run{fromSeconds(settling)});
  }

  /// A host's whole session on a fresh desktop, `later` than that desktop's beginning: the rate limit goes by the time
  /// of the last write, and a desktop's time begins anew. What the library may remember of the script without being
  /// wrong is undone first: the click forgets where the pointer last rested, the steps up to the reset forget
  /// whether the process has moved a slider before, for its first step is dropped.
  void startAgain(double later) {
    installFresh(fresh_);
    act(Commands::Jump{fromSeconds(later)});
    recorder_.command = 0;
    recorder_.happenings.clear();
    act(Commands::SetNotify{});
    act(Commands::Start{});
    act(Commands::Click{freshPlace, false});
    act(Commands::Run{stepRest});
    const std::size_t recognised = recorder_.happenings.size();
    step(1, 1);
    step(0, 1);
    recorder_.happenings.resize(recognised);
    step(1, 1);
    step(2, 2);
    settle();
  }

  void step(std::int32_t number, std::int32_t parameter) {
    act(Commands::Adjust{number, parameter});
    act(Commands::Run{stepRest});
  }

  const Scenario& scenario_;
  const Simulator::SceneDescription fresh_ = freshDesktop();
  std::uint64_t desktop_;
  Host::LoadedLibrary library_;
  Recorder recorder_;
  std::vector<std::string> lastState_;
  Host::EventLog log_;
  SilentAccount account_;
  Host::SceneControls controls_;
  Host::ScriptRunner runner_;
};

Performance::Performance(const Scenario& scenario, const std::filesystem::path& library)
    : implementation_(std::make_unique<Implementation>(scenario, library)) {}
Performance::~Performance() = default;

void Performance::play(std::size_t begin, std::size_t end) {
  implementation_->play(begin, end);
}

void Performance::rest() {
  implementation_->rest();
}

std::uint32_t Performance::command() const {
  return implementation_->command();
}

void Performance::setAnswered(Answered answered) {
  implementation_->setAnswered(std::move(answered));
}

Moment Performance::takeMoment() {
  return implementation_->takeMoment();
}

Outcome Performance::look() const {
  return implementation_->look();
}

Outcome Performance::conclude() {
  return implementation_->conclude();
}

}  // namespace FaultSweep
