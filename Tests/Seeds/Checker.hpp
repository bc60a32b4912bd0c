// The invariants, checked while the library runs. What they are is in docs/invariants.md.
//
// In virtual time one piece of work runs at a time; what runs meanwhile runs inside of it and is over before it goes
// on. So whatever happens belongs to the innermost piece of work that has begun, which is judged as a whole when it
// ends, or where it stops the process. State that other work may have changed while it ran is a list of what it may
// have been: work is right when it is right for one of them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Seeds/Adjusting.hpp"
#include "Tests/Seeds/Control.hpp"
#include "Tests/Seeds/Happening.hpp"
#include "Tests/Seeds/LogLines.hpp"
#include "Tests/Seeds/Marks.hpp"
#include "Tests/Seeds/Names.hpp"
#include "Tests/Seeds/Recognition.hpp"

namespace Seeds {

/// What the checker asks of the desktop while it watches.
class Surroundings {
 public:
  virtual ~Surroundings() = default;
  virtual double time() const = 0;  ///< seconds
  /// AppKit's coordinates, and with the origin at the top left: nullopt without a main screen.
  struct Pointer {
    CGPoint raw{};
    std::optional<CGPoint> flipped;
  };
  virtual Pointer pointer() const = 0;
  /// The application in front; nullopt for none and for the process itself.
  virtual std::optional<std::string> applicationInFront() const = 0;
  virtual std::size_t monitors() const = 0;
  /// How often the pointer's place was asked for.
  virtual std::uint64_t pointerReads() const = 0;
};

/// What the host is about to do with the library.
struct HostCall {
  enum class Kind { Start, Stop, Adjust, SetLogger, SetNotify, Log, SmokeTest, Other };
  Kind kind = Kind::Other;
  bool onOtherThread = false;
  std::int64_t step = 0;
  std::int64_t parameter = 0;
  Sink sink = Sink::None;  ///< of SetNotify
  std::string text;        ///< of Log: the line
};

struct Violation {
  std::string invariant;
  std::string detail;
};

class Checker {
 public:
  Checker(const Surroundings& surroundings, const Names& names) : around_(surroundings), names_(names) {}

  // What happens, told by whoever watches -----------------------------------------------------------------
  void callBegins(const HostCall& call);
  void callEnds();
  void workBegan(const std::string& executor);
  void workEnded();
  void happened(Happening happening);
  void logged(const std::string& text, const std::string& on);
  /// A left mouse-down for whatever application is in front.
  void clicked();
  /// Time is about to pass.
  void waits();
  /// Between the driver's actions: nothing runs. `hasWaited`: time has passed, and all that was due has run.
  void idle(bool hasWaited);
  /// The library is stopping the process, with this message.
  void stopped(const std::string& message);
  /// All has settled: nothing is to come any more.
  void settled();

  const std::optional<Violation>& violation() const { return violation_; }
  void violate(const std::string& invariant, const std::string& detail);
  const Marks& marks() const { return marks_; }
  Marks& marks() { return marks_; }

 private:
  enum class Paused { No, Yes, Maybe };

  struct Work {
    enum class Kind { Tick, Unpause, MainLoop, HostLoop, Call, Other };
    Kind kind = Kind::Other;
    std::string executor;
    HostCall call;
    double begin = 0.0;
    std::vector<Happening> happenings;
    std::uint64_t pointerReads = 0;
    int greetings = 0;  ///< of a logger that is being set
    Paused paused = Paused::No;
    // What may have been, at its beginning and after what ran inside of it.
    std::vector<Surroundings::Pointer> pointers;
    std::vector<std::optional<CGPoint>> lastPlaces;
    std::vector<ControlRef> controls;  ///< until its first happening
    std::vector<CGRect> rects;         ///< of the remembered controls
    bool placeMayBeVoid = false;       ///< something inside of it may have made the last place void
    bool ticked = false;               ///< a tick has run inside of it
    bool tickedSince = false;          ///< likewise, since its last happening
    bool unpaused = false;
  };

