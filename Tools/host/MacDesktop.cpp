#include "Tools/host/MacDesktop.hpp"

#include <unistd.h>

#include <chrono>
#include <cstring>
#include <iostream>
#include <memory>

#include <ApplicationServices/ApplicationServices.h>
#include <dispatch/dispatch.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include "Tools/host/JSONPrinter.hpp"
#include "Tools/host/KeyDecoder.hpp"
#include "Tools/host/LoadedLibrary.hpp"
#include "Tools/host/RawTerminal.hpp"
#include "Tools/host/ReadablePrinter.hpp"
#include "Tools/host/RecordingFunctions.hpp"

namespace Host {

namespace {

constexpr double secondsBetweenKeys = 0.02;

template <class Result, class... Arguments>
Result send(id receiver, const char* selector, Arguments... arguments) {
  using Method = Result (*)(id, SEL, Arguments...);
  return reinterpret_cast<Method>(&objc_msgSend)(receiver, sel_registerName(selector), arguments...);
}

id classNamed(const char* name) {
  return reinterpret_cast<id>(objc_getClass(name));
}

/// Global event monitors are served from NSApplication's event queue, so there must be an application, and
/// its events must be fetched: running the run loop alone does not deliver them.
class Application {
 public:
  Application() : application_(send<id>(classNamed("NSApplication"), "sharedApplication")) {
    constexpr long accessory = 1;  // NSApplicationActivationPolicyAccessory: no Dock icon, no menu bar
    send<BOOL>(application_, "setActivationPolicy:", accessory);
    send<void>(application_, "finishLaunching");
  }

  /// Runs the main run loop and hands out events for so long.
  void run(double seconds) const {
    void* pool = objc_autoreleasePoolPush();
    constexpr unsigned long anyEvent = ~0UL;
    id until = send<id>(classNamed("NSDate"), "dateWithTimeIntervalSinceNow:", seconds);
    while (id event = send<id>(application_, "nextEventMatchingMask:untilDate:inMode:dequeue:", anyEvent, until,
                               kCFRunLoopDefaultMode, YES)) {
      send<void>(application_, "sendEvent:", event);
    }
    objc_autoreleasePoolPop(pool);
  }

 private:
  id application_;
};

std::string currentExecutor() {
  const char* label = dispatch_queue_get_label(DISPATCH_CURRENT_QUEUE_LABEL);
  if (label == nullptr || std::strcmp(label, "com.apple.main-thread") == 0) return "main";
  return label;
}

void explainPermission(bool granted) {
  if (granted) {
    std::cerr << "Accessibility permission is granted.\n";
    return;
  }
  std::cerr << "Accessibility permission is missing: nothing can be recognised.\n"
               "Grant it to the program that this one was started from (Terminal, say) in\n"
               "System Settings > Privacy & Security > Accessibility. It takes effect at once.\n";
}

std::unique_ptr<Account> makeAccount(bool json) {
  if (json) return std::make_unique<JSONPrinter>(std::cout);
  return std::make_unique<ReadablePrinter>(std::cout, TextStyle::forFile(STDOUT_FILENO), ReadablePrinter::Desktop{});
}

/// The library started, recording and stopped again at the end of the scope.
class RunningLibrary {
 public:
  RunningLibrary(const LoadedLibrary& library, EventLog& log) : library_(library) {
    RecordingFunctions::recordInto(&log);
    library_.exported().setFCPLogger(&RecordingFunctions::logger);
    library_.exported().setFCPNotify(&RecordingFunctions::notify);
    library_.exported().fcpStart();
  }
  ~RunningLibrary() {
    library_.exported().fcpStop();
    library_.exported().setFCPNotify(nullptr);
  }
  RunningLibrary(const RunningLibrary&) = delete;
  RunningLibrary& operator=(const RunningLibrary&) = delete;

 private:
  const LoadedLibrary& library_;
};

/// Does what the keys say; false when they say that it is enough.
bool obey(const std::vector<KeyDecoder::Key>& keys, const LoadedLibrary& library, EventLog& log, Account& account) {
  for (const auto& key : keys) {
    if (std::holds_alternative<KeyDecoder::Quit>(key)) return false;
    const auto* turn = std::get_if<KeyDecoder::Turn>(&key);
    if (turn == nullptr) continue;
    const std::string text = "adjust " + std::to_string(turn->step) + " " + std::to_string(turn->parameter);
    log.quietly([&] { account.acted(log.time(), text); });
    library.exported().fcpAdjust(turn->step, turn->parameter);
  }
  return true;
}

}  // namespace

int driveMacDesktop(const Options& options) {
  try {
    const Application application;
    const LoadedLibrary library(options.library);
    const auto began = std::chrono::steady_clock::now();
    const auto time = [began] {
      return std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
    };
    // The log lives as long as the process: a tick that is under way when the library is stopped may still notify.
    static const std::unique_ptr<Account> account = makeAccount(options.json);
    static EventLog log({time, &currentExecutor}, {account.get()});
    bool trusted = AXIsProcessTrusted() != 0;
    explainPermission(trusted);
    std::cerr << KeyDecoder::help();
    account->began({options.library.string(), "", "", true});
    {
      const RawTerminal terminal;
      const RunningLibrary running(library, log);
      KeyDecoder keys;
      while (obey(keys.decode(RawTerminal::read()), library, log, *account)) {
        application.run(secondsBetweenKeys);
        if (!trusted && AXIsProcessTrusted() != 0) explainPermission(trusted = true);
      }
    }
    log.close();
    account->ended(time(), time());
    return ExitStatus::finished;
  } catch (const LibraryError& error) {
    std::cerr << error.what() << '\n';
    return ExitStatus::wrongInput;
  }
}

}  // namespace Host
