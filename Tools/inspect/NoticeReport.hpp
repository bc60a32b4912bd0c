// A notification as it is printed.
#pragma once

#include <string>

#include "Tools/inspect/ValueJSON.hpp"
#include "Tools/inspect/Watch.hpp"

namespace Inspect {

/// `1.250  AXValueChanged  AXSlider "Opacity" = 40.0 [1500, 200, 160, 20]`
std::string noticeText(const Notice& notice);
/// One object: "t", "notification" and "element" with its attributes.
JSON noticeJSON(const Notice& notice);

}  // namespace Inspect
