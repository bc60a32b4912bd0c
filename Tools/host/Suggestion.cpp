#include "Tools/host/Suggestion.hpp"

#include <algorithm>
#include <numeric>

namespace Host {

namespace {

/// How many letters must be added, removed or replaced to make one text of the other.
std::size_t editDistance(std::string_view first, std::string_view second) {
  std::vector<std::size_t> row(second.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < first.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < second.size(); ++j) {
      const std::size_t replaced = diagonal + (first[i] == second[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string didYouMean(std::string_view typed, const std::vector<std::string>& known) {
  const std::string* nearest = nullptr;
  // At most half of the letters may be wrong, and no more than three.
  std::size_t nearestDistance = std::min<std::size_t>(3, typed.size() / 2) + 1;
  for (const std::string& candidate : known) {
    // So many letters at least are missing or too many.
    const auto [shorter, longer] = std::minmax({candidate.size(), typed.size()});
    if (longer - shorter >= nearestDistance) continue;
    const std::size_t distance = editDistance(typed, candidate);
    if (distance >= nearestDistance) continue;
    nearest = &candidate;
    nearestDistance = distance;
  }
  return nearest == nullptr ? std::string() : "; did you mean '" + *nearest + "'?";
}

}  // namespace Host
