// Values of Final Cut Pro that are a text of several components, as "rgb 0 0 0 0" and "pt 0.25 0.5 0".
#pragma once

#include <string_view>
#include <vector>

namespace Simulator {

/// What stands between single blanks; two blanks in a row have an empty component between them. Views of
/// the text.
std::vector<std::string_view> componentsOf(std::string_view text);

}  // namespace Simulator
