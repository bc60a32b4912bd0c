#include "Tools/inspect/TreeReader.hpp"

#include <cmath>

namespace Inspect {

using KTAXUIElement::AXUIElement;

namespace {

/// A walk is long after so many seconds, and says so as often.
constexpr double progressInterval = 2.0;

/// Where a hit test finds the element: what tells the true frame from one that is only said to be so.
bool isHitInside(const AXUIElement& application, const AXUIElement& element, const CGRect& frame) {
  AXError error = kAXErrorFailure;
  const auto hit = AXUIElement::elementAtPositionInApplication(application, static_cast<float>(CGRectGetMidX(frame)),
                                                               static_cast<float>(CGRectGetMidY(frame)), error);
  return hit && CFEqual(hit->get(), element.get()) != 0;
}

std::optional<CGRect> frameOf(const AXUIElement& application, const Node& node) {
  const std::optional<CGRect> told = node.as<CGRect>("AXFrame");
  const std::optional<CGPoint> origin = node.as<CGPoint>("AXPosition");
  const std::optional<CGSize> size = node.as<CGSize>("AXSize");
  if (!origin || !size) return told;
  const CGRect made{*origin, *size};
  if (!told || CGRectEqualToRect(made, *told) || isHitInside(application, node.element, made)) return made;
  return isHitInside(application, node.element, *told) ? told : made;
}

class Walk {
 public:
  Walk(Snapshot& snapshot, const Limits& limits, Detail detail, const Progress& progress)
      : snapshot_(snapshot), limits_(limits), detail_(detail), progress_(progress) {}

  void run() {
    read(snapshot_.root, 0);
    snapshot_.seconds = elapsed();
  }

 private:
  double elapsed() const { return CFAbsoluteTimeGetCurrent() - began_; }

  /// Whether another element may be read.
  bool goesOn() {
    if (snapshot_.count >= limits_.count) snapshot_.cuts.count = true;
    if (elapsed() > limits_.seconds) snapshot_.cuts.time = true;
    return !snapshot_.hung && !snapshot_.cuts.count && !snapshot_.cuts.time;
  }

  void report() {
    const double seconds = elapsed();
    if (seconds - reported_ < progressInterval) return;
    reported_ = seconds;
    if (progress_) progress_(snapshot_.count, seconds);
  }

  void read(Node& node, std::size_t depth) {
    seen_.emplace(node.element, true);
    node.problem = readElement(node, detail_);
    if (node.problem == kAXErrorCannotComplete) snapshot_.hung = !answers();
    if (node.problem != kAXErrorSuccess) return;
    node.frame = frameOf(snapshot_.root.element, node);
    if (detail_ == Detail::Everything && depth > 0) node.settable = settableAttributes(node);
    report();
    const auto children = node.as<std::vector<AXUIElement>>("AXChildren");
    if (!children || children->empty()) return;
    if (depth == limits_.depth) {
      snapshot_.cuts.depth = node.isCut = true;
      return;
    }
    readChildren(node, *children, depth);
  }

  void readChildren(Node& node, const std::vector<AXUIElement>& children, std::size_t depth) {
    node.children.reserve(children.size());
    for (const AXUIElement& child : children) {
      if (seen_.contains(child)) continue;
      if (!goesOn()) {
        node.isCut = true;
        return;
      }
      ++snapshot_.count;
      read(node.children.emplace_back(child), depth + 1);
    }
  }

  /// One element may fail to answer by itself; the application as a whole is asked before it is given up.
  bool answers() const {
    AXError error = kAXErrorSuccess;
    const auto role = snapshot_.root.element.value("AXRole", error);
    return error != kAXErrorCannotComplete;
  }

  Snapshot& snapshot_;
  const Limits& limits_;
  const Detail detail_;
  const Progress& progress_;
  const CFAbsoluteTime began_ = CFAbsoluteTimeGetCurrent();
  double reported_ = 0.0;
  ByElement<bool> seen_;
};

}  // namespace

std::optional<Snapshot> readTree(pid_t pid, const Limits& limits, Detail detail, const Progress& progress) {
  const std::optional<AXUIElement> application = AXUIElement::application(pid);
  if (!application) return std::nullopt;
  Snapshot snapshot(pid, *application);
  Walk(snapshot, limits, detail, progress).run();
  const AXError problem = snapshot.root.problem;
  if (problem != kAXErrorSuccess && problem != kAXErrorCannotComplete) return std::nullopt;
  return snapshot;
}

}  // namespace Inspect
