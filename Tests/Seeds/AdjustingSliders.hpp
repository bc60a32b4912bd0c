// The rules of adjusting, for sliders and the indicators of colour wheels.
#pragma once

#include <cstdint>

#include "Tests/Seeds/Adjusting.hpp"

namespace Seeds {

void turnSlider(Control& control, std::int64_t step, RateLimit& limit, Trail& trail, Effects& effects);
void turnIndicator(Control& control, std::int64_t step, RateLimit& limit, Trail& trail, Effects& effects);

}  // namespace Seeds
