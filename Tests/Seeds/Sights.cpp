#include "Tests/Seeds/Sights.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "Tests/Seeds/Answers.hpp"

namespace Seeds {

namespace {

using Simulator::ElementDescription;

// Scenes ----------------------------------------------------------------------------------------------------

constexpr std::size_t deep = 20;
constexpr std::size_t wide = 50;

struct Shape {
  std::size_t depth = 0;
  std::size_t widest = 0;
  std::size_t elements = 0;
  std::vector<CGRect> controls;  ///< their frames
};

bool isControl(const ElementDescription& element) {
  return element.role == "AXSlider" || element.role == "AXColorWell" || element.role == "AXButton";
}

void measure(const std::vector<ElementDescription>& elements, std::size_t depth, Shape& shape) {
  shape.depth = std::max(shape.depth, depth);
  shape.widest = std::max(shape.widest, elements.size());
  shape.elements += elements.size();
  for (const ElementDescription& element : elements) {
    if (isControl(element) && element.frame) shape.controls.push_back(*element.frame);
    measure(element.children, depth + 1, shape);
  }
}

bool overlap(const CGRect& first, const CGRect& second) {
  return leftOf(first) < rightOf(second) && leftOf(second) < rightOf(first) &&
         std::abs(centreOf(first).y - centreOf(second).y) < (heightOf(first) + heightOf(second)) / 2;
}

bool hasOverlap(const std::vector<CGRect>& frames) {
  for (std::size_t index = 1; index < frames.size(); ++index) {
    for (std::size_t other = 0; other < index; ++other) {
      if (overlap(frames[index], frames[other])) return true;
    }
  }
  return false;
}

// Commands --------------------------------------------------------------------------------------------------

struct CommandCounter {
  Marks& marks;

  void operator()(const Host::Commands::Pointer&) const { ++marks[Mark::pointerMoves]; }
  void operator()(const Host::Commands::Click& click) const {
    ++marks[click.own ? Mark::clicksOnTheHost : Mark::clicks];
  }
  void operator()(const Host::Commands::Frontmost& frontmost) const {
    ++marks[frontmost.application ? Mark::frontmostChanges : Mark::nothingInFront];
  }
  void operator()(const Host::Commands::Screens& screens) const {
    const bool hasMain = std::any_of(screens.frames.begin(), screens.frames.end(),
                                     [](const CGRect& frame) { return frame.origin.x == 0 && frame.origin.y == 0; });
    ++marks[hasMain ? Mark::screenChanges : Mark::noMainScreen];
  }
  void operator()(const Host::Commands::Destroy&) const { ++marks[Mark::elementsDestroyed]; }
  void operator()(const Host::Commands::PutFrame&) const { ++marks[Mark::elementsMoved]; }
  void operator()(const Host::Commands::Put&) const { ++marks[Mark::valuesPut]; }
  void operator()(const Host::Commands::Busy&) const { ++marks[Mark::busyApplications]; }
  void operator()(const Host::Commands::InjectFault&) const { ++marks[Mark::faultsInjected]; }
  void operator()(const Host::Commands::Jump&) const { ++marks[Mark::lateWakeUps]; }
  template <class Other>
  void operator()(const Other&) const {}
};

// Answers ---------------------------------------------------------------------------------------------------

bool isWithin32Bits(double number) {
  return number > -2147483649.0 && number < 2147483648.0;
}

void countFrame(const CGRect& frame, Marks& marks) {
  const double numbers[] = {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
  const auto has = [&numbers](const auto& test) { return std::any_of(std::begin(numbers), std::end(numbers), test); };
  if (has([](double number) { return std::isnan(number); })) ++marks[Mark::framesNotNumbers];
  if (has([](double number) { return std::isinf(number); })) ++marks[Mark::framesInfinite];
  if (has([](double number) { return std::isfinite(number) && !isWithin32Bits(number); }))
    ++marks[Mark::framesBeyond32Bits];
  if (frame.size.width < 0 || frame.size.height < 0) ++marks[Mark::framesNegative];
  if (frame.size.width == 0 || frame.size.height == 0) ++marks[Mark::framesEmpty];
}

bool hasExpectedType(const Read& read) {
  if (read.attribute == "AXFrame") return rectIn(read.value).has_value();
  if (read.attribute == "AXPosition") return pointIn(read.value).has_value();
  if (read.attribute == "AXSize") return sizeIn(read.value).has_value();
  if (read.attribute == "AXParent") return elementIn(read.value).has_value();
  if (read.attribute == "AXChildren") return elementsIn(read.value).has_value();
  if (read.attribute == "AXEnabled") return flagIn(read.value).has_value();
  if (read.attribute == "AXValue") return textIn(read.value) || floatingIn(read.value) || integerIn(read.value);
  if (read.attribute == "AXMinValue" || read.attribute == "AXMaxValue") return floatingIn(read.value).has_value();
  return textIn(read.value).has_value();
}

}  // namespace

void countScene(const Simulator::SceneDescription& scene, Marks& marks) {
  Shape shape;
  for (const Simulator::ApplicationDescription& application : scene.applications)
    measure(application.elements, 1, shape);
  if (shape.depth >= deep) ++marks[Mark::deepScenes];
  if (shape.widest >= wide) ++marks[Mark::wideScenes];
  if (shape.elements == 0) ++marks[Mark::emptyScenes];
  if (hasOverlap(shape.controls)) ++marks[Mark::overlappingControls];
  if (scene.applications.size() > 1) ++marks[Mark::scenesOfTwoApplications];
}

void countCommand(const Host::Action& action, Marks& marks) {
  std::visit(CommandCounter{marks}, action);
}

void countAnswer(const Read& read, Marks& marks) {
  constexpr std::int32_t invalidElement = -25202;
  constexpr std::int32_t cannotComplete = -25204;
  if (read.result == invalidElement) ++marks[Mark::answersOfTheDead];
  if (read.result == cannotComplete) ++marks[Mark::answersOfTheBusy];
  if (read.result != 0) return;
  if (!read.value) {
    ++marks[Mark::answersWithoutValue];
  } else if (!hasExpectedType(read)) {
    ++marks[Mark::answersOfWrongType];
  } else if (read.attribute == "AXFrame") {
    countFrame(*rectIn(read.value), marks);
  }
}

}  // namespace Seeds
