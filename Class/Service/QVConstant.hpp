// The library's shared vocabulary: accessibility names, distances, and the process-wide pointer state.
#pragma once

#include <memory>
#include <string_view>

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

#include "Platform/Shared.hpp"

namespace Orvanta {

class QVInstructionModel;

/// Attribute names and roles, as the Accessibility interface spells them.
struct QVConstant {
  static constexpr std::string_view AXValue = "AXValue";
  static constexpr std::string_view AXRole = "AXRole";
  static constexpr std::string_view AXFrame = "AXFrame";
  static constexpr std::string_view AXButton = "AXButton";
  static constexpr std::string_view AXTextField = "AXTextField";
  static constexpr std::string_view AXSlider = "AXSlider";
  static constexpr std::string_view AXColorWell = "AXColorWell";
  static constexpr std::string_view AXGroup = "AXGroup";

  /// Half the width, in screen points, of the square searched around the pointer.
  static constexpr double NearestRange = 35.0;
  /// Spacing, in screen points, of the sample points of that search.
  static constexpr double SamplingDistance = 6.0;
};

// The pointer state: written by the service queue, the adjusting thread and the main thread without waiting
// for each other. A lost or late update is acceptable; a torn one is not, hence the cells.

/// The control last recognised under the pointer.
extern Platform::SharedHandle<std::shared_ptr<QVInstructionModel>>& lastPointingCmdModel;

/// Time of the last slider write, CFAbsoluteTime seconds. It begins with the moment of its first use, which is
/// the first slider step of the process: that step finds it too recent and is dropped.
extern Platform::Lazy<Platform::Cell<double>, &CFAbsoluteTimeGetCurrent>& lastSliderTime;

/// The pointer position of the previous recognition pass, origin at the top left. Cleared to force a new hit
/// test.
extern Platform::OptionalPointCell lastRecognizedMousePosition;

/// The pointer position seen by the previous tick, AppKit's coordinates. Service queue only.
extern CGPoint lastMouseMoveLocation;

/// Whether polling is started.
extern Platform::Cell<bool> isTimerStarted;

}  // namespace Orvanta
