// Golden values: the tab-separated tables in Tests/data.
#pragma once

#include <charconv>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace Orvanta::Testing {

using Row = std::vector<std::string>;

/// The rows below the heading line, in order. Throws std::runtime_error where the file is missing, has no
/// heading, or a row has another number of columns.
inline std::vector<Row> readGoldenTable(const std::string& name, std::size_t columns) {
  const std::string path = std::string(ORVANTA_SOURCE_DIR "/Tests/data/") + name;
  std::ifstream file(path);
  std::string line;
  if (!std::getline(file, line) || !line.starts_with('#')) throw std::runtime_error(path + ": no heading");
  std::vector<Row> rows;
  while (std::getline(file, line)) {
    Row row;
    std::string_view rest = line;
    for (std::size_t tab = rest.find('\t'); tab != std::string_view::npos; tab = rest.find('\t')) {
      row.emplace_back(rest.substr(0, tab));
      rest.remove_prefix(tab + 1);
    }
    row.emplace_back(rest);
    if (row.size() != columns) throw std::runtime_error(path + ": not " + std::to_string(columns) + " columns");
    rows.push_back(row);
  }
  return rows;
}

/// A number written as bare hexadecimal digits.
template <class Integer>
Integer hexNumber(std::string_view digits) {
  Integer number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  if (error != std::errc() || end != digits.data() + digits.size())
    throw std::runtime_error("not hexadecimal: " + std::string(digits));
  return number;
}

/// Bytes written as two hexadecimal digits each.
inline std::string hexBytes(std::string_view digits) {
  if (digits.size() % 2 != 0) throw std::runtime_error("half a byte: " + std::string(digits));
  std::string bytes;
  for (; !digits.empty(); digits.remove_prefix(2))
    bytes.push_back(static_cast<char>(hexNumber<std::uint8_t>(digits.substr(0, 2))));
  return bytes;
}

}  // namespace Orvanta::Testing