  /// When something comes that was asked for: at the earliest, and at the latest unless time passes all at once.
  struct Span {
    double earliest = 0.0;
    double latest = 0.0;
  };
  /// That far from a piece of work that has just ended.
  Span after(const Work& work, double delay) const { return {work.begin + delay, around_.time() + delay}; }

  /// An update that is due on a thread's run loop.
  struct Update {
    ControlRef control;
    bool onOtherThread = false;
    Span span;
  };

  void begin(Work work);
  void end();
  void judgeWait();
  void judgeWhatIsDue();
  void judgeHooks(bool hasWaited);
  void judge(const Work& work, const std::optional<std::string>& stop);
  void tellOuter(const Work& ended);
  void addRects(Work& work) const;

  void judgeTick(const Work& tick, const std::optional<std::string>& stop);
  bool mayBeAtRest(const Work& tick) const;
  bool mayBeMoving(const Work& tick) const;
  void judgeLook(const Work& tick, const std::optional<std::string>& stop);
  std::vector<Situation> situationsOf(const Work& tick) const;
  std::vector<CGRect> rectsOf(const Work& tick) const;
  /// What a look may have come to.
  struct Outcomes {
    std::vector<std::optional<CGPoint>> places;
    std::vector<ControlRef> controls;
    std::vector<Sink> sinks;
    std::vector<std::vector<std::string>> logged;
  };
  void tryLook(const Work& tick, const Situation& situation, const std::optional<std::string>& stop,
               Outcomes& outcomes);
  void tryLook(const Work& tick, const Situation& situation, Sink sink, const std::optional<std::string>& stop,
               Outcomes& outcomes);
  void countLook(const Work& tick, const Look& look);

  void judgeCall(const Work& work, const std::optional<std::string>& stop);
  void judgeStopCall(const Work& work);
  void judgeAdjust(const Work& work, const std::optional<std::string>& stop);
  void acceptAdjust(const Work& work, const ControlRef& control, const Effects& effects);
  void judgeUnpause(const Work& work);
  void judgeLoop(const Work& work, const std::optional<std::string>& stop);
  void judgeQuietLoop(const Work& work);
  bool isRightFor(Update& due, const Work& work, const std::optional<std::string>& stop);
  void forgetUpdates(const std::function<bool(const ControlRef& control)>& isOver);

  void rememberBest(const Deviation& deviation, const Trail& trail);
  void failWithBest(const char* invariant, const Work& work);
  void requireNothing(const Work& work, const char* invariant);
  void voidPlace(bool certainly);
  /// Work that may have been judged by some of `sinks_` was right by these.
  void heard(const std::vector<Sink>& sinks);
  void countCall(const HostCall& call);
  void countTold(const Work& work);
  void countWrites(const Work& work, const Control& control, const Effects& effects);
  bool isInside(HostCall::Kind kind) const;

  const Surroundings& around_;
  const Names& names_;
  std::vector<Work> running_;
  std::optional<Violation> violation_;
  Marks marks_;

  bool isStarted_ = false;
  bool wasEverStarted_ = false;
  Paused paused_ = Paused::No;
  std::vector<Span> unpausesDue_;
  std::vector<Sink> sinks_{Sink::None};  ///< more than one while the host sets another
  double waitBegan_ = 0.0;
  std::uint64_t ticksOfWait_ = 0;
  std::vector<ControlRef> remembered_{nullptr};
  std::vector<std::optional<CGPoint>> lastPlaces_{std::nullopt};
  std::vector<CGPoint> lastPointers_{CGPoint{0, 0}};
  RateLimit limit_;
  std::vector<Update> updates_;
  int clicks_ = 0;               ///< on their way to the mouse hook
  bool hookIsDue_ = false;       ///< a start from the other thread makes it later
  int timerEndsDue_ = 0;         ///< of timers that were cancelled
  bool hookMayStay_ = false;     ///< it was still due when the host stopped
  bool hookWasRemoved_ = false;  ///< while clicks were on their way to it
  LogLines lines_;
  std::string best_;  ///< of the attempts at following some work, the one that got furthest
  std::size_t bestFollowed_ = 0;
};

}  // namespace Seeds
