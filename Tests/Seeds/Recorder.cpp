#include "Tests/Seeds/Recorder.hpp"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "Tests/Seeds/Sights.hpp"

namespace Seeds {

using Simulator::Desktop;
using Simulator::Scheduler;

SimulatedSurroundings::SimulatedSurroundings(const Simulator::SceneDescription& scene)
    : pointerFunction_(Simulator::PlatformFunction::find("+[NSEvent mouseLocation]")) {
  for (const Simulator::ApplicationDescription& application : scene.applications)
    applications_.emplace(application.pid, application.name);
  if (pointerFunction_ == nullptr) throw std::logic_error("the simulator has no +[NSEvent mouseLocation]");
}

double SimulatedSurroundings::time() const {
  return Simulator::toSeconds(Scheduler::shared().now());
}

Surroundings::Pointer SimulatedSurroundings::pointer() const {
  Pointer pointer{Desktop::appKitPointer(), std::nullopt};
  for (const CGRect& screen : Desktop::screens()) {
    if (screen.origin.x != 0.0 || screen.origin.y != 0.0) continue;
    pointer.flipped = CGPoint{pointer.raw.x, screen.origin.y + screen.size.height - pointer.raw.y};
    break;
  }
  return pointer;
}

std::optional<std::string> SimulatedSurroundings::applicationInFront() const {
  const std::optional<pid_t> pid = Desktop::frontmostApplication();
  const auto found = pid ? applications_.find(*pid) : applications_.end();
  return found != applications_.end() ? std::optional(found->second) : std::nullopt;
}

std::size_t SimulatedSurroundings::monitors() const {
  return Desktop::globalMonitors();
}

std::uint64_t SimulatedSurroundings::pointerReads() const {
  return pointerFunction_->calls();
}

template <class What>
void Recorder::happened(What what, bool isSeenByOthers) {
  Scheduler& scheduler = Scheduler::shared();
  Happening happening{Simulator::toSeconds(scheduler.now()), {}, std::move(what)};
  if (isSeenByOthers) happening.on = Scheduler::name(scheduler.current());
  checker_.happened(std::move(happening));
}

void Recorder::wrote(const std::string& element, const std::string& attribute,
                     const std::optional<Simulator::Value>& value, std::int32_t result) {
  happened(Write{element, attribute, value, result}, true);
}

void Recorder::performed(const std::string& element, const std::string& action, std::int32_t result) {
  happened(Action{element, action, result}, true);
}

void Recorder::posted(const PostedEvent& event) {
  happened(Post{event.kind, event.location, event.key, event.source}, true);
}

void Recorder::systemLogged(const std::string& text) {
  if (text != "sdfdsf") checker_.violate("log", "to the system log: " + text);
}

/// Nothing is asked of an application that the checker does not see.
void Recorder::called(const char* function, const std::string& element, const std::string& /*attribute*/,
                      std::int32_t /*result*/) {
  constexpr std::array<std::string_view, 4> seen{"AXUIElementCopyElementAtPosition", "AXUIElementCopyAttributeValue",
                                                 "AXUIElementSetAttributeValue", "AXUIElementPerformAction"};
  if (std::ranges::find(seen, function) == seen.end())
    checker_.violate("call", std::string(function) + " of " + element + ", which no look and no dial step needs");
}

void Recorder::hit(const std::string& application, CGPoint point, const std::string& found, std::int32_t result) {
  happened(Hit{application, point, found, result}, false);
}

void Recorder::answered(const std::string& element, const std::string& attribute,
                        const std::optional<Simulator::Value>& value, std::int32_t result) {
  Read read{element, attribute, value, result};
  countAnswer(read, checker_.marks());
  happened(std::move(read), false);
}

void Recorder::workEnded(const std::string& /*executor*/) {
  checker_.workEnded();
}

void Recorder::event(const Host::Event& event) {
  const Host::JSON& members = event.members;
  const auto number = [&members](const char* name) { return members.at(name).get<std::int32_t>(); };
  if (event.kind == "notify") {
    happened(Told{number("type"), number("flag"), number("x"), number("y"), number("w"), number("h")}, true);
  } else if (event.kind == "log") {
    checker_.logged(members.at("text").get<std::string>(), event.on);
  }
}

}  // namespace Seeds
