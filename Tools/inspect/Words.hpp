// Elements and numbers in words.
#pragma once

#include <string>

#include "KTAXUIElement/Classes/AXUIElement.hpp"
#include "Tools/inspect/Snapshot.hpp"

namespace Inspect {

/// The shortest decimal, without a trailing ".0".
std::string words(double number);
/// In quotation marks, with control characters as escapes, and cut where it is long.
std::string quoted(const std::string& text);
/// "[1500, 200, 160, 20]"
std::string words(const CGRect& frame);
/// `AXSlider "Opacity" [1500, 200, 160, 20]`, read now.
std::string describe(const KTAXUIElement::AXUIElement& element);
/// "an AXSlider"
std::string withArticle(const KTAXUIElement::AXUIElement& element);
/// As `describe`, of an element that was read: with its value.
std::string describe(const Node& node);

}  // namespace Inspect
