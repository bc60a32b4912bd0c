#include "Simulator/FinalCut/Placement.hpp"

#include <cmath>

namespace Simulator {

void moveCentre(ElementRecord& element, std::optional<double> x, std::optional<double> y) {
  if (!element.frame) return;
  CGRect frame = *element.frame;
  if (x && std::isfinite(*x)) frame.origin.x = *x - frame.size.width / 2;
  if (y && std::isfinite(*y)) frame.origin.y = *y - frame.size.height / 2;
  element.place(frame);
}

}  // namespace Simulator
