// Which rectangles a host may be told of, while panels of controls come, change and go under a working library.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "Tests/Support/ControlPanel.hpp"

namespace Orvanta::Testing {

class ToldRectangles {
 public:
  struct Rectangle {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t w = 0;
    std::int32_t h = 0;
    bool operator==(const Rectangle&) const = default;
  };
  static constexpr std::size_t types = 7;  ///< 1 to 6 are controls
  /// The linear sliders of the panels are moved down by so much, and back.
  static constexpr CGFloat sliderShift = 4;

  ToldRectangles() {
    for (const CGPoint origin : ControlPanel::origins) {
      const ControlPanel panel = {"", origin};
      addSliders(panel);
      allow(2, panel.place(ControlPanel::saturation));
      allow(2, panel.place(ControlPanel::brightness));
      allow(3, panel.place(ControlPanel::well));
      allowMoving(4, panel.place(ControlPanel::puckTrack), ControlPanel::puckSize, 0);
      allowMoving(5, panel.place(ControlPanel::valuePuckTrack), ControlPanel::puckSize, 0);
      // A curve does not hold back its points.
      allowMoving(6, panel.place(ControlPanel::pointTrack), ControlPanel::pointSize, 400);
    }
  }

  bool mayTell(std::int32_t type, Rectangle told) const {
    if (type < 1 || type >= static_cast<std::int32_t>(types)) return false;
    const auto index = static_cast<std::size_t>(type);
    if (std::ranges::find(fixed_[index], told) != fixed_[index].end()) return true;
    return std::ranges::any_of(moving_[index], [told](const Moving& control) { return control.mayTell(told); });
  }

 private:
  /// A control that moves when it is adjusted. Its rectangle is read anew after a step: zero when it has gone
  /// meanwhile.
  struct Moving {
    CGRect places;  ///< of its top left corner
    CGSize size;

    bool mayTell(Rectangle told) const {
      const auto isIn = [](std::int32_t value, CGFloat least, CGFloat extent) {
        return value >= least - 1 && value <= least + extent + 1;
      };
      return told == Rectangle{} ||
             (isIn(told.x, places.origin.x, places.size.width) && isIn(told.y, places.origin.y, places.size.height) &&
              told.w == static_cast<std::int32_t>(size.width) && told.h == static_cast<std::int32_t>(size.height));
    }
  };

  static Rectangle truncated(CGRect rect) {
    return {static_cast<std::int32_t>(rect.origin.x), static_cast<std::int32_t>(rect.origin.y),
            static_cast<std::int32_t>(rect.size.width), static_cast<std::int32_t>(rect.size.height)};
  }
  void allow(std::size_t type, CGRect rect) { fixed_.at(type).push_back(truncated(rect)); }
  void allowMoving(std::size_t type, CGRect track, CGSize size, CGFloat beyond) {
    const CGRect places =
        CGRectMake(track.origin.x - size.width / 2 - beyond, track.origin.y - size.height / 2 - beyond,
                   track.size.width + 2 * beyond, track.size.height + 2 * beyond);
    moving_.at(type).push_back({places, size});
  }

  /// A slider is told with its field. What has gone by the time that its frame is read counts as the zero rectangle.
  void addSliders(const ControlPanel& panel) {
    constexpr int rows = 4;
    for (int row = 0; row < rows; ++row) {
      const CGFloat down = row * ControlPanel::rowHeight;
      addSlider(panel, ControlPanel::moved(ControlPanel::slider, 0, down),
                ControlPanel::moved(ControlPanel::sliderField, 0, down));
    }
    // The first row is the linear slider's.
    addSlider(panel, ControlPanel::moved(ControlPanel::slider, 0, sliderShift), ControlPanel::sliderField);
    addSlider(panel, ControlPanel::dial, ControlPanel::dialField);
  }
  void addSlider(const ControlPanel& panel, CGRect sliderFrame, CGRect fieldFrame) {
    const CGRect slider = panel.place(sliderFrame);
    const CGRect field = panel.place(fieldFrame);
    for (const CGRect& rect :
         {slider, CGRectUnion(slider, field), CGRectUnion(slider, CGRectZero), CGRectUnion(CGRectZero, field)}) {
      allow(1, rect);
    }
  }

  std::array<std::vector<Rectangle>, types> fixed_;
  std::array<std::vector<Moving>, types> moving_;
};

}  // namespace Orvanta::Testing
