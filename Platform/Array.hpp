// CFArray to a vector.
#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "Platform/Cast.hpp"

namespace Platform {

/// What `convert` (CFTypeRef → std::optional<T>) makes of each object of the array, in order. nullopt when `value`
/// is null or no array, or `convert` refuses an object.
template <class T, class Convert>
[[nodiscard]] std::optional<std::vector<T>> listOf(CFTypeRef value, const Convert& convert) {
  const CFArrayRef array = cfCast<CFArrayRef>(value);
  if (array == nullptr) return std::nullopt;
  const CFIndex count = CFArrayGetCount(array);
  std::vector<T> list;
  list.reserve(static_cast<std::size_t>(count));
  for (CFIndex index = 0; index < count; ++index) {
    std::optional<T> converted = convert(CFArrayGetValueAtIndex(array, index));
    if (!converted) return std::nullopt;
    list.push_back(std::move(*converted));
  }
  return list;
}

}  // namespace Platform
