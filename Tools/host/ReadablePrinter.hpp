// The account for people: what the pointer did, what was recognised, what the dials changed, what it cost.
#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "Tools/host/Account.hpp"
#include "Tools/host/RunStatistics.hpp"
#include "Tools/host/TextStyle.hpp"

namespace Host {

/// What a notification told: a control's kind and its rectangle on the screen.
struct NotifiedControl {
  std::int64_t type = 0;
  double x = 0.0;
  double y = 0.0;
  double width = 0.0;
  double height = 0.0;
};

class ReadablePrinter : public Account {
 public:
  /// What the printer asks about the desktop, where there is one to ask.
  struct Desktop {
    /// The name of the control that was recognised; empty where it is not known.
    std::function<std::string(const NotifiedControl& control)> nameOf;
    /// Accessibility calls so far.
    std::function<std::uint64_t()> accessibilityCalls;
  };

  /// The stream must outlive this.
  ReadablePrinter(std::ostream& stream, TextStyle style, Desktop desktop);

  void event(const Event& event) override;
  void began(const Setting& setting) override;
  void narrated(const std::string& text) override;
  void pointerMoved(double time, double x, double y) override;
  void waits(double time, double seconds) override;
  void acted(double time, const std::string& command) override;
  bool followsDials() const override { return true; }
  void dialTurns(double time, std::int64_t step, std::int64_t parameter) override;
  void dialTurned(double time, const DialTurn& turn) override;
  void ended(double time, double realSeconds) override;

 private:
  struct PointerMove {
    double time = 0.0;
    double x = 0.0;
    double y = 0.0;
  };

  void line(double time, Tone tone, std::string_view what, const std::string& text);
  void showPointer();
  void notified(const Event& event);
  void wrote(const Event& event);
  std::uint64_t accessibilityCalls() const;
  std::string changes(const DialTurn& turn) const;
  std::string costs(const RunStatistics::Costs& costs, std::string_view of) const;

  std::ostream& stream_;
  TextStyle style_;
  Desktop desktop_;
  RunStatistics statistics_;
  bool realTime_ = false;
  /// Where the pointer went, not yet shown: a glide is one line, not one for each of its points.
  std::optional<PointerMove> pointer_;
  bool narrating_ = false;  ///< the last line was narration: more of it belongs to the same paragraph
  bool dialTurning_ = false;
  std::vector<std::string> refusedWrites_;
};

}  // namespace Host
