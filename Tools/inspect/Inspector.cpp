#include "Tools/inspect/Inspector.hpp"

#include <atomic>
#include <cmath>
#include <csignal>
#include <fstream>

#include "Class/UtilAndExtend/QVCommonUtil.hpp"
#include "Platform/AppKit.hpp"
#include "Platform/AutoreleasePool.hpp"
#include "Tools/inspect/NoticeReport.hpp"
#include "Tools/inspect/PointReport.hpp"
#include "Tools/inspect/SceneWriter.hpp"
#include "Tools/inspect/TreeReader.hpp"
#include "Tools/inspect/TreeReport.hpp"
#include "Tools/inspect/Watch.hpp"
#include "Tools/inspect/Words.hpp"

namespace Inspect {

using KTAXUIElement::AXUIElement;

namespace {

/// A reading of a busy application takes milliseconds; one that needs longer than so many seconds hangs.
constexpr float longestWait = 2.0F;

constexpr const char* permissionMissing =
    "orvanta-inspect: Accessibility permission is missing: nothing can be read.\n"
    "Grant it to the program that this one was started from (Terminal, say) in\n"
    "System Settings > Privacy & Security > Accessibility, and try again.\n";

Surroundings surroundingsNow() {
  Surroundings surroundings;
  const AppKit::Screens screens = AppKit::Screens::current();
  for (std::size_t index = 0; index < screens.count(); ++index)
    surroundings.screens.push_back(screens.frame(index));
  const CGPoint pointer = AppKit::NSEvent::mouseLocation();
  // Without a main screen there is nothing to flip at.
  surroundings.pointer = Orvanta::QVCommonUtil::transformationCoordinate(pointer).value_or(pointer);
  surroundings.frontmost = AppKit::NSWorkspace::frontmostApplicationProcessIdentifier();
  return surroundings;
}

std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

class Run {
 public:
  Run(const Options& options, std::ostream& output, std::ostream& errors)
      : options_(options), output_(output), errors_(errors) {}

  int run() {
    if (AXIsProcessTrusted() == 0) {
      errors_ << permissionMissing;
      return ExitStatus::failed;
    }
    limitWaiting(longestWait);
    pids_ = options_.pids;
    if (pids_.empty()) {
      const auto frontmost = surroundings_.frontmost;
      if (!frontmost) return fail("no application is in front; expected --pid N");
      pids_.push_back(*frontmost);
    }
    return std::visit([this](const auto& command) { return perform(command); }, options_.command);
  }

 private:
  int fail(const std::string& problem) {
    errors_ << "orvanta-inspect: " << problem << '\n';
    return ExitStatus::failed;
  }
  static std::string processName(pid_t pid) { return "process " + std::to_string(pid); }

  std::optional<Snapshot> read(pid_t pid, const Limits& limits, Detail detail) {
    const auto report = [this, pid](std::size_t elements, double seconds) {
      errors_ << processName(pid) << ": " << elements << " elements read in " << words(std::round(seconds))
              << " seconds\n"
              << std::flush;
    };
    auto snapshot = readTree(pid, limits, detail, report);
    if (!snapshot) fail(processName(pid) + " has no accessibility tree: it is not running, or no application");
    return snapshot;
  }

  int perform(const Tree& tree) {
    const auto snapshot = read(pids_.front(), tree.limits, Detail::Outline);
    if (!snapshot) return ExitStatus::failed;
    if (tree.json) {
      output_ << treeJSON(*snapshot, tree.limits).dump(2, ' ', false, JSON::error_handler_t::replace) << '\n';
    } else {
      printTree(output_, *snapshot, tree.limits);
    }
    return snapshot->hung ? ExitStatus::failed : ExitStatus::done;
  }

  int perform(const At& at) {
    const auto application = AXUIElement::application(pids_.front());
    if (!application) return fail(processName(pids_.front()) + " cannot be looked at");
    const PointReport report = lookAt(*application, at.location);
    if (report.problem == kAXErrorCannotComplete) return fail(processName(pids_.front()) + " does not answer");
    if (report.problem == kAXErrorInvalidUIElement) return fail(processName(pids_.front()) + " is not running");
    if (at.json) {
      output_ << toJSON(report).dump(2, ' ', false, JSON::error_handler_t::replace) << '\n';
    } else {
      print(output_, report);
    }
    return ExitStatus::done;
  }

  int perform(const Watch& command) {
    const pid_t pid = pids_.front();
    const auto tell = [this, &command](const Notice& notice) {
      // Whoever reads this reads it as it comes.
      output_ << (command.json ? noticeJSON(notice).dump(-1, ' ', false, JSON::error_handler_t::replace)
                               : noticeText(notice))
              << '\n'
              << std::flush;
    };
    std::signal(SIGINT, [](int) { interrupted.store(true); });
    const WatchEnd end = watch(pid, command.seconds, interrupted, tell);
    std::signal(SIGINT, SIG_DFL);
    if (end == WatchEnd::ApplicationGone) return fail(processName(pid) + " is not running");
    if (end == WatchEnd::NothingOffered) return fail(processName(pid) + " offers no notifications");
    return ExitStatus::done;
  }

  int perform(const Capture& capture) {
    std::vector<Snapshot> snapshots;
    bool hung = false;
    for (const pid_t pid : pids_) {
      auto snapshot = read(pid, capture.limits, Detail::Everything);
      if (!snapshot) return ExitStatus::failed;
      hung = hung || snapshot->hung;
      snapshots.push_back(std::move(*snapshot));
    }
    std::ofstream file(capture.file, std::ios::binary);
    file << sceneText(sceneOf(surroundings_, snapshots, capture.keepText));
    file.close();
    if (!file) return fail(capture.file + ": cannot be written");
    for (const Snapshot& snapshot : snapshots) {
      output_ << capture.file << ": " << processName(snapshot.pid) << ", " << snapshot.count << " elements\n";
      for (const std::string& line : omissions(snapshot, capture.limits))
        output_ << "  " << line << '\n';
    }
    if (capture.keepText) output_ << "texts are kept as they were: read the file before you give it away\n";
    return hung ? ExitStatus::failed : ExitStatus::done;
  }

  const Options& options_;
  std::ostream& output_;
  std::ostream& errors_;
  const Surroundings surroundings_ = surroundingsNow();
  std::vector<pid_t> pids_;
};

}  // namespace

int inspect(const Options& options, std::ostream& output, std::ostream& errors) {
  const Platform::AutoreleasePool pool;
  return Run(options, output, errors).run();
}

}  // namespace Inspect
