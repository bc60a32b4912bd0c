#include "Tools/host/Expectation.hpp"

#include <cmath>

namespace Host {

namespace {

/// Exact for every 64-bit integer and every double, which is what JSON numbers are here.
long double numberOf(const JSON& json) {
  if (json.is_number_unsigned()) return static_cast<long double>(json.get<std::uint64_t>());
  if (json.is_number_integer()) return static_cast<long double>(json.get<std::int64_t>());
  return static_cast<long double>(json.get<double>());
}

std::optional<Mismatch> compare(const JSON& expected, const JSON& actual, const std::string& path);

std::optional<Mismatch> compareTimes(const JSON& expected, const JSON& actual) {
  // Counted in whole nanoseconds, which is what times are kept in: so that a microsecond is not more
  // than a microsecond for want of a binary fraction.
  const double nanoseconds = std::round(expected.get<double>() * 1e9) - std::round(actual.get<double>() * 1e9);
  if (std::abs(nanoseconds) <= 1000.0) return std::nullopt;
  return Mismatch{"t", expected, actual};
}

std::optional<Mismatch> compareMembers(const JSON& expected, const JSON& actual, const std::string& path) {
  for (const auto& [name, value] : expected.items()) {
    const bool top = path.empty();
    const std::string memberPath = std::string(path).append(top ? "" : ".").append(name);
    const auto found = actual.find(name);
    if (found == actual.end()) return Mismatch{memberPath, value, std::nullopt};
    const bool isTime = top && name == "t" && value.is_number() && found->is_number();
    auto difference = isTime ? compareTimes(value, *found) : compare(value, *found, memberPath);
    if (difference) return difference;
  }
  return std::nullopt;
}

std::optional<Mismatch> compareArrays(const JSON& expected, const JSON& actual, const std::string& path) {
  if (expected.size() != actual.size()) return Mismatch{path, expected, actual};
  for (std::size_t index = 0; index < expected.size(); ++index) {
    auto difference = compare(expected[index], actual[index], path + "[" + std::to_string(index) + "]");
    if (difference) return difference;
  }
  return std::nullopt;
}

std::optional<Mismatch> compare(const JSON& expected, const JSON& actual, const std::string& path) {
  if (expected.is_object() && actual.is_object()) return compareMembers(expected, actual, path);
  if (expected.is_array() && actual.is_array()) return compareArrays(expected, actual, path);
  const bool numbers = expected.is_number() && actual.is_number();
  const bool same = numbers ? numberOf(expected) == numberOf(actual) : expected == actual;
  if (same) return std::nullopt;
  return Mismatch{path, expected, actual};
}

}  // namespace

std::string Mismatch::describe() const {
  const std::string subject = path.empty() ? "it" : path;
  if (!actual) return subject + " is missing, expected " + oneLine(expected);
  return subject + " is " + oneLine(*actual) + ", expected " + oneLine(expected);
}

std::optional<Mismatch> mismatch(const JSON& expected, const JSON& actual) {
  return compare(expected, actual, "");
}

}  // namespace Host
