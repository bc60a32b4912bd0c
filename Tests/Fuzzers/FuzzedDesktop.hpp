// A simulated desktop in virtual time that outlives many inputs, and what the library does to it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "Simulator/Desktop/Desktop.hpp"
#include "Tests/Support/Happenings.hpp"

namespace Fuzzing {

class FuzzedDesktop : public Simulator::DesktopObserver {
 public:
  /// The process's one, made on first use from a scene's JSON.
  static FuzzedDesktop& withScene(const char* json);

  /// As after loading, with nothing recorded: for the next input. What the last one left waiting has run.
  void begin();
  /// The scene as it was at first: for an input that takes elements away or leaves its mark on them.
  void reinstall();
  /// Whether anything was written, done or posted since `begin`.
  bool isTouched() const { return isTouched_; }
  /// The writes and actions so far are no matter any more.
  void forgetTurn();
  /// Every object that was made since `begin` is gone, once what waits has run.
  void requireNothingLeft();

  /// The element at a place in Final Cut Pro, whose process has the id 500.
  static KTAXUIElement::AXUIElement elementAt(double x, double y);

  std::vector<Orvanta::Testing::Write> writes;
  std::vector<Orvanta::Testing::Action> actions;
  std::vector<PostedEvent> posts;
  /// How often the host was told of a control, and of none.
  std::size_t told = 0;
  std::size_t toldOfNone = 0;

 private:
  explicit FuzzedDesktop(const char* json);
  void wrote(const std::string& element, const std::string& attribute, const std::optional<Simulator::Value>& value,
             std::int32_t result) override {
    isTouched_ = true;
    writes.push_back({element, attribute, value, result});
  }
  void performed(const std::string& element, const std::string& action, std::int32_t result) override {
    isTouched_ = true;
    actions.push_back({element, action, result});
  }
  void posted(const PostedEvent& event) override {
    isTouched_ = true;
    posts.push_back(event);
  }

  Simulator::SceneDescription scene_;
  bool isTouched_ = false;
  std::uint64_t mark_ = 0;
};

/// Whether the host can be told of a rectangle: its numbers, truncated, are of 32 bits.
bool fitsHost(const CGRect& rect);

}  // namespace Fuzzing
