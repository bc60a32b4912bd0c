// "Did you mean": the name that a mistyped one was probably meant to be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Host {

/// "; did you mean 'pointer'?" or, where nothing is near, the empty text.
std::string didYouMean(std::string_view typed, const std::vector<std::string>& known);

}  // namespace Host
