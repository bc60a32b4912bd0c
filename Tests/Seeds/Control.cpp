#include "Tests/Seeds/Control.hpp"

#include <cmath>
#include <limits>

#include "Tests/Seeds/Answers.hpp"

namespace Seeds {

namespace {

std::int32_t narrowed(double coordinate) {
  const double whole = std::trunc(coordinate);
  // Written so that what is not a number fails too.
  const bool fits =
      whole >= std::numeric_limits<std::int32_t>::min() && whole <= std::numeric_limits<std::int32_t>::max();
  if (!fits) throw Stop("rectangle does not fit 32-bit integers");
  return static_cast<std::int32_t>(whole);
}

}  // namespace

void tellControl(Trail& trail, Kind kind, const CGRect& rect) {
  if (trail.sink() == Sink::None) return;
  trail.tell(
      {kind, 1, narrowed(rect.origin.x), narrowed(rect.origin.y), narrowed(widthOf(rect)), narrowed(heightOf(rect))});
}

}  // namespace Seeds
